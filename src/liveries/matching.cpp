#include "liveries/matching.h"

#include <fmt/format.h>

#include <algorithm>

#include "core/model/aircraft_class.h"
#include "core/model/labels.h"
#include "liveries/dbase.h"
#include "shell/log.h"
#include "shell/parameters.h"
#include "shell/random.h"

namespace hcr {

TextSet failedTitles;
TextSet failedModels;
std::unordered_map<u32, std::string_view> rememberedLiveries;
TextSet noMatchAircraft;
std::array<i32, 7> matchSteps{};

namespace {

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

// Values of MATCHING_DEPTH from which on steps are allowed. Below the first, only registrations count.
constexpr i32 kDepthAirline = 2, kDepthSimilar = 3, kDepthUnbranded = 4;

constexpr const char* kUnbrandedAirline = "ZZZ";
constexpr const char* kPrivateOwner = "PVT";
constexpr i32 kRandomPicks = 5;
constexpr i32 kSummaryWidth = 100;

constexpr std::size_t kPassenger = 0, kCargo = 1;

i32 gLastStep = kNoMatchStep;
std::unordered_map<u32, i32> gStepOf;  ///< hexid to step

struct LiveryKey {
    std::string_view airline, type;
};

bool lf_isSpecial(std::string_view title) {
    return std::find(specialTitles.begin(), specialTitles.end(), title) != specialTitles.end();
}

/// The entries that aren't reserved for registrations.
TitleList lf_ordinaryTitles(const TitleList& list) {
    const std::unordered_set<std::string_view> special(specialTitles.begin(), specialTitles.end());
    TitleList ordinary;
    std::copy_if(list.begin(), list.end(), std::back_inserter(ordinary),
                 [&](std::string_view title) { return !special.contains(title); });
    return ordinary;
}

std::string_view lf_anyOf(const TitleList& list) {
    return list[gf_randomBelow(static_cast<u32>(list.size()))];
}

void lf_pickTitle(ParkedAc& ac, const TitleList& list) {
    if (list.empty()) return;
    for (i32 pick = 0; pick < kRandomPicks; ++pick) {
        ac.liveryTitle = lf_anyOf(list);
        if (!lf_isSpecial(ac.liveryTitle)) return;
    }
    // A reserved title goes to other aircraft only when the list has nothing else.
    if (const TitleList ordinary = lf_ordinaryTitles(list); !ordinary.empty()) ac.liveryTitle = lf_anyOf(ordinary);
}

bool lf_lookupRegistration(ParkedAc& ac) {
    if (ac.registration.empty()) return false;
    const auto entry = regcodeTitles.find(ac.registration);
    if (entry == regcodeTitles.end()) return false;
    ac.liveryTitle = entry->second;
    return !ac.liveryTitle.empty();
}

i32 lf_registrationStep(const ParkedAc& ac) {
    return uniqueRegcodes.contains(ac.registration) ? uniqueRegistration : registered;
}

bool lf_lookupAirlineType(ParkedAc& ac, const LiveryKey& key, std::size_t index) {
    const auto types = airlineTitles[index].find(key.airline);
    if (types == airlineTitles[index].end()) return false;
    const auto list = types->second.find(key.type);
    if (list == types->second.end()) return false;
    lf_pickTitle(ac, list->second);
    return !ac.liveryTitle.empty();
}

/// A cargo aircraft may fall back to a passenger livery, but never the other way round.
bool lf_lookupCargoFirst(ParkedAc& ac, const LiveryKey& key) {
    return (ac.cargo && lf_lookupAirlineType(ac, key, kCargo)) || lf_lookupAirlineType(ac, key, kPassenger);
}

bool lf_lookupGeneric(ParkedAc& ac, std::string_view type) {
    const auto& titles = genericTitles[ac.cargo ? kCargo : kPassenger];
    const auto list = titles.find(type);
    if (list == titles.end()) return false;
    lf_pickTitle(ac, list->second);
    return !ac.liveryTitle.empty();
}

bool lf_lookupSimilar(ParkedAc& ac, const LiveryKey& key) {
    for (const std::string& type : gf_similarForAirline(key.airline, key.type)) {
        if (gf_acClass(type) == ac.acClass && lf_lookupCargoFirst(ac, {key.airline, type})) return true;
    }
    return false;
}

/// The steps that don't ask for the airline; the one that left a title, or kNoMatchStep.
i32 lf_matchFallback(ParkedAc& ac, i32 depth) {
    const LiveryKey unbrandedKey{kUnbrandedAirline, ac.model};
    if (depth == kDepthUnbranded && lf_lookupCargoFirst(ac, unbrandedKey)) return unbranded;
    // Airliners never wear the paint of another operator.
    if (ac.acClass != Light && ac.acClass != Buzjets && ac.acClass != Rotorcraft) return kNoMatchStep;
    if (ac.airline != kPrivateOwner && lf_lookupCargoFirst(ac, unbrandedKey)) return unbranded;
    if (lf_lookupGeneric(ac, ac.model)) return generic;
    for (const std::string& type : gf_similarTypes(ac.model)) {
        if (lf_lookupGeneric(ac, type)) return similarGeneric;
    }
    return kNoMatchStep;
}

/// Drops a title that the simulator has refused.
bool lf_isUsable(ParkedAc& ac) {
    if (!failedTitles.contains(ac.liveryTitle)) return true;
    ac.liveryTitle = {};
    return false;
}

void lf_logMatch(const ParkedAc& ac, i32 step) {
    gf_log(fmt::format("          {} ={}= {}", liveAcLabel(ac), step, ac.liveryTitle));
}

bool lf_acceptMatch(LiveAc& ac, i32 step) {
    if (!lf_isUsable(ac)) return false;
    matchSteps[static_cast<std::size_t>(step)] += 1;
    lf_logMatch(ac, step);
    ac.fsltlModel = ac.liveryTitle.find("FSLTL_") != std::string_view::npos;
    gLastStep = step;
    return true;
}

bool lf_acceptParked(ParkedAc& ac, i32 step) {
    if (!lf_isUsable(ac)) return false;
    lf_logMatch(ac, step);
    return true;
}

/// The airline in whose colours the airframe flies for another one; nothing when it flies for itself.
std::optional<std::string_view> lf_paintedAirline(const ParkedAc& ac) {
    const DbaseRecord* record = gf_dbaseRecord(ac.registration);
    if (record == nullptr || record->opr.empty()) return std::nullopt;
    return record->airl;
}

bool lf_matchLive(LiveAc& ac) {
    const i32 depth = MATCHING_DEPTH.current;
    const auto accepted = [&ac](bool found, i32 step) { return found && lf_acceptMatch(ac, step); };

    if (accepted(lf_lookupRegistration(ac), lf_registrationStep(ac))) return true;
    if (depth < kDepthAirline) return false;
    if (ac.airline == kPrivateOwner && accepted(lf_lookupCargoFirst(ac, {kUnbrandedAirline, ac.model}), unbranded)) {
        return true;
    }
    const bool hasAirline = !ac.airline.empty();
    const auto painted = hasAirline ? lf_paintedAirline(ac) : std::nullopt;
    if (hasAirline && accepted(lf_lookupCargoFirst(ac, {ac.airline, ac.model}), airlineAndType)) return true;
    if (painted && accepted(lf_lookupCargoFirst(ac, {*painted, ac.model}), airlineAndType)) return true;
    if (depth < kDepthSimilar) return false;
    if (hasAirline && accepted(lf_lookupSimilar(ac, {ac.airline, ac.model}), similarType)) return true;
    if (painted && accepted(lf_lookupSimilar(ac, {*painted, ac.model}), similarType)) return true;
    const i32 step = lf_matchFallback(ac, depth);
    return accepted(step != kNoMatchStep, step);
}

/// Walks the types that stand in for the aircraft's own; unlike a live match it doesn't ask for the class, and a
/// refused title doesn't end it.
bool lf_walkSimilar(ParkedAc& ac, std::string_view airline, const std::vector<std::string>& types) {
    return std::any_of(types.begin(), types.end(), [&](const std::string& type) {
        return lf_lookupCargoFirst(ac, {airline, type}) && lf_acceptParked(ac, similarType);
    });
}

bool lf_matchParked(ParkedAc& ac) {
    const i32 depth = MATCHING_DEPTH.current;
    const auto accepted = [&ac](bool found, i32 step) { return found && lf_acceptParked(ac, step); };

    if (accepted(lf_lookupRegistration(ac), lf_registrationStep(ac))) return true;
    if (depth < kDepthAirline) return false;
    if (ac.airline == kPrivateOwner && accepted(lf_lookupCargoFirst(ac, {kUnbrandedAirline, ac.model}), unbranded)) {
        return true;
    }
    const auto painted = lf_paintedAirline(ac);
    if (accepted(lf_lookupCargoFirst(ac, {ac.airline, ac.model}), airlineAndType)) return true;
    if (painted && accepted(lf_lookupCargoFirst(ac, {*painted, ac.model}), airlineAndType)) return true;
    if (depth < kDepthSimilar) return false;
    const std::vector<std::string> similar = gf_similarForAirline(ac.airline, ac.model);
    if (lf_walkSimilar(ac, ac.airline, similar)) return true;
    if (painted && lf_walkSimilar(ac, *painted, similar)) return true;
    const i32 step = lf_matchFallback(ac, depth);
    return accepted(step != kNoMatchStep, step);
}

std::string lf_shortLabel(const FlightTexts& ac) {
    return fmt::format("{:8} {} {}", ac.callsign, ac.registration, airlineModel(ac));
}

}  // namespace

void gf_matchLiveLivery(LiveAc& ac) {
    gLastStep = kNoMatchStep;
    ac.liveryTitle = {};
    if (lf_matchLive(ac)) {
        gStepOf[ac.hexid] = gLastStep;
    } else {
        gStepOf.erase(ac.hexid);
    }
}

bool gf_matchParkedLivery(ParkedAc& ac, const ParkPos& stand) {
    if (!ac.liveryTitle.empty()) {
        gf_log(fmt::format("          {} =s= {}", liveAcLabel(ac), ac.liveryTitle));
        return true;
    }
    ac.cargo = stand.cargo;
    if (lf_matchParked(ac)) return true;
    gf_log(fmt::format("{:8}: {} no livery match ...", stand.id, lf_shortLabel(ac)));
    return false;
}

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
    rememberedLiveries.clear();
    gStepOf.clear();
    gLastStep = kNoMatchStep;
}

std::string gf_noMatchText(const FlightTexts& ac) {
    return fmt::format("{} {}", airlineModel(ac), ac.registration);
}

i32 gf_lastMatchStep() {
    return gLastStep;
}

i32 gf_matchStepOf(u32 hexid) {
    const auto step = gStepOf.find(hexid);
    return step == gStepOf.end() ? kNoMatchStep : step->second;
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
