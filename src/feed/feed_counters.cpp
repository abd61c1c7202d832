#include "feed/feed_counters.h"

#include <fmt/format.h>

namespace hcr {

FeedCounters gFeedCounters;

const char* gf_lineDropName(LineDrop reason) {
    switch (reason) {
        case LineDrop::vehicle:
            return "vehicle";
        case LineDrop::tooFewFields:
            return "too few fields";
        case LineDrop::controlByte:
            return "control byte";
        case LineDrop::badField:
            return "bad field";
        case LineDrop::outOfRange:
            return "out of range";
        case LineDrop::registration:
            return "registration too long";
        case LineDrop::noAircraft:
            return "no aircraft";
        case LineDrop::parkedId:
            return "id of a static aircraft";
        case LineDrop::airborneOnly:
            return "not airborne";
        case LineDrop::callsign:
            return "callsign of no aircraft";
        case LineDrop::noIdentity:
            return "no identity";
        case LineDrop::onGround:
            return "on the ground elsewhere";
        case LineDrop::notAccepting:
            return "not accepting";
        case LineDrop::overtaken:
            return "too many at once";
        case LineDrop::count_:
            break;
    }
    return "unknown";
}

std::string gf_feedCounterText() {
    std::string text =
        fmt::format("received {}, accepted {}", gFeedCounters.received.load(), gFeedCounters.accepted.load());
    for (int i = 0; i < static_cast<int>(LineDrop::count_); ++i) {
        const u64 count = gFeedCounters.dropped[i];
        if (count != 0) text += fmt::format(", {} {}", gf_lineDropName(static_cast<LineDrop>(i)), count);
    }
    return text;
}

}  // namespace hcr
