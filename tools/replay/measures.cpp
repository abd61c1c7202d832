#include "tools/replay/measures.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "core/model/aircraft_class.h"
#include "core/model/geo.h"
#include "liveries/dbase.h"

namespace hcr {
namespace {

constexpr f64 kLongestGap = 90;     // seconds; what happens in a longer one nobody knows
constexpr f64 kNeighbourhood = 45;  // seconds of the reported path in which the nearest line is looked for
constexpr f64 kWindow = 10;         // seconds around a moment whose reports allow an altitude or a rate of descent
constexpr f64 kLowFt = 1500;
constexpr f64 kMovingKt = 20;
constexpr f64 kSidewaysDeg = 60;
constexpr f64 kDiveFtPerMin = 6000, kReportedDiveFtPerMin = 5000;
constexpr f64 kToothFt = 300, kToothEndFt = 150;
constexpr f64 kLevelFtPerMin = 100;
constexpr f64 kStandingKt = 1, kReportedMovingKt = 10, kDeafSeconds = 60;
constexpr f64 kJumpMetres = 50, kStepFeet = 100;
constexpr f64 kFlickerSeconds = 120;
constexpr f64 kEarlySeconds = 5;
constexpr f64 kLeastSpeedForTime = 30;  // knots; below it a distance is no time
constexpr f64 kKnotsPerMetrePerSecond = 3600.0 / kMetresPerNm;
constexpr f64 kSpawnSeconds = 29;  // one that isn't reported again by then is forgotten
constexpr f64 kYardstickSeconds = 0.5;

struct Plane {
    f64 x = 0, y = 0;  ///< metres east and north of a point
};

Plane lf_from(f64 lat, f64 lon, f64 toLat, f64 toLon) {
    constexpr f64 kMetresPerDegree = 60.0 * kMetresPerNm;
    f64 dLon = toLon - lon;
    if (dLon > 180) dLon -= 360;
    if (dLon < -180) dLon += 360;
    return {dLon * std::cos(lat * kDegToRad) * kMetresPerDegree, (toLat - lat) * kMetresPerDegree};
}

/// The report that begins the leg at this moment; the size of the list behind the last one.
std::size_t lf_legAt(const std::vector<ReportedPoint>& reports, f64 at) {
    const auto next = std::upper_bound(reports.begin(), reports.end(), at,
                                       [](f64 time, const ReportedPoint& p) { return time < p.at; });
    if (next == reports.begin() || next == reports.end()) return reports.size();
    return static_cast<std::size_t>(next - reports.begin()) - 1;
}

ReportedPoint lf_between(const ReportedPoint& a, const ReportedPoint& b, f64 at) {
    const f64 part = b.at > a.at ? (at - a.at) / (b.at - a.at) : 0;
    const auto mix = [part](f64 from, f64 to) { return from + (to - from) * part; };
    f64 lonB = b.lon;
    if (lonB - a.lon > 180) lonB -= 360;
    if (lonB - a.lon < -180) lonB += 360;
    return {at, mix(a.lat, b.lat), mix(a.lon, lonB), mix(a.alt, b.alt), mix(a.speed, b.speed)};
}

struct OnPath {
    f64 metres = 1e9;
    f64 at = 0;  ///< when the reports were there
};

/// The nearest point of the reported path in the neighbourhood of the moment.
OnPath lf_nearest(const std::vector<ReportedPoint>& reports, std::size_t leg, const FlownPoint& p) {
    OnPath best;
    const auto look = [&](std::size_t i) {
        const ReportedPoint& from = reports[i];
        const ReportedPoint& to = reports[i + 1];
        const Plane a = lf_from(p.lat, p.lon, from.lat, from.lon), b = lf_from(p.lat, p.lon, to.lat, to.lon);
        const f64 dx = b.x - a.x, dy = b.y - a.y, length = dx * dx + dy * dy;
        const f64 along = length > 0 ? std::clamp(-(a.x * dx + a.y * dy) / length, 0.0, 1.0) : 0;
        const f64 metres = std::hypot(a.x + along * dx, a.y + along * dy);
        if (metres < best.metres) best = {metres, from.at + along * (to.at - from.at)};
    };
    for (std::size_t i = leg + 1; i-- > 0 && reports[i + 1].at >= p.at - kNeighbourhood;) look(i);
    for (std::size_t i = leg + 1; i + 1 < reports.size() && reports[i].at <= p.at + kNeighbourhood; ++i) look(i);
    return best;
}

/// What the reports around a moment allow.
struct Allowed {
    f64 low = 1e9, high = -1e9;  ///< feet
    f64 steepest = 0;            ///< feet per minute, negative
};

Allowed lf_allowed(const std::vector<ReportedPoint>& reports, std::size_t leg, f64 at) {
    Allowed result;
    const auto include = [&](std::size_t i) {
        const ReportedPoint& a = reports[i];
        const ReportedPoint& b = reports[i + 1];
        result.low = std::min({result.low, a.alt, b.alt});
        result.high = std::max({result.high, a.alt, b.alt});
        if (b.at > a.at) result.steepest = std::min(result.steepest, (b.alt - a.alt) / (b.at - a.at) * 60);
    };
    for (std::size_t i = leg + 1; i-- > 0 && (i == leg || reports[i + 1].at >= at - kWindow);) include(i);
    for (std::size_t i = leg + 1; i + 1 < reports.size() && reports[i].at <= at + kWindow; ++i) include(i);
    return result;
}

/// Counts excursions: one begins beyond the bound and ends well inside.
struct Excursion {
    bool out = false;
    i32 count = 0;

