#pragma once

#include <string>

namespace hcr {

/// An aircraft as the feed tells of it; what isn't known is empty.
struct MatchQuestion {
    std::string airline, type, registration, callsign, from, to;
    bool cargo = false;
    bool allTitles = false;  ///< every candidate instead of the first ones
};

/// What the matching does for such an aircraft in flight and for the same one parked on a stand, step by step, with
/// the tables that are loaded and the settings of the moment. Throws std::runtime_error when the type is none. Takes
/// the place of the live aircraft in gLiveAcs.
std::string gf_matchReport(const MatchQuestion& question);

}  // namespace hcr
