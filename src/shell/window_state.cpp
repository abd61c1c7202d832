#include "shell/window_state.h"

#include <fmt/format.h>

#include <cmath>

namespace hcr {
namespace {

constexpr i32 kQualityWithSoft = 45;  // below so many real data the soft ones are worth telling

std::atomic<u64> gRepaints{0};

}  // namespace

WindowState gWindow;

std::string WindowText::get() const {
    const std::lock_guard lock(mutex);
    return text;
}

void WindowText::set(std::string_view value) {
    const std::lock_guard lock(mutex);
    text = value;
}

void gf_resetWindowState() {
    {
        const std::lock_guard lock(gWindow.mutex);
        gWindow.message.clear();
        gWindow.fatalMessage.clear();
        gWindow.messageShownAt = 0;
        gWindow.secondsCounter = 0;
    }
    for (WindowText* text : {&gWindow.userAircraft, &gWindow.publisher, &gWindow.airportName, &gWindow.qualityText,
                             &gWindow.simulatorText, &gWindow.rtVersionText, &gWindow.userStand}) {
        text->set("");
    }
    gWindow.fitStatic = -1.0F;
    gWindow.fitLive = -1.0F;
    for (std::atomic<u64>* count :
         {&gWindow.liveCount, &gWindow.parkedLiveCount, &gWindow.staticCount, &gWindow.standCount}) {
        *count = 0;
    }
    gWindow.statusRowY = 399;
    for (std::atomic<i32>* number : {&gWindow.maxParkCount, &gWindow.qnh, &gWindow.updatesCount}) *number = 0;
    for (std::atomic<bool>* flag :
         {&gWindow.handmade, &gWindow.rtConnected, &gWindow.airportFileOk, &gWindow.simConnected,
          &gWindow.flightRunning, &gWindow.planSoft, &gWindow.planWeek}) {
        *flag = false;
    }
    gWindow.rtLampDark = true;
    gWindow.modelKnown = true;
    gWindow.trafficLamp = 3;
    gWindow.weatherLamp = 3;
    gf_repaint(Band::whole);
}

void gf_repaint(Band) {
    ++gRepaints;
}

u64 gf_repaintCount() {
    return gRepaints;
}

std::string gf_qualityText(i32 real, i32 soft) {
    if (real < 0 && soft < 0) return "  ";
    if (real < kQualityWithSoft) return fmt::format("{:2}/{:2}", real, soft);
    return fmt::format("{:2}", real);
}

std::string gf_hoursText(f32 hours) {
    return std::trunc(hours) == hours ? fmt::format("{:.0f}", hours) : fmt::format("{:.1f}", hours);
}

std::string gf_currentMessage() {
    const std::lock_guard lock(gWindow.mutex);
    return gWindow.fatalMessage.empty() ? gWindow.message : gWindow.fatalMessage;
}

}  // namespace hcr
