#pragma once

#include "feed/udp_reader.h"

namespace hcr {

struct QnhReader : UdpReader {
    QnhReader() : UdpReader("QNH Reader", kWeatherPort) {}
    void handleText() override;
    void onStopped() override;

    std::atomic<i32> lastQnh{1013};  ///< hPa; gf_resetFeed writes it too
};

extern QnhReader gQnhReader;

}  // namespace hcr
