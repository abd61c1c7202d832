#pragma once

#include <array>
#include <string>
#include <string_view>
#include <unordered_map>

#include "core/model/aircraft.h"
#include "core/model/stand.h"
#include "liveries/livery_data.h"

namespace hcr {

// Which installed livery an aircraft gets. Run thread.

extern TextSet failedTitles;    ///< titles that the simulator refused to create
extern TextSet failedModels;    ///< "type airline" of refused creations
extern std::unordered_map<u32, std::string_view> rememberedLiveries;  ///< hexid to title of this session
extern TextSet noMatchAircraft;  ///< see gf_noMatchText
extern std::array<i32, 7> matchSteps;  ///< live matches by step

/// Sets ac.liveryTitle (empty when nothing fits) and fsltlModel.
void gf_matchLiveLivery(LiveAc& ac);
/// True if ac.liveryTitle is set afterwards.
bool gf_matchParkedLivery(ParkedAc& ac, const ParkPos& stand);
/// The title remembered for this aircraft, unless the simulator has refused it since; empty when there is none.
std::string_view gf_rememberedLivery(u32 hexid);
/// Text of noMatchAircraft: "{:3} {:4}" of airline and type, a blank, the registration.
std::string gf_noMatchText(const FlightTexts& ac);
/// The step by which the last live match succeeded, -1 when it didn't; shown by the demo's table.
i32 gf_lastMatchStep();

void gf_logMatchSummary();
void gf_logNoMatchList();

}  // namespace hcr
