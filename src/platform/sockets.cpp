#include "platform/sockets.h"

#include <charconv>
#include <cmath>

#include "platform/clock.h"
#include "platform/socket_source.h"

namespace hcr {
namespace {

constexpr f64 kLongestWaitMs = 2'000'000'000.0;  // the systems take a time-out as 32 bits with sign

}  // namespace

i32 gf_wallMilliseconds(i64 milliseconds) {
    if (milliseconds <= 0) return 0;
    const f64 wall = std::ceil(static_cast<f64>(milliseconds) / gf_clockFactor());
    return static_cast<i32>(wall < kLongestWaitMs ? wall : kLongestWaitMs);
}

i32 gf_resolvePort(const std::string& text, u16& port) {
    // The systems disagree on numbers out of range and on an empty text, so numbers are read here.
    const bool isNumber = text.find_first_not_of("0123456789") == std::string::npos;
    if (!isNumber) return gf_systemResolveService(text, port);
    u16 number = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
    if (result.ec != std::errc{}) return kNoSuchService;
    port = number;
    return 0;
}

}  // namespace hcr
