#pragma once

#include "feed/udp_reader.h"

namespace hcr {

struct QnhReader : UdpReader {
    QnhReader() : UdpReader("QNH Reader", kWeatherPort) {}
    void handleText() override;
    void onStopped() override;

    i32 lastQnh = 1013;  ///< hPa
};

extern QnhReader gQnhReader;

}  // namespace hcr
