#pragma once

#include <array>
#include <string>
#include <string_view>
#include <unordered_map>

#include "core/model/aircraft.h"
#include "core/model/stand.h"
#include "liveries/livery_data.h"
#include "liveries/match_trace.h"

namespace hcr {

// Which installed livery an aircraft gets. Run thread.

extern TextSet failedTitles;                                          ///< titles that the simulator refused to create
extern TextSet failedModels;                                          ///< "type airline" of refused creations
extern std::unordered_map<u32, std::string_view> rememberedLiveries;  ///< hexid to title of this session
extern TextSet noMatchAircraft;                                       ///< see gf_noMatchText
extern std::array<i32, 7> matchSteps;                                 ///< live matches by step, see matching.cpp

/// Finds a livery for an aircraft that has no title: sets ac.liveryTitle, which stays empty when nothing fits, and
/// ac.fsltlModel.
void gf_matchLiveLivery(LiveAc& ac);
/// The same for an aircraft that is to stand on `stand`, whose cargo flag it takes; a title that it has already stays.
/// True if ac.liveryTitle is set afterwards.
bool gf_matchParkedLivery(ParkedAc& ac, const ParkPos& stand);
/// The title remembered for this aircraft, unless the simulator has refused it since; empty when there is none.
std::string_view gf_rememberedLivery(u32 hexid);
/// Empties rememberedLiveries and what gf_matchStepOf knows.
void gf_forgetLiveries();
/// Text of noMatchAircraft: "{:3} {:4}" of airline and type, a blank, the registration.
std::string gf_noMatchText(const FlightTexts& ac);

/// The step by which the last live match succeeded, kNoMatchStep when it didn't.
i32 gf_lastMatchStep();
/// The step by which this live aircraft got its livery in this session, kNoMatchStep if it has none.
i32 gf_matchStepOf(u32 hexid);

void gf_logMatchSummary();
void gf_logNoMatchList();

}  // namespace hcr
