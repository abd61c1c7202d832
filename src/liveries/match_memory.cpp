#include "liveries/match_memory.h"

#include <fmt/format.h>

#include <algorithm>

#include "shell/log.h"

namespace hcr {

TextSet failedTitles;
TextSet failedModels;
std::unordered_map<u32, std::string_view> rememberedLiveries;
TextSet noMatchAircraft;
std::array<i32, 7> matchSteps{};
MatchSteps gMatchSteps;

namespace {

constexpr i32 kSummaryWidth = 100;

}  // namespace

std::string_view gf_rememberedLivery(u32 hexid) {
    const auto entry = rememberedLiveries.find(hexid);
    if (entry == rememberedLiveries.end()) return {};
    if (failedTitles.contains(entry->second)) {
        rememberedLiveries.erase(entry);
        return {};
    }
    return entry->second;
}

void gf_forgetLiveries() {
    rememberedLiveries = {};
    gMatchSteps = {};
}

void gf_resetMatchMemory() {
    gf_forgetLiveries();
    failedTitles = {};
    failedModels = {};
    noMatchAircraft = {};
    matchSteps = {};
}

i32 gf_lastMatchStep() {
    return gMatchSteps.last;
}

i32 gf_matchStepOf(u32 hexid) {
    const auto step = gMatchSteps.byHexid.find(hexid);
    return step == gMatchSteps.byHexid.end() ? kNoMatchStep : step->second;
}

void gf_logMatchSummary() {
    if (std::all_of(matchSteps.begin(), matchSteps.end(), [](i32 count) { return count <= 0; })) return;
    gf_log(gf_logBanner(kSummaryWidth, 0, true, false, "live traffic livery matching summary"));
    gf_log("Matches at step: ");
    for (std::size_t step = 0; step < matchSteps.size(); ++step) {
        gf_log(fmt::format("  {}: {}", step, matchSteps[step]));
    }
    if (!failedModels.empty()) {
        gf_log("\nCould not be created by MSFS:");
        for (const std::string& model : failedModels) gf_log("  " + model);
    }
    gf_log(gf_logBanner(kSummaryWidth, 0, false, true, ""));
}

void gf_logNoMatchList() {
    if (noMatchAircraft.empty()) return;
    gf_log("\nNo match found for:");
    for (const std::string& text : noMatchAircraft) gf_log(text);
    gf_log("");
}

}  // namespace hcr
