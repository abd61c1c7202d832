#include <cstdint>
#include <string>

#include "feed/control_channel.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    hcr::lf_processRTVersion(std::string(reinterpret_cast<const char*>(data), size));
    return 0;
}
