#pragma once

#include <array>
#include <string_view>
#include <unordered_map>

#include "liveries/livery_data.h"

namespace hcr {

// What the matching remembers of a session. Run thread.

/// How a livery was found; the numbers stand in the log.
enum MatchStep : i32 {
    uniqueRegistration = 0,  ///< the registration of a special entry that holds no other
    registered = 1,          ///< any other registration that has a title
    airlineAndType = 2,
    similarType = 3,  ///< of the airline
    unbranded = 4,    ///< airline "ZZZ" and the type
    generic = 5,      ///< any airline's livery of the type
    similarGeneric = 6,
};

/// In place of a MatchStep.
inline constexpr i32 kNoMatchStep = -1;

extern TextSet failedTitles;                                          ///< titles that the simulator refused to create
extern TextSet failedModels;                                          ///< "type airline" of refused creations
extern std::unordered_map<u32, std::string_view> rememberedLiveries;  ///< hexid to title of this session
extern TextSet noMatchAircraft;                                       ///< see gf_noMatchText
extern std::array<i32, 7> matchSteps;                                 ///< live matches by step, by MatchStep

/// The steps by which live aircraft got their liveries.
struct MatchSteps {
    i32 last = kNoMatchStep;                 ///< of the last live match, kNoMatchStep when it failed
    std::unordered_map<u32, i32> byHexid{};  ///< of those that have a livery
};
extern MatchSteps gMatchSteps;

/// The title remembered for this aircraft, unless the simulator has refused it since; empty when there is none.
std::string_view gf_rememberedLivery(u32 hexid);
/// Empties rememberedLiveries and gMatchSteps.
void gf_forgetLiveries();
/// All of it back to the start of a run.
void gf_resetMatchMemory();
/// The step by which the last live match succeeded, kNoMatchStep when it didn't.
i32 gf_lastMatchStep();
/// The step by which this live aircraft got its livery in this session, kNoMatchStep if it has none.
i32 gf_matchStepOf(u32 hexid);

/// Log how many live matches each step gave, and who got no livery.
void gf_logMatchSummary();
void gf_logNoMatchList();

}  // namespace hcr
