#include "feed/traffic_reader.h"

#include "shell/log.h"
#include "shell/window_state.h"

namespace hcr {

TrafficReader gTrafficReader;

void TrafficReader::onStarted() {
    UdpReader::onStarted();
    gWindow.weatherLamp = kLampReceiving;
}

void TrafficReader::handleText() {
    processLine(*this, text);
}

void TrafficReader::onStopped() {
    gWindow.trafficLamp = kLampOff;
    gf_repaint(Band::realTraffic);
    gf_log("Traffic Reader has stopped");
}

void gf_collectCallsigns(bool on) {
    const std::lock_guard lock(gTrafficReader.callsignMutex);
    if (on) gTrafficReader.realCallsigns.clear();
    gTrafficReader.collectCallsigns = on;
}

}  // namespace hcr