    /// Only who moves outwards makes one; a slow climb behind a report's leap makes none.
    void look(f64 beyond, f64 outwards) {
        if (!out && beyond > kToothFt && outwards > kLevelFtPerMin) {
            out = true;
            ++count;
        } else if (out && beyond < kToothEndFt) {
            out = false;
        }
    }
};

/// How far beside the leg that is due the point lies, metres; what is behind time in a turn lies beside it.
f64 lf_beside(const ReportedPoint& a, const ReportedPoint& b, const FlownPoint& p) {
    const Plane way = lf_from(a.lat, a.lon, b.lat, b.lon), off = lf_from(a.lat, a.lon, p.lat, p.lon);
    const f64 length = std::hypot(way.x, way.y);
    return length > 0 ? std::abs(way.x * off.y - way.y * off.x) / length : std::hypot(off.x, off.y);
}

struct Motion {
    f64 speed = 0;      ///< knots
    f64 direction = 0;  ///< radians
    f64 seconds = 0;
    f64 climb = 0;  ///< feet per minute
};

Motion lf_motion(const FlownPoint& a, const FlownPoint& b) {
    const Plane way = lf_from(a.lat, a.lon, b.lat, b.lon);
    const f64 seconds = b.at - a.at;
    return {std::hypot(way.x, way.y) / seconds * kKnotsPerMetrePerSecond, std::atan2(way.x, way.y), seconds,
            (b.alt - a.alt) / seconds * 60};
}

struct Meter {
    const FlightRecord& flight;
    Measures result;
    Excursion above, below;
    f64 standing = 0;

    void place(const FlownPoint& p, std::size_t leg, f64 climb) {
        const std::vector<ReportedPoint>& reports = flight.reports;
        const OnPath near = lf_nearest(reports, leg, p);
        const ReportedPoint told = lf_between(reports[leg], reports[leg + 1], p.at);
        result.pathMetres.push_back(near.metres);
        result.crossMetres.push_back(lf_beside(reports[leg], reports[leg + 1], p));
        if (told.speed > kLeastSpeedForTime) result.timeErrors.push_back(std::abs(near.at - p.at));
        const f64 off = std::abs(p.alt - told.alt);
        result.altErrors.push_back(off);
        if (told.alt < kLowFt) result.altErrorsLow.push_back(off);
        const Allowed allowed = lf_allowed(reports, leg, p.at);
        above.look(p.alt - allowed.high, climb);
        below.look(allowed.low - p.alt, -climb);
    }

    void move(const FlownPoint& p, const Motion& motion, std::size_t leg) {
        const ReportedPoint told = lf_between(flight.reports[leg], flight.reports[leg + 1], p.at);
        result.seconds += motion.seconds;
        result.speedErrors.push_back(std::abs(motion.speed - told.speed));
        if (motion.speed > kMovingKt &&
            std::abs(wrapPi(p.heading * kDegToRad - motion.direction)) * kRadToDeg > kSidewaysDeg) {
            result.sidewaysSeconds += motion.seconds;
        }
        if (motion.climb < -kDiveFtPerMin && lf_allowed(flight.reports, leg, p.at).steepest > -kReportedDiveFtPerMin) {
            result.diveSeconds += motion.seconds;
        }
        standing = motion.speed < kStandingKt && told.speed > kReportedMovingKt ? standing + motion.seconds : 0;
        result.deafSeconds = std::max(result.deafSeconds, standing);
    }

