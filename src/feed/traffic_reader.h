#pragma once

#include "feed/traffic_line.h"
#include "feed/udp_reader.h"

namespace hcr {

struct TrafficReader : UdpReader, LineDecoder {
    TrafficReader() : UdpReader("Traffic Reader", kTrafficPort, gWindow.trafficLamp) {}
    void onStarted() override;  ///< lights both lamps
    void handleText() override;
    void onStopped() override;
};

extern TrafficReader gTrafficReader;

/// Starts a collection of callsigns with an empty set, or ends it: then the set is the worker's. Worker.
void gf_collectCallsigns(bool on);

}  // namespace hcr
