#include "feed/traffic_line.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <exception>
#include <optional>

#include "core/model/geo.h"
#include "core/model/range.h"
#include "core/model/run_state.h"
#include "core/model/tables.h"
#include "feed/feed_counters.h"
#include "feed/field_text.h"
#include "shell/log.h"
#include "shell/parameters.h"
#include "shell/text.h"

namespace hcr {
namespace {

// Fields of a line, from 0.
enum Field : std::size_t {
    kHexid = 1,
    kLat = 2,
    kLon = 3,
    kAltitude = 4,
    kVs = 5,
    kTrack = 7,
    kGroundSpeed = 8,
    kCallsign = 9,
    kModel = 10,
    kRegistration = 11,
    kFrom = 12,
    kTo = 13,
    kTimestamp = 14,
    kMessageType = 17,
    kTas = 20,
    kRoll = 23,
    kTrueHeading = 25,
    kCategory = 28,
    kFieldCount = 29
};

constexpr i32 kPlayingDelayCs = 3000;  // a report is played half a minute after its arrival
// So many reports wait at most, 15 seconds' work of the worker. A longer queue would bring them after the time at which
// they are played, and no aircraft would fly at all; what is lost instead are single positions.
constexpr std::size_t kLongestQueue = 3000;
constexpr std::size_t kLongestRegistration = 12;
constexpr std::size_t kLongestCallsign = 31;  // the simulator knows an aircraft again by so many bytes
constexpr std::size_t kLongestModel = 4;
constexpr f64 kParkAirportNm = 5;     // ground movements are shown this near to the park airport
constexpr f64 kLowFt = 14000;         // above it no aircraft is taken as standing at an airport
constexpr f64 kHoverKt = 35;          // nothing but a helicopter flies that slowly
constexpr f64 kAirborneOnlyFt = 300;  // above the park airport

// What lies outside of these no aircraft does; such a value counts as a number that can't be read.
struct Limits {
    f64 low = 0, high = 0;
};
constexpr Limits kTimestampLimits{0, 253402300799};  // the year 9999 ends
constexpr Limits kAltitudeLimits{-1e9, 200000};      // feet; what is below the sea counts as ground in any depth
constexpr Limits kSpeedLimits{0, 4000};              // knots
constexpr Limits kVsLimits{-100000, 100000};         // feet per minute
constexpr Limits kTrackLimits{-360, 360};            // degrees
constexpr Limits kRollLimits{-180, 180};             // degrees

struct GroundTest {
    f64 feet = 0, speed = 0;
};
// At most so high above the park airport and at most so fast: on the ground.
constexpr GroundTest kGroundTests[] = {{42, 120}, {84, 80}, {108, 43}};

struct TasByAltitude {
    f64 upToFt = 0, tas = 0;
};
constexpr TasByAltitude kUsualTas[] = {{2000, 180}, {5000, 220}, {10000, 250}, {20000, 350}};
constexpr f64 kUsualTasHigh = 430;

constexpr u64 gVehicleTypes[] = {gf_shortText("BALL"), gf_shortText("EMER"), gf_shortText("GLID"),
                                 gf_shortText("GRND"), gf_shortText("GND"),  gf_shortText("PARA"),
                                 gf_shortText("SERV"), gf_shortText("SHIP"), gf_shortText("VENT")};
constexpr u64 kExcludedCategories[] = {gf_shortText("B1"), gf_shortText("B2"), gf_shortText("B4"), gf_shortText("C1"),
                                       gf_shortText("C2")};
constexpr u64 kNoAircraftCallsigns[] = {gf_shortText("ERARMTR1"), gf_shortText("AIRPORT1"), gf_shortText("00000000")};

template <std::size_t N>
bool lf_isOneOf(const u64 (&list)[N], std::string_view text) {
    const u64 word = gf_shortText(text);
    return std::find(std::begin(list), std::end(list), word) != std::end(list);
}

bool lf_within(f64 value, const Limits& limits) {
    return value >= limits.low && value <= limits.high;
}

// One line on its way to a report. The steps below take the report's values from the fields; one that returns false
// has found the line to be dropped, for the reason in `drop`.
struct DecodedLine {
    LineDecoder& decoder;
    std::string_view text;
    const std::vector<std::string_view>& fields;
    PosSample sample{};
    std::string_view model{}, from{}, to{}, callsign{}, registration{};  // into the line
    f64 timestamp = 0;
    u32 hexid = 0;
    LineDrop drop = LineDrop::badField;
    const char* fault = "";  // of a bad field: what the log says before the field's text
    Field badField = kHexid;
    std::string (*faultText)(const DecodedLine&) = nullptr;  // in place of both
};

std::optional<f64> lf_number(const DecodedLine& line, Field field) {
    const std::string_view text = line.text;
    return gf_fieldNumber(line.fields[field], text.data() + text.size());
}

bool lf_drop(DecodedLine& line, LineDrop reason) {
    line.drop = reason;
    return false;
}

// The text of a fault is put together when it is logged only.
bool lf_refuse(DecodedLine& line, std::string (*faultText)(const DecodedLine&)) {
    line.faultText = faultText;
    return lf_drop(line, LineDrop::badField);
}

bool lf_refuse(DecodedLine& line, const char* fault, Field field) {
    line.fault = fault;
    line.badField = field;
    return lf_drop(line, LineDrop::badField);
}

void lf_logFault(const DecodedLine& line) {
    if (!gf_mayLog(LogKind::trafficLine)) return;
    gf_log("exception in processLineSub: " +
           (line.faultText != nullptr ? line.faultText(line) : line.fault + gf_quoted(line.fields[line.badField])));
}

// False, and told with the fault's text, for what is no number or outside of the limits.
bool lf_take(DecodedLine& line, Field field, const Limits& limits, const char* fault, f64& target) {
    const std::optional<f64> value = lf_number(line, field);
    if (!value || !lf_within(*value, limits)) return lf_refuse(line, fault, field);
    target = *value;
    return true;
}

// Whether no control byte stands in the fields of text, which lie side by side but for the category. A callsign that
// begins with a zero would make an object that nobody can find again; others end lines of the log or steer a terminal.
bool lf_textsArePlain(const DecodedLine& line) {
    const char* const begin = line.fields[kCallsign].data();
    const std::string_view last = line.fields[kMessageType];
    const std::string_view texts(begin, static_cast<std::size_t>(last.data() + last.size() - begin));
    return !gf_holdsControls(texts) && !gf_holdsControls(line.fields[kCategory]);
}

bool lf_takeTimestamp(DecodedLine& line) {
    if (!lf_take(line, kTimestamp, kTimestampLimits, "timestamp:", line.timestamp)) return false;
    gLastTimestamp.store(line.timestamp, std::memory_order_relaxed);
    return true;
}

bool lf_takePosition(DecodedLine& line) {
    const std::optional<f64> lat = lf_number(line, kLat);
    if (!lat) return lf_refuse(line, "lat:", kLat);
    const std::optional<f64> lon = lf_number(line, kLon);
    if (!lon) return lf_refuse(line, "lon:", kLon);
    line.sample.lat = *lat;
    line.sample.lon = *lon;
    const bool onEarth = std::fabs(*lat) <= 90 && std::fabs(*lon) <= 180;
    if (onEarth && positionKnown(*lat, *lon)) return true;
    return lf_refuse(line, [](const DecodedLine& bad) {
        return fmt::format("invalid lalo: {:.6f},{:.6f}", bad.sample.lat, bad.sample.lon);
    });
}

bool lf_nearUser(DecodedLine& line) {
    const LineDecoder& decoder = line.decoder;
    const PosSample& s = line.sample;
    return distanceNm(decoder.userLat, decoder.userLon, s.lat, s.lon) <= gRangeNm ||
           lf_drop(line, LineDrop::outOfRange);
}

bool lf_takeRegistration(DecodedLine& line) {
    const std::string_view field = line.fields[kRegistration];
    if (field.size() > kLongestRegistration) return lf_drop(line, LineDrop::registration);
    line.registration = gf_fieldText(field);
    return true;
}

void lf_collectCallsign(const DecodedLine& line) {
    LineDecoder& decoder = line.decoder;
    if (!decoder.collectCallsigns) return;
    const std::string_view callsign = gf_fieldText(line.fields[kCallsign]);
    if (callsign.empty() || callsign.find('@') != std::string_view::npos) return;
    const std::lock_guard lock(decoder.callsignMutex);
    if (!decoder.collectCallsigns || decoder.realCallsigns.contains(callsign)) return;
    decoder.realCallsigns.emplace(callsign);
}

bool lf_takeModel(DecodedLine& line) {
    std::string_view model = gf_fieldText(line.fields[kModel]);
    if (model == "0" || model == "ZZZZ") model = {};
    if (model.empty()) return lf_drop(line, LineDrop::noAircraft);
    const std::string_view category = gf_fieldText(line.fields[kCategory]);
    const bool vehicle = model.size() > kLongestModel || lf_isOneOf(gVehicleTypes, model);
    if (!category.empty() && (vehicle || lf_isOneOf(kExcludedCategories, category))) {
        return lf_drop(line, LineDrop::noAircraft);
    }
    line.model = model;
    return true;
}

// "adsb_icao", or the same behind a letter for its source as in "X_adsb_icao".
bool lf_isAdsb(std::string_view messageType) {
    constexpr std::string_view kAdsb = "adsb_icao";
    constexpr std::size_t kSourceLength = 2;
    if (!messageType.ends_with(kAdsb)) return false;
    const std::string_view source = messageType.substr(0, messageType.size() - kAdsb.size());
    if (source.empty()) return true;
    const char letter = static_cast<char>(source[0] | 0x20);  // in lower case
    return source.size() == kSourceLength && letter >= 'a' && letter <= 'z' && source[1] == '_';
}

bool lf_takeTrueHeading(DecodedLine& line) {
    if (!lf_isAdsb(line.fields[kMessageType])) return true;
    const std::optional<f64> degrees = lf_number(line, kTrueHeading);
    if (!degrees) return lf_refuse(line, "trueheading:", kTrueHeading);
    if (*degrees > 360) {
        return lf_refuse(line, [](const DecodedLine& bad) {
            return fmt::format("trueheading: {:.2f}", lf_number(bad, kTrueHeading).value_or(0));
        });
    }
    if (*degrees < 0) return true;
    PosSample& s = line.sample;
    s.trueHeading = *degrees == 0 ? 2 * kPi : *degrees * kDegToRad;  // 0 would look like a missing one
    s.trueHeadingValid = s.adsb = true;
    return true;
}

bool lf_takeHexid(DecodedLine& line) {
    const std::string_view field = line.fields[kHexid];
    u32& hexid = line.hexid;
    const auto result = std::from_chars(field.data(), field.data() + field.size(), hexid);
    if (result.ec != std::errc()) return lf_refuse(line, "hexid incorrect", kHexid);
    return hexid > kLastStaticId || lf_drop(line, LineDrop::parkedId);
}

// Sets the altitude, 0 for what is taken as being on the ground; false: the line is to be dropped.
bool lf_decodeAltitude(DecodedLine& line) {
    constexpr f64 kNoFieldFt = -1000;  // below every altitude that is tested, so that the test fails
    const LineDecoder& decoder = line.decoder;
    const std::optional<f64> feet = lf_number(line, kAltitude);
    if (!feet || !lf_within(*feet, kAltitudeLimits)) {
        return lf_refuse(line, [](const DecodedLine& bad) {
            return fmt::format("altitude {} incorrect, from: {}", gf_quoted(bad.fields[kAltitude]),
                               gf_quoted(bad.text));
        });
    }
    const bool fieldKnown = decoder.parkAirportAltValid;
    const f64 fieldFt = decoder.parkAirportAlt;
    const f64 speed = line.sample.speed;
    f64 alt = std::max(*feet, 0.0);
    if (alt > 0 && alt < kLowFt) {
        const f64 above = alt - (fieldKnown ? fieldFt : kNoFieldFt);
        const auto onGround = [&](const GroundTest& test) { return above <= test.feet && speed <= test.speed; };
        if (above <= 0 || std::any_of(std::begin(kGroundTests), std::end(kGroundTests), onGround)) alt = 0;
    }
    if (speed <= kHoverKt) alt = 0;
    line.sample.alt = alt;
    line.sample.airborne = alt > 0;
    if (!AIRBORNE_ONLY.current) return true;
    const bool keep = alt > 0 && std::fabs(alt - (fieldKnown ? fieldFt : 0)) > kAirborneOnlyFt;
    return keep || lf_drop(line, LineDrop::airborneOnly);
}

bool lf_takeCallsign(DecodedLine& line) {
    std::string_view callsign = gf_fieldText(line.fields[kCallsign]);
    if (callsign.find('@') != std::string_view::npos) callsign = {};
    if (callsign.size() > kLongestCallsign || lf_isOneOf(kNoAircraftCallsigns, callsign)) {
        return lf_drop(line, LineDrop::callsign);
    }
    line.callsign = callsign;
    return !callsign.empty() || !line.registration.empty() || lf_drop(line, LineDrop::noIdentity);
}

// Movements on the ground are shown at the park airport only.
bool lf_groundIsShown(DecodedLine& line) {
    const LineDecoder& decoder = line.decoder;
    const PosSample& s = line.sample;
    if (s.airborne) return true;
    const bool shown = decoder.parkAirportAltValid &&
                       distanceNm(decoder.parkAirportLat, decoder.parkAirportLon, s.lat, s.lon) <= kParkAirportNm;
    return shown || lf_drop(line, LineDrop::onGround);
}

bool lf_takeTrack(DecodedLine& line) {
    PosSample& s = line.sample;
    const std::string_view field = line.fields[kTrack];
    const std::optional<f64> track = field.empty() ? 0.0 : lf_number(line, kTrack);
    if (!track || !lf_within(*track, kTrackLimits)) return lf_refuse(line, "track incorrect ", kTrack);
    s.track = *track == 0 && s.trueHeadingValid ? s.trueHeading * kRadToDeg : *track;
    return true;
}

bool lf_takeRoll(DecodedLine& line) {
    PosSample& s = line.sample;
    if (!s.airborne) return true;
    f64 degrees = 0;
    if (!lf_take(line, kRoll, kRollLimits, "roll:", degrees)) return false;
    if (degrees == -1 || degrees == 0) return true;
    s.roll = -degrees * kDegToRad;
    s.rollValid = true;
    return true;
}

f64 lf_usualTas(f64 alt) {
    const auto row = std::find_if(std::begin(kUsualTas), std::end(kUsualTas),
                                  [alt](const TasByAltitude& r) { return alt <= r.upToFt; });
    return row == std::end(kUsualTas) ? kUsualTasHigh : row->tas;
}

bool lf_takeTas(DecodedLine& line) {
    PosSample& s = line.sample;
    const std::optional<f64> tas = lf_number(line, kTas);
    const bool unknown = tas == -1.0;
    if (!tas || (!unknown && !lf_within(*tas, kSpeedLimits))) return lf_refuse(line, "TAS incorrect", kTas);
    s.tas = unknown ? lf_usualTas(s.alt) : *tas;
    return true;
}

// This thread alone writes the counters; so it needs no locked addition.
void lf_count(std::atomic<u64>& counter) {
    counter.store(counter.load(std::memory_order_relaxed) + 1, std::memory_order_relaxed);
}

void lf_count(LineDrop reason) {
    lf_count(gFeedCounters.dropped[static_cast<int>(reason)]);
}

bool lf_queue(DecodedLine& line) {
    const std::lock_guard lock(gReportMutex);
    if (!gAcceptReports) return lf_drop(line, LineDrop::notAccepting);
    if (gReports.size() >= kLongestQueue) {
        gReports.pop_front();
        lf_count(LineDrop::overtaken);
    }
    TrafficReport& report = gReports.extend();
    report.airline.clear();
    report.coupledCs1.clear();
    report.coupledCs2.clear();
    report.coupledSearched = false;
    report.sample = line.sample;
    report.sample.time = simTick + kPlayingDelayCs;
    report.model = line.model;
    report.from = line.from;
    report.to = line.to;
    report.callsign = line.callsign;
    report.registration = line.registration;
    report.timestamp = line.timestamp;
    report.hexid = line.hexid;
    return true;
}

void lf_takeRoute(DecodedLine& line) {
    line.from = gf_fieldText(line.fields[kFrom]);
    line.to = gf_fieldText(line.fields[kTo]);
}

bool lf_decode(DecodedLine& line) {
    if (!lf_textsArePlain(line)) return lf_drop(line, LineDrop::controlByte);
    if (!lf_takeTimestamp(line) || !lf_takePosition(line)) return false;
    if (!lf_nearUser(line) || !lf_takeRegistration(line)) return false;
    lf_collectCallsign(line);
    if (!lf_takeModel(line) || !lf_takeTrueHeading(line) || !lf_takeHexid(line)) return false;
    if (!lf_take(line, kGroundSpeed, kSpeedLimits, "gs:", line.sample.speed)) return false;
    if (!lf_decodeAltitude(line) || !lf_takeCallsign(line) || !lf_groundIsShown(line)) return false;
    if (!lf_takeTrack(line) || !lf_take(line, kVs, kVsLimits, "vs:", line.sample.vs)) return false;
    lf_takeRoute(line);
    return lf_takeRoll(line) && lf_takeTas(line) && lf_queue(line);
}

}  // namespace

void processLine(LineDecoder& decoder, std::string_view text) {
    lf_count(gFeedCounters.received);
    while (text.ends_with('\n') || text.ends_with('\r')) text.remove_suffix(1);
    if (text.find(" VEH") != std::string_view::npos) return lf_count(LineDrop::vehicle);
    gf_splitFields(text, kFieldCount, decoder.fields);
    processLineSub(decoder, text);
}

void processLineSub(LineDecoder& decoder, std::string_view text) {
    if (decoder.fields.size() < kFieldCount) return lf_count(LineDrop::tooFewFields);
    try {
        DecodedLine line{.decoder = decoder, .text = text, .fields = decoder.fields};
        if (lf_decode(line)) return lf_count(gFeedCounters.accepted);
        lf_count(line.drop);
        if (line.drop == LineDrop::badField) lf_logFault(line);
    } catch (const std::exception& e) {
        if (gf_mayLog(LogKind::trafficLine)) gf_log(fmt::format("exception in processLineSub: {}", e.what()));
        lf_count(LineDrop::badField);
    }
}

}  // namespace hcr
