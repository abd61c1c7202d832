#include "engine/identity.h"

#include <fmt/format.h>

#include <utility>

#include "core/model/labels.h"
#include "core/model/park_state.h"
#include "engine/conflicts.h"
#include "engine/leg.h"
#include "engine/reappearance.h"
#include "liveries/dbase.h"
#include "liveries/livery_tables.h"
#include "liveries/match_memory.h"
#include "parking/learned.h"
#include "shell/log.h"
#include "shell/parameters.h"

namespace hcr {
namespace {

void lf_copyIfGiven(std::string& target, std::string_view source) {
    if (!source.empty()) target = source;
}

bool lf_copyIfMissing(std::string& target, const std::string& source) {
    if (source.empty() || !target.empty()) return false;
    target = source;
    return true;
}

void lf_forgetLivery(LiveAc& ac) {
    rememberedLiveries.erase(ac.hexid);
    ac.liveryTitle = {};
    setFlightState(ac, FlightState::birth);
}

std::string_view lf_operatorOf(const DbaseRecord& record) {
    return record.opr.empty() ? record.airl : record.opr;
}

void lf_takeLook(LiveAc& ac, const DbaseRecord& record) {
    lf_copyIfGiven(ac.airline, lf_operatorOf(record));
    lf_copyIfGiven(ac.model, record.type);
}

/// A value that the record doesn't give is no other one.
bool lf_givesOther(std::string_view given, std::string_view present) {
    return !given.empty() && given != present;
}

bool lf_showsOther(const LiveAc& ac, const DbaseRecord& record) {
    return lf_givesOther(lf_operatorOf(record), ac.airline) || lf_givesOther(record.type, ac.model);
}

/// False when the aircraft gets another look.
bool lf_lookByRegistration(LiveAc& ac, const TrafficReport& report) {
    const DbaseRecord* record = gf_dbaseRecord(report.registration);
    const auto title = regcodeTitles.find(report.registration);
    if (title != regcodeTitles.end()) {
        if (title->second == ac.liveryTitle) return true;
        if (record != nullptr) lf_takeLook(ac, *record);
    } else {
        if (record == nullptr || !lf_showsOther(ac, *record)) return true;
        lf_takeLook(ac, *record);
    }
    lf_forgetLivery(ac);
    return false;
}

bool lf_lookByAirline(LiveAc& ac, const TrafficReport& report) {
    const DbaseRecord* record = gf_dbaseRecord(report.registration);
    if (record == nullptr || !lf_showsOther(ac, *record)) return true;
    if (!record->opr.empty() && record->opr == ac.airline) return true;
    const std::string flown = gf_airlineOfCallsign(report.callsign);
    if (flown.empty() || (flown != record->airl && flown != record->opr)) return true;
    lf_takeLook(ac, *record);
    if (ac.flightState == FlightState::parked) lf_addRealStandOption(ac.standId, ac, 0);
    lf_forgetLivery(ac);
    return false;
}

bool lf_checkRegistration(LiveAc& ac, const TrafficReport& report) {
    if (report.registration.empty()) return true;
    bool sameLook = true;
    if (ac.registration.empty() || (ac.registration == ac.callsign && ac.registration != report.registration)) {
        sameLook = lf_lookByRegistration(ac, report);
    } else if (ac.registration != report.registration) {
        sameLook = lf_lookByAirline(ac, report);
    }
    ac.registration = report.registration;
    return sameLook;
}

/// True when the route changed.
bool lf_checkRoute(LiveAc& ac, const TrafficReport& report) {
    bool changed = lf_copyIfMissing(ac.to, report.to);
    changed = lf_copyIfMissing(ac.from, report.from) || changed;
    const bool known = !ac.to.empty() && !ac.from.empty() && !report.to.empty() && !report.from.empty();
    if (!known || ac.to == report.to || ac.from == report.from) return changed;
    const bool returnLeg = !gParkAirport.iata.empty() && ac.from == gParkAirport.iata && report.to == ac.from;
    if (returnLeg) return changed;
    ac.from = report.from;
    ac.to = report.to;
    if (ac.onGround && ac.flightState != FlightState::parking && ac.flightState != FlightState::parked) {
        setFlightState(ac, FlightState::taxi);
        ac.targetHeading = ac.heading;
    }
    return true;
}

/// False: the new name is a ghost's, and the report must not go on.
bool lf_takeName(LiveAc& ac, const std::string& name) {
    // Renamed first: the aircraft's own former name makes neither it nor the new one a ghost.
    std::string former = std::exchange(ac.callsign, name);
    if (!name.ends_with('_')) {
        lf_findGhost(name);
    } else if (lf_isGhostName(name)) {
        ac.callsign = std::move(former);
        return false;
    }
    ac.coupledCs1 = name;
    ac.coupledCs2.clear();
    return true;
}

}  // namespace

bool lf_checkIdentity(LiveAc& ac, const TrafficReport& report) {
    if (ac.takeOffRun || ac.landing) return true;
    if (ac.lifeState == LifeState::buffer) {
        lf_copyIfGiven(ac.to, report.to);
        lf_copyIfGiven(ac.from, report.from);
        lf_copyIfGiven(ac.callsign, report.callsign);
        lf_copyIfGiven(ac.registration, report.registration);
        return true;
    }
    if (ac.lifeState != LifeState::active || ac.flightState == FlightState::pushing_back || ac.extendCount >= 1) {
        return true;
    }
    const bool routeChanged = lf_checkRoute(ac, report);
    const bool sameLook = lf_checkRegistration(ac, report);
    const bool newName =
        !report.callsign.empty() && report.callsign != ac.callsign && report.callsign != ac.registration;
    if (newName) {
        if (!lf_takeName(ac, report.callsign)) return false;
    } else if (sameLook && !routeChanged) {
        return true;
    }
    if (!GUID_CHANGES.current) return true;
    if (gf_mayLog(LogKind::respawn)) gf_log(fmt::format("          {} respawns", flightLabel(ac)));
    liveryRespawn(ac);
    return false;
}

}  // namespace hcr
