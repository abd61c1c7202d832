#pragma once

#include <atomic>
#include <mutex>
#include <string>
#include <string_view>

#include "platform/types.h"

namespace hcr {

/// A text of WindowState: one writer, any number of readers, each of whom gets a whole string.
struct WindowText {
    mutable std::mutex mutex;
    std::string text;  ///< through get and set only

    std::string get() const;
    void set(std::string_view value);
};

/// All that the main window shows; kept also when there is no window. Each field has one writer; the start value is
/// the one that gf_resetRun restores, but for the fields marked "kept".
struct WindowState {
    std::recursive_mutex mutex;          ///< guards message, fatalMessage and their drawing
    std::string message;                 ///< the message line
    std::string fatalMessage;            ///< the error line; while it isn't empty the message line can't change
    std::atomic<i32> messageShownAt{0};  ///< secondsCounter when message was set, at least 1; 0 without a message
    std::atomic<i32> secondsCounter{0};  ///< counts seconds of the worker
    WindowText userAircraft;
    WindowText parkAirport;  ///< code of the airport of the static parking; kept
    WindowText publisher;
    WindowText airportName;
    WindowText qualityText;
    WindowText simulatorText;
    WindowText rtVersionText;
    WindowText userStand;
    WindowText selectionText;             ///< kept
    std::atomic<f32> fitStatic{-1.0F};    ///< average fit of the static aircraft, hours
    std::atomic<f32> fitLive{-1.0F};      ///< average fit of the parked live aircraft, hours
    std::atomic<u64> liveCount{0};        ///< live aircraft airborne or moving
    std::atomic<u64> simaddonCount{0};    ///< kept
    std::atomic<u64> thirdpartyCount{0};  ///< kept
    std::atomic<u64> liveryCount{0};      ///< kept
    std::atomic<u64> parkedLiveCount{0};
    std::atomic<u64> staticCount{0};
    std::atomic<u64> standCount{0};
    std::atomic<i32> statusRowY{399};
    std::atomic<i32> maxParkCount{0};
    std::atomic<i32> maxParkPercent{0};  ///< kept
    std::atomic<i32> qnh{0};
    std::atomic<i32> minutesToRenewal{0};  ///< kept
    std::atomic<i32> updatesCount{0};
    std::atomic<u64> queuedStatics{0};  ///< kept
    std::atomic<bool> handmade{false};
    std::atomic<bool> rtLampDark{true};  ///< the RealTraffic lamp is black until the worker begins
    std::atomic<bool> rtConnected{false};
    std::atomic<bool> airportFileOk{false};
    std::atomic<bool> simConnected{false};
    std::atomic<bool> flightRunning{false};
    std::atomic<bool> modelKnown{true};
    std::atomic<bool> planSoft{false};
    std::atomic<bool> planWeek{false};
    std::atomic<bool> reservedOk{false};  ///< kept
    std::atomic<i32> trafficLamp{3};      ///< 1 receiving, 2 silent, 3 off
    std::atomic<i32> weatherLamp{3};
};

/// The one that the window shows.
extern WindowState gWindow;

/// Puts every field back to its start value, but for the kept ones. Run thread.
void gf_resetWindowState();

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
