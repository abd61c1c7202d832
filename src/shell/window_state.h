#pragma once

#include <atomic>
#include <mutex>
#include <string>
#include <string_view>

#include "platform/types.h"
#include "shell/shared_value.h"

namespace hcr {

/// A text of WindowState: one writer, any number of readers, each of whom gets a whole string.
struct WindowText {
    mutable std::mutex mutex;
    std::string text;  ///< through the functions only

    WindowText() = default;
    WindowText(const WindowText& other) : text(other.get()) {}
    WindowText& operator=(const WindowText& other);

    std::string get() const;
    void set(std::string_view value);
};

/// State of a lamp of the feed; the values are used as they stand.
enum Lamp : i32 { kLampReceiving = 1, kLampSilent = 2, kLampOff = 3 };

/// What the main window shows of a run. Each field has one writer.
struct WindowRun {
    std::string message;              ///< the message line; under WindowState::mutex, like the next one
    std::string fatalMessage;         ///< the error line; while it isn't empty the message line can't change
    SharedValue<i32> messageShownAt;  ///< secondsCounter when message was set, at least 1; 0 without a message
    SharedValue<i32> secondsCounter;  ///< counts seconds of the worker
    WindowText userAircraft;
    WindowText publisher;
    WindowText airportName;
    WindowText qualityText;
    WindowText simulatorText;
    WindowText rtVersionText;
    WindowText userStand;
    SharedValue<f32> fitStatic{-1.0F};  ///< average fit of the static aircraft, hours
    SharedValue<f32> fitLive{-1.0F};    ///< average fit of the parked live aircraft, hours
    SharedValue<u64> liveCount;         ///< live aircraft airborne or moving
    SharedValue<u64> parkedLiveCount;
    SharedValue<u64> staticCount;
    SharedValue<u64> standCount;
    SharedValue<i32> statusRowY{399};
    SharedValue<i32> maxParkCount;
    SharedValue<i32> qnh;
    SharedValue<i32> updatesCount;
    SharedValue<bool> handmade;
    SharedValue<bool> rtLampDark{true};  ///< the RealTraffic lamp is black until the worker begins
    SharedValue<bool> rtConnected;
    SharedValue<bool> airportFileOk;
    SharedValue<bool> simConnected;
    SharedValue<bool> flightRunning;
    SharedValue<bool> modelKnown{true};
    SharedValue<bool> planSoft;
    SharedValue<bool> planWeek;
    SharedValue<i32> trafficLamp{kLampOff}, weatherLamp{kLampOff};
};

/// What it shows on from one run to the next.
struct WindowKept {
    WindowText parkAirport;  ///< code of the airport of the static parking
    WindowText selectionText;
    SharedValue<u64> simaddonCount;
    SharedValue<u64> thirdpartyCount;
    SharedValue<u64> liveryCount;
    SharedValue<i32> maxParkPercent;
    SharedValue<i32> minutesToRenewal;
    SharedValue<u64> queuedStatics;
    SharedValue<bool> reservedOk;
};

/// All that the main window shows; kept also when there is no window.
struct WindowState : WindowRun, WindowKept {
    std::recursive_mutex mutex;  ///< guards message, fatalMessage and their drawing
};

/// The one that the window shows.
extern WindowState gWindow;

/// Puts what belongs to a run back to its start value. Run thread.
void gf_resetWindowState();
/// The same for what is kept between two runs; while none runs.
void gf_forgetWindowState();

/// Bands of the window that are drawn by themselves.
enum class Band : i32 { whole, message, simulator, realTraffic, liveTraffic, liveries, airport, parking };

/// Asks for a repaint of a band; any thread. Without a window it counts, so that a headless face can follow.
void gf_repaint(Band band);
/// How often gf_repaint was called so far.
u64 gf_repaintCount();

/// Texts of the quality pair and of a number of hours, as the window shows them.
std::string gf_qualityText(i32 real, i32 soft);
/// Whole hours without a decimal, others with one.
std::string gf_hoursText(f32 hours);

/// The two lines together, for faces without a window: the error line if there is one, else the message line.
std::string gf_currentMessage();

}  // namespace hcr
