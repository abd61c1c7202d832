#include "liveries/matching.h"

#include <fmt/format.h>

#include <algorithm>

#include "core/model/aircraft_class.h"
#include "core/model/labels.h"
#include "liveries/dbase.h"
#include "liveries/livery_tables.h"
#include "liveries/match_memory.h"
#include "liveries/match_trace.h"
#include "liveries/similar_types.h"
#include "shell/log.h"
#include "shell/parameters.h"
#include "shell/random.h"

namespace hcr {

namespace {

// Values of MATCHING_DEPTH from which on steps are allowed. Below the first, only registrations count.
constexpr i32 kDepthAirline = 2, kDepthSimilar = 3, kDepthUnbranded = 4;

constexpr const char* kUnbrandedAirline = "ZZZ";
constexpr const char* kPrivateOwner = "PVT";
constexpr i32 kRandomPicks = 5;

constexpr std::size_t kPassenger = 0, kCargo = 1;

/// What is asked for, and by which step.
struct LiveryKey {
    i32 step = 0;
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

std::span<const std::string_view> lf_all(const TitleList* titles) {
    return titles == nullptr ? std::span<const std::string_view>() : std::span(*titles);
}

void lf_traceLookup(const LiveryKey& key, MatchTable table, std::size_t index, const TitleList* titles) {
    if (gMatchTrace == nullptr) return;
    gf_traceLookup(key.step, table, index == kCargo, key.airline, key.type, lf_all(titles));
}

void lf_traceNoLookup(const LiveryKey& key, MatchVerdict verdict) {
    if (gMatchTrace != nullptr) gf_traceNoLookup(key.step, verdict, key.airline, key.type);
}

i32 lf_registrationStep(const ParkedAc& ac) {
    return uniqueRegcodes.contains(ac.registration) ? uniqueRegistration : registered;
}

bool lf_lookupRegistration(ParkedAc& ac) {
    if (ac.registration.empty()) {
        lf_traceNoLookup({registered, {}, {}}, MatchVerdict::noRegistration);
        return false;
    }
    const auto entry = regcodeTitles.find(ac.registration);
    const bool found = entry != regcodeTitles.end();
    if (gMatchTrace != nullptr) {
        const std::span<const std::string_view> title(found ? &entry->second : nullptr, found ? 1 : 0);
        gf_traceLookup(lf_registrationStep(ac), MatchTable::registrations, false, ac.registration, {}, title);
    }
    if (!found) return false;
    ac.liveryTitle = entry->second;
    return !ac.liveryTitle.empty();
}

/// Null when the airline has no livery of the type.
const TitleList* lf_airlineTitles(const LiveryKey& key, std::size_t index) {
    const auto types = airlineTitles[index].find(key.airline);
    if (types == airlineTitles[index].end()) return nullptr;
    const auto list = types->second.find(key.type);
    return list == types->second.end() ? nullptr : &list->second;
}

bool lf_lookupAirlineType(ParkedAc& ac, const LiveryKey& key, std::size_t index) {
    const TitleList* titles = lf_airlineTitles(key, index);
    lf_traceLookup(key, MatchTable::airlines, index, titles);
    if (titles == nullptr) return false;
    lf_pickTitle(ac, *titles);
    return !ac.liveryTitle.empty();
}

/// A cargo aircraft may fall back to a passenger livery, but never the other way round.
bool lf_lookupCargoFirst(ParkedAc& ac, const LiveryKey& key) {
    return (ac.cargo && lf_lookupAirlineType(ac, key, kCargo)) || lf_lookupAirlineType(ac, key, kPassenger);
}

bool lf_lookupGeneric(ParkedAc& ac, std::string_view type, i32 step) {
    const std::size_t index = ac.cargo ? kCargo : kPassenger;
    const auto list = genericTitles[index].find(type);
    const TitleList* titles = list == genericTitles[index].end() ? nullptr : &list->second;
    lf_traceLookup({step, {}, type}, MatchTable::generics, index, titles);
    if (titles == nullptr) return false;
    lf_pickTitle(ac, *titles);
    return !ac.liveryTitle.empty();
}

bool lf_lookupSimilar(ParkedAc& ac, const LiveryKey& key) {
    const std::vector<std::string> types = gf_similarForAirline(key.airline, key.type);
    if (types.empty()) lf_traceNoLookup(key, MatchVerdict::noStandIn);
    for (const std::string& type : types) {
        const LiveryKey similarKey{key.step, key.airline, type};
        if (gf_acClass(type) != ac.acClass) {
            lf_traceNoLookup(similarKey, MatchVerdict::otherClass);
        } else if (lf_lookupCargoFirst(ac, similarKey)) {
            return true;
        }
    }
    return false;
}

bool lf_lookupSimilarGeneric(ParkedAc& ac) {
    const std::vector<std::string> types = gf_similarTypes(ac.model);
    if (types.empty()) lf_traceNoLookup({similarGeneric, {}, ac.model}, MatchVerdict::noStandIn);
    return std::any_of(types.begin(), types.end(),
                       [&ac](const std::string& type) { return lf_lookupGeneric(ac, type, similarGeneric); });
}

/// The steps that don't ask for the airline; the one that left a title, or kNoMatchStep.
i32 lf_matchFallback(ParkedAc& ac, i32 depth) {
    const LiveryKey unbrandedKey{unbranded, kUnbrandedAirline, ac.model};
    if (depth == kDepthUnbranded && lf_lookupCargoFirst(ac, unbrandedKey)) return unbranded;
    // Airliners never wear the paint of another operator.
    if (ac.acClass != Light && ac.acClass != Buzjets && ac.acClass != Rotorcraft) {
        if (depth < kDepthUnbranded) lf_traceNoLookup(unbrandedKey, MatchVerdict::tooShallow);
        lf_traceNoLookup({generic, {}, ac.model}, MatchVerdict::ownPaintOnly);
        return kNoMatchStep;
    }
    if (ac.airline != kPrivateOwner && lf_lookupCargoFirst(ac, unbrandedKey)) return unbranded;
    if (lf_lookupGeneric(ac, ac.model, generic)) return generic;
    return lf_lookupSimilarGeneric(ac) ? similarGeneric : kNoMatchStep;
}

/// Drops a title that the simulator has refused.
bool lf_isUsable(ParkedAc& ac) {
    const bool refused = failedTitles.contains(ac.liveryTitle);
    if (gMatchTrace != nullptr) gf_traceDraw(ac.liveryTitle, refused);
    if (refused) ac.liveryTitle = {};
    return !refused;
}

void lf_logMatch(const ParkedAc& ac, i32 step) {
    gf_log(fmt::format("          {} ={}= {}", liveAcLabel(ac), step, ac.liveryTitle));
}

bool lf_acceptMatch(LiveAc& ac, i32 step) {
    if (!lf_isUsable(ac)) return false;
    matchSteps[static_cast<std::size_t>(step)] += 1;
    lf_logMatch(ac, step);
    ac.fsltlModel = ac.liveryTitle.find("FSLTL_") != std::string_view::npos;
    gMatchSteps.last = step;
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

/// False, and a note on why the search ends, when the setting doesn't allow the step.
bool lf_reaches(i32 depth, i32 needed, i32 step) {
    if (depth < needed) lf_traceNoLookup({step, {}, {}}, MatchVerdict::tooShallow);
    return depth >= needed;
}

bool lf_matchLive(LiveAc& ac) {
    const i32 depth = MATCHING_DEPTH.current;
    const auto accepted = [&ac](bool found, i32 step) { return found && lf_acceptMatch(ac, step); };
    const auto worn = [&](const LiveryKey& key) { return accepted(lf_lookupCargoFirst(ac, key), key.step); };
    const auto wornBySimilar = [&](const LiveryKey& key) { return accepted(lf_lookupSimilar(ac, key), key.step); };

    if (accepted(lf_lookupRegistration(ac), lf_registrationStep(ac))) return true;
    if (!lf_reaches(depth, kDepthAirline, airlineAndType)) return false;
    if (ac.airline == kPrivateOwner && worn({unbranded, kUnbrandedAirline, ac.model})) return true;
    const bool hasAirline = !ac.airline.empty();
    if (!hasAirline) lf_traceNoLookup({airlineAndType, {}, ac.model}, MatchVerdict::noAirline);
    const auto painted = hasAirline ? lf_paintedAirline(ac) : std::nullopt;
    if (hasAirline && worn({airlineAndType, ac.airline, ac.model})) return true;
    if (painted && worn({airlineAndType, *painted, ac.model})) return true;
    if (!lf_reaches(depth, kDepthSimilar, similarType)) return false;
    if (hasAirline && wornBySimilar({similarType, ac.airline, ac.model})) return true;
    if (painted && wornBySimilar({similarType, *painted, ac.model})) return true;
    const i32 step = lf_matchFallback(ac, depth);
    return accepted(step != kNoMatchStep, step);
}

/// Walks the types that stand in for the aircraft's own; unlike a live match it doesn't ask for the class, and a
/// refused title doesn't end it.
bool lf_walkSimilar(ParkedAc& ac, std::string_view airline, const std::vector<std::string>& types) {
    if (types.empty()) lf_traceNoLookup({similarType, airline, ac.model}, MatchVerdict::noStandIn);
    return std::any_of(types.begin(), types.end(), [&](const std::string& type) {
        return lf_lookupCargoFirst(ac, {similarType, airline, type}) && lf_acceptParked(ac, similarType);
    });
}

bool lf_matchParked(ParkedAc& ac) {
    const i32 depth = MATCHING_DEPTH.current;
    const auto accepted = [&ac](bool found, i32 step) { return found && lf_acceptParked(ac, step); };
    const auto worn = [&](const LiveryKey& key) { return accepted(lf_lookupCargoFirst(ac, key), key.step); };

    if (accepted(lf_lookupRegistration(ac), lf_registrationStep(ac))) return true;
    if (!lf_reaches(depth, kDepthAirline, airlineAndType)) return false;
    if (ac.airline == kPrivateOwner && worn({unbranded, kUnbrandedAirline, ac.model})) return true;
    const auto painted = lf_paintedAirline(ac);
    if (worn({airlineAndType, ac.airline, ac.model})) return true;
    if (painted && worn({airlineAndType, *painted, ac.model})) return true;
    if (!lf_reaches(depth, kDepthSimilar, similarType)) return false;
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
    gMatchSteps.last = kNoMatchStep;
    ac.liveryTitle = {};
    if (lf_matchLive(ac)) {
        gMatchSteps.byHexid[ac.hexid] = gMatchSteps.last;
    } else {
        gMatchSteps.byHexid.erase(ac.hexid);
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

std::string gf_noMatchText(const FlightTexts& ac) {
    return fmt::format("{} {}", airlineModel(ac), ac.registration);
}

}  // namespace hcr
