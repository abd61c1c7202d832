#include "tools/feed/report_line.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <iterator>
#include <utility>

namespace hcr {
namespace {

constexpr f64 kOnGroundFt = 8;     // above the runway
constexpr f64 kHeightStepFt = 25;  // of the transponder
constexpr f64 kClimbStepFpm = 64;
constexpr f64 kLookAheadMetres = 100;
constexpr f64 kGravityKt = 9.80665 / (kMetresPerNm / 3600);  // knots per second
constexpr std::size_t kTimestampField = 14;

f64 lf_step(f64 value, f64 step) {
    return std::round(value / step) * step + 0.0;  // + 0.0: no "-0"
}

f64 lf_compass(f64 radians) {
    const f64 degrees = wrapTwoPi(std::remainder(radians, 2 * kPi)) * kRadToDeg;
    return degrees >= 359.995 ? 0 : degrees;
}

// Ratio of the air's temperature and density to those at sea level in the standard atmosphere.
f64 lf_temperatureRatio(f64 feet) {
    constexpr f64 kTropopauseFt = 36089;
    return 1 - 6.8756e-6 * std::min(feet, kTropopauseFt);
}

f64 lf_densityRatio(f64 feet) {
    return std::pow(lf_temperatureRatio(feet), 4.2559);
}

f64 lf_windKt(const FeedWind& wind, f64 feet) {
    return std::min(wind.groundKt + std::max(feet, 0.0) / 900, 45.0);
}

// True course at the place; the flat picture's north is the true one only in its middle.
f64 lf_trueCourse(const Airfield& field, const Motion& motion) {
    const LatLon here = flatToGeo(field.origin, motion.at);
    const LatLon there = flatToGeo(field.origin, motion.at + flatDirection(motion.track) * kLookAheadMetres);
    return bearingRad(here.lat, here.lon, there.lat, there.lon);
}

// Begin and end of field 14; equal when there is none.
std::pair<std::size_t, std::size_t> lf_timestampPlace(std::string_view line) {
    std::size_t begin = 0;
    for (std::size_t i = 0; i < kTimestampField; ++i) {
        const std::size_t comma = line.find(',', begin);
        if (comma == std::string_view::npos) return {line.size(), line.size()};
        begin = comma + 1;
    }
    return {begin, std::min(line.find(',', begin), line.size())};
}

struct Air {
    f64 course = 0, heading = 0;  // radians
    f64 tas = 0, ias = 0, mach = 0, bank = 0;
    f64 windKt = 0, oat = 15;
};

Air lf_air(const Airfield& field, const FeedWind& wind, const Motion& motion) {
    Air air;
    air.course = lf_trueCourse(field, motion);
    air.windKt = lf_windKt(wind, motion.height);
    const FlatPoint still = flatDirection(air.course) * motion.speed + flatDirection(wind.from) * air.windKt;
    air.tas = flatLength(still);
    air.heading = flatBearing(still);
    const f64 ratio = lf_temperatureRatio(motion.height);
    air.ias = air.tas * std::sqrt(lf_densityRatio(motion.height));
    air.mach = air.tas / (661.47 * std::sqrt(ratio));
    air.oat = 288.15 * ratio - 273.15;
    air.bank = std::atan(motion.turnRate * air.tas / kGravityKt);
    return air;
}

}  // namespace

bool onGround(const Airfield& field, f64 heightFt) {
    return heightFt - field.elevationFt < kOnGroundFt;
}

std::string reportLine(const GeneratedAircraft& aircraft, const std::string& callsign, const Airfield& field,
                       const FeedWind& wind, const Motion& motion, f64 timestamp) {
    const LatLon at = flatToGeo(field.origin, motion.at);
    const bool ground = onGround(field, motion.height);
    const Air air = lf_air(field, wind, motion);
    const f64 nose = ground ? air.course + (motion.reverse ? kPi : 0) : air.heading;
    // What stands tells where its nose points; what moves tells where it goes.
    const f64 track = motion.speed > 0 ? air.course : nose;
    const f64 height = ground ? 0 : lf_step(motion.height, kHeightStepFt);
    const f64 vs = ground ? 0 : lf_step(motion.vs, kClimbStepFpm);
    std::string line = fmt::format(
        "RTTFC,{},{:.5f},{:.5f},{:.0f},{:.0f},{},{:.2f},{:.2f},{},{},{},{},{},{:.1f},X2,{},{}", aircraft.hexid, at.lat,
        at.lon, height, vs, 1, lf_compass(track), motion.speed, callsign, aircraft.type, aircraft.registration,
        aircraft.from, aircraft.to, timestamp, aircraft.iataFlight.empty() ? callsign : aircraft.iataFlight,
        aircraft.sendsHeading ? "adsb_icao" : "mlat");
    const auto out = std::back_inserter(line);
    const char* category = aircraft.kind == FeedKind::vehicle ? "C2" : feedPerformance(aircraft.type).category;
    if (ground || !aircraft.sendsHeading) {
        fmt::format_to(out,
                       ",-1,-1,-1,-1.000,-1.0,-1.0,-1.00,{:.2f},-1,,{},-1.0,-1,-1,-1.00,,0.4,-9.5,-1,-1,-1,-1,1,0,,",
                       aircraft.sendsHeading ? lf_compass(nose) : -1.0, category);
        return line;
    }
    const f64 roll = aircraft.sendsRoll ? lf_step(air.bank * kRadToDeg, 0.1) : -1.0;
    const f64 selected = std::max(lf_step(motion.height + (vs > 0 ? 2000 : vs < 0 ? -2000 : 0), 1000), 1000.0);
    fmt::format_to(out, ",{:.0f},{:.0f},{:.0f},{:.3f},{:.1f},{:.1f},{:.2f},{:.2f},{:.0f}", height + 75, air.ias,
                   air.tas, air.mach, lf_step(motion.turnRate * kRadToDeg, 0.1), roll, lf_compass(nose - 0.03),
                   lf_compass(nose), vs);
    fmt::format_to(out, ",none,{},1013.6,{:.0f},-1,-1.00,autopilot|tcas,0.2,-8.1,{:.0f},{:.0f},{:.0f},{:.0f},1,{},,",
                   category, selected, lf_compass(wind.from), air.windKt, air.oat, air.oat + 25 * air.mach,
                   aircraft.hexid % 99991);
    return line;
}

std::string withTimestamp(const std::string& line, f64 timestamp) {
    const auto [begin, end] = lf_timestampPlace(line);
    if (begin == end) return line;
    return line.substr(0, begin) + fmt::format("{:.1f}", timestamp) + line.substr(end);
}

f64 timestampOf(std::string_view line) {
    const auto [begin, end] = lf_timestampPlace(line);
    f64 value = 0;
    const auto result = std::from_chars(line.data() + begin, line.data() + end, value);
    return result.ec == std::errc() && std::isfinite(value) ? value : 0;
}

}  // namespace hcr
