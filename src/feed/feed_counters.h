#pragma once

#include <atomic>
#include <string>

#include "platform/types.h"

namespace hcr {

/// Why the decoder dropped a line; each has a counter, shown at the end of a run and by --headless.
enum class LineDrop : i32 {
    vehicle,  ///< " VEH"
    tooFewFields,
    controlByte,  ///< a text with a byte that no text has
    badField,     ///< a field that can't be read, logged
    outOfRange,
    registration,  ///< longer than 12 characters
    noAircraft,    ///< type or emitter category is none
    parkedId,      ///< hexid up to 10000
    airborneOnly,
    callsign,      ///< a callsign that stands for no aircraft
    noIdentity,    ///< neither callsign nor registration
    onGround,      ///< on the ground away from the park airport
    notAccepting,  ///< gAcceptReports is off
    overtaken,     ///< taken before, but never looked at: more came than can be handled
    count_
};
/// The words of the counters' text. Any thread.
const char* gf_lineDropName(LineDrop reason);

/// Counters of the decoder since process start; any thread may read.
struct FeedCounters {
    std::atomic<u64> received{0}, accepted{0};
    std::atomic<u64> dropped[static_cast<int>(LineDrop::count_)] = {};
};
/// Written by the Traffic Reader, read by any thread.
extern FeedCounters gFeedCounters;

/// "received 1200, accepted 900, out of range 250, ...": the counters that aren't 0. Any thread.
std::string gf_feedCounterText();

}  // namespace hcr
