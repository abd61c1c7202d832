#pragma once

#include "core/model/run_state.h"
#include "feed/udp_reader.h"

namespace hcr {

struct QnhReader : UdpReader {
    QnhReader() : UdpReader("QNH Reader", kWeatherPort, gWindow.weatherLamp) {}
    void handleText() override;
    void onStopped() override;

    SharedValue<i32> lastQnh{kStandardQnh};  ///< hPa; gf_resetFeed writes it too
};

extern QnhReader gQnhReader;

}  // namespace hcr
