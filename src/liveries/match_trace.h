#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "liveries/match_memory.h"

namespace hcr {

// What the matching did for an aircraft, for people who ask why it looks as it does. The lookups themselves write it
// down in the order in which they run. Run thread.

/// The tables of livery_tables that a lookup asks.
enum class MatchTable { registrations, airlines, generics };

/// What a lookup gave, or why there was none.
enum class MatchVerdict {
    nothingThere,  ///< the table doesn't have the key
    taken,
    refused,         ///< the simulator has refused the title that was drawn; the search went on
    noRegistration,  ///< from here on there was no lookup: the aircraft has no registration
    noAirline,
    noStandIn,     ///< no similar type serves
    otherClass,    ///< the similar type is of another class
    tooShallow,    ///< MATCHING_DEPTH ends before this step
    ownPaintOnly,  ///< aircraft of this class wear no other operator's paint
};

/// A title that a lookup found.
struct MatchCandidate {
    std::string_view title;
    bool special = false;  ///< reserved for registrations
    bool refused = false;  ///< by the simulator
};

/// One lookup, or the reason why there was none.
struct MatchTry {
    i32 step = 0;
    MatchVerdict verdict = MatchVerdict::nothingThere;
    MatchTable table = MatchTable::registrations;
    bool cargo = false;         ///< which of the two tables of that kind
    std::string airline, type;  ///< the key, as far as the table has them; a registration stands in `airline`
    std::vector<MatchCandidate> candidates;  ///< in the order of the table
    std::string_view drawn;                  ///< the one of them that was drawn, empty when there were none
};

/// All lookups for one aircraft, in their order.
struct MatchTrace {
    std::vector<MatchTry> tries;
    i32 step = kNoMatchStep;  ///< by which a title was accepted
};

/// Takes what the matching does. Null, as in every run, when nobody asks: then a lookup costs one test more.
extern MatchTrace* gMatchTrace;

// For the matching, while somebody asks.

/// A lookup; no titles when the table doesn't have the key.
void gf_traceLookup(i32 step, MatchTable table, bool cargo, std::string_view airline, std::string_view type,
                    std::span<const std::string_view> titles);
/// What became of the title that the last lookup gave.
void gf_traceDraw(std::string_view title, bool refused);
/// A step that asked no table.
void gf_traceNoLookup(i32 step, MatchVerdict verdict, std::string_view airline, std::string_view type);

}  // namespace hcr