    void change(const FlownPoint& a, const FlownPoint& b, const Motion& before, const Motion& now) {
        const f64 seconds = (before.seconds + now.seconds) / 2;
        result.speedChanges.push_back(std::abs(now.speed - before.speed) / seconds);
        result.turnRates.push_back(std::abs(wrapPi((b.heading - a.heading) * kDegToRad)) * kRadToDeg / now.seconds);
    }
};

bool lf_known(const std::vector<ReportedPoint>& reports, std::size_t leg) {
    return leg < reports.size() && reports[leg + 1].at - reports[leg].at <= kLongestGap;
}

void lf_appearances(const FlightRecord& flight, Measures& result) {
    const std::vector<FlownPoint>& flown = flight.flown;
    for (std::size_t i = 1; i < flown.size(); ++i) {
        if (flown[i].object != flown[i - 1].object && flown[i].at - flown[i - 1].at < kFlickerSeconds) ++result.flicker;
    }
    if (!flown.empty() && flown.back().at < flight.lastReportAt - kEarlySeconds) result.removedEarly = 1;
}

void lf_append(std::vector<f64>& sum, const std::vector<f64>& one) {
    sum.insert(sum.end(), one.begin(), one.end());
}

}  // namespace

Spread spreadOf(std::vector<f64>& values) {
    if (values.empty()) return {};
    std::sort(values.begin(), values.end());
    return {values[values.size() / 2], values[values.size() * 95 / 100], values.back()};
}

Measures measure(const FlightRecord& flight) {
    Meter meter{flight, {}, {}, {}};
    const std::vector<FlownPoint>& flown = flight.flown;
    Motion before;
    for (std::size_t i = 0; i < flown.size(); ++i) {
        const std::size_t leg = lf_legAt(flight.reports, flown[i].at);
        const bool goesOn = i > 0 && flown[i].object == flown[i - 1].object && flown[i].at > flown[i - 1].at;
        if (!lf_known(flight.reports, leg)) {
            before = {};
            continue;
        }
        const Motion now = goesOn ? lf_motion(flown[i - 1], flown[i]) : Motion{};
        meter.place(flown[i], leg, now.climb);
        if (!goesOn) {
            before = {};
            continue;
        }
        meter.move(flown[i], now, leg);
        if (before.seconds > 0) meter.change(flown[i - 1], flown[i], before, now);
        before = now;
    }
    Measures& result = meter.result;
    result.teeth = meter.above.count + meter.below.count;
    result.toothed = result.teeth > 0 ? 1 : 0;
    result.deaf = result.deafSeconds > kDeafSeconds ? 1 : 0;
    result.jumpMetres = flight.jumpMetres;
    result.stepFeet = flight.stepFeet;
    result.jumps = flight.jumpMetres > kJumpMetres ? 1 : 0;
    result.steps = flight.stepFeet > kStepFeet ? 1 : 0;
    lf_appearances(flight, result);
    return result;
}

void add(Measures& sum, const Measures& one) {
    lf_append(sum.pathMetres, one.pathMetres);
    lf_append(sum.crossMetres, one.crossMetres);
    lf_append(sum.timeErrors, one.timeErrors);
    lf_append(sum.altErrors, one.altErrors);
    lf_append(sum.altErrorsLow, one.altErrorsLow);
    lf_append(sum.speedErrors, one.speedErrors);
    lf_append(sum.speedChanges, one.speedChanges);
    lf_append(sum.turnRates, one.turnRates);
    sum.seconds += one.seconds;
    sum.sidewaysSeconds += one.sidewaysSeconds;
    sum.diveSeconds += one.diveSeconds;
    sum.deafSeconds = std::max(sum.deafSeconds, one.deafSeconds);
    sum.jumpMetres = std::max(sum.jumpMetres, one.jumpMetres);
    sum.stepFeet = std::max(sum.stepFeet, one.stepFeet);
    sum.deaf += one.deaf;
    sum.teeth += one.teeth;
    sum.toothed += one.toothed;
    sum.jumps += one.jumps;
    sum.steps += one.steps;
    sum.flicker += one.flicker;
    sum.removedEarly += one.removedEarly;
}

FlightRecord interpolated(const FlightRecord& flight) {
    FlightRecord result;
    result.hexid = flight.hexid;
    result.reports = flight.reports;
    result.lastReportAt = flight.reports.back().at;
    const std::vector<ReportedPoint>& reports = flight.reports;
    if (reports.size() < 2) return result;
    f64 heading = 0;
    for (f64 at = reports.front().at; at < reports.back().at; at += kYardstickSeconds) {
        const std::size_t leg = lf_legAt(reports, at);
        if (leg == reports.size()) continue;
        const ReportedPoint& a = reports[leg];
        const ReportedPoint& b = reports[leg + 1];
        const Plane way = lf_from(a.lat, a.lon, b.lat, b.lon);
        if (way.x != 0 || way.y != 0) heading = std::atan2(way.x, way.y) * kRadToDeg;
        const ReportedPoint p = lf_between(a, b, at);
        result.flown.push_back({at, p.lat, p.lon, p.alt, heading, 1});
    }
    return result;
}

bool isDue(const FlightRecord& flight, std::string& reason) {
    const DbaseRecord* record = flight.registration.empty() ? nullptr : gf_dbaseRecord(flight.registration);
    const std::string_view type =
        record != nullptr && !record->type.empty() ? record->type : std::string_view(flight.type);
    const auto together = [](const ReportedPoint& a, const ReportedPoint& b) { return b.at - a.at < kSpawnSeconds; };
    if (!gf_isValidType(type)) {
        reason = "unknown type";
    } else if (!classShown(gf_acClass(type))) {
        reason = "switched off";
    } else if (flight.callsign.empty() && flight.registration.empty()) {
        reason = "no name";
    } else if (std::adjacent_find(flight.reports.begin(), flight.reports.end(), together) == flight.reports.end()) {
        reason = "single reports";
    } else {
        return true;
    }
    return false;
}

f64 creationDelay(const FlightRecord& flight) {
    return flight.flown.front().at - flight.reports.front().at;
}

}  // namespace hcr
