#pragma once

#include <atomic>
#include <mutex>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "feed/udp_reader.h"

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
const char* gf_lineDropName(LineDrop reason);

/// Counters of the decoder since process start; any thread may read.
struct FeedCounters {
    std::atomic<u64> received{0}, accepted{0};
    std::atomic<u64> dropped[static_cast<int>(LineDrop::count_)] = {};
};
extern FeedCounters gFeedCounters;

struct TrafficReader : UdpReader {
    TrafficReader() : UdpReader("Traffic Reader", kTrafficPort) {}
    void handleText() override;
    void onStopped() override;

    std::vector<std::string_view> fields;              ///< of the current line, reused
    std::mutex callsignMutex;                          ///< guards realCallsigns; stands alone
    std::set<std::string, std::less<>> realCallsigns;  ///< seen during a collection; the worker's while none is on
    std::atomic<bool> collectCallsigns{false};         ///< switched by gf_collectCallsigns
    std::atomic<f64> userLat{0}, userLon{0};           ///< written by the worker every 5 seconds
    std::atomic<f64> parkAirportLat{0}, parkAirportLon{0};
    std::atomic<f64> parkAirportAlt{0};            ///< feet
    std::atomic<bool> parkAirportAltValid{false};  ///< a park airport is set
    std::atomic<i32> qnh{1013};                    ///< hPa
};

extern TrafficReader gTrafficReader;

/// Starts a collection of callsigns with an empty set, or ends it: then the set is the worker's. Worker.
void gf_collectCallsigns(bool on);
/// "received 1200, accepted 900, out of range 250, ...": the counters that aren't 0. Any thread.
std::string gf_feedCounterText();

}  // namespace hcr
