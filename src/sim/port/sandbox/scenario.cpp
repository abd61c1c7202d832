#include "sim/port/sandbox/scenario.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <iterator>
#include <limits>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string_view>

#include "shell/text.h"
#include "sim/port/sim_port.h"

namespace hcr {
namespace {

using nlohmann::json;

constexpr f64 kMaxSeconds = 1e7;  // some four months; nobody lets a scenario run longer
constexpr f64 kMaxAltitudeFt = 100000;
constexpr f64 kMinElevationFt = -2000, kMaxElevationFt = 30000;
constexpr f64 kMaxSpeedKt = 3000;
constexpr f64 kMaxUnixSeconds = 32503680000.0;  // the year 3000
constexpr f64 kMaxU32 = std::numeric_limits<u32>::max();
constexpr f64 kMaxObjectsBound = 100000;
constexpr f64 kMaxRadiusNm = 10800;  // half the way round the earth

/// Amsterdam Schiphol.
constexpr UserPoint kParkedUser{0, 52.3086, 4.7639, -2, 180, 0, true};
constexpr f64 kParkedElevation = -11;

struct FaultName {
    std::string_view name;
    FaultKind kind;
};
constexpr FaultName kFaultNames[] = {
    {"quit", FaultKind::quit},           {"flightLoaded", FaultKind::flightLoaded},
    {"newFile", FaultKind::newFile},     {"teleport", FaultKind::teleport},
    {"pause", FaultKind::pause},         {"resume", FaultKind::resume},
    {"failCall", FaultKind::failCall},   {"slowFrames", FaultKind::slowFrames},
    {"exception", FaultKind::exception}, {"removeObject", FaultKind::removeObject},
    {"addTitle", FaultKind::addTitle},   {"refuseTitle", FaultKind::refuseTitle},
    {"addObject", FaultKind::addObject},
};

[[noreturn]] void lf_fail(const std::string& what) {
    throw std::runtime_error(what);
}

/// One JSON object that is being read, and the keys that its reader knows.
struct Fields {
    const json& object;
    std::string path;  ///< "user[2]", empty for the whole file
    std::vector<std::string_view> known;

    std::string nameOf(std::string_view key) const {
        return path.empty() ? std::string(key) : fmt::format("{}.{}", path, key);
    }
};

Fields lf_open(const json& node, std::string path) {
    if (!node.is_object()) lf_fail(fmt::format("{} must be an object", path.empty() ? "the file" : path));
    return {node, std::move(path), {}};
}

const json* lf_find(Fields& fields, std::string_view key) {
    fields.known.push_back(key);
    const auto found = fields.object.find(key);
    return found == fields.object.end() ? nullptr : &*found;
}

bool lf_number(Fields& fields, std::string_view key, f64& target, f64 least, f64 most) {
    const json* node = lf_find(fields, key);
    if (!node) return false;
    const f64 value = node->is_number() ? node->get<f64>() : std::numeric_limits<f64>::quiet_NaN();
    if (!(value >= least && value <= most)) {
        lf_fail(fmt::format("{} must be a number from {} to {}", fields.nameOf(key), least, most));
    }
    target = value;
    return true;
}

template <class Whole>
bool lf_whole(Fields& fields, std::string_view key, Whole& target, f64 least, f64 most) {
    f64 value = 0;
    if (!lf_number(fields, key, value, least, most)) return false;
    if (value != std::floor(value)) lf_fail(fmt::format("{} must be a whole number", fields.nameOf(key)));
    target = static_cast<Whole>(value);
    return true;
}

void lf_bool(Fields& fields, std::string_view key, bool& target) {
    const json* node = lf_find(fields, key);
    if (!node) return;
    if (!node->is_boolean()) lf_fail(fmt::format("{} must be true or false", fields.nameOf(key)));
    target = node->get<bool>();
}

bool lf_text(Fields& fields, std::string_view key, std::string& target) {
    const json* node = lf_find(fields, key);
    if (!node) return false;
    if (!node->is_string()) lf_fail(fmt::format("{} must be a text", fields.nameOf(key)));
    target = node->get<std::string>();
    return true;
}

/// Reads a list, each element by `read(node, path)`.
template <class Element, class Read>
bool lf_list(Fields& fields, std::string_view key, std::vector<Element>& target, Read read) {
    const json* node = lf_find(fields, key);
    if (!node) return false;
    const std::string name = fields.nameOf(key);
    if (!node->is_array()) lf_fail(fmt::format("{} must be a list", name));
    target.clear();
    target.reserve(node->size());
    for (const json& element : *node) target.push_back(read(element, fmt::format("{}[{}]", name, target.size())));
    return true;
}

std::string lf_readText(const json& node, const std::string& path) {
    if (!node.is_string()) lf_fail(fmt::format("{} must be a text", path));
    return node.get<std::string>();
}

void lf_require(const Fields& fields, std::string_view key, bool there) {
    if (!there) lf_fail(fmt::format("{} is missing", fields.nameOf(key)));
}

void lf_close(const Fields& fields) {
    for (const auto& item : fields.object.items()) {
        if (std::find(fields.known.begin(), fields.known.end(), item.key()) == fields.known.end()) {
            lf_fail(fmt::format("{} is not known here", fields.nameOf(item.key())));
        }
    }
}

/// A coordinate that must be there.
void lf_position(Fields& fields, f64& lat, f64& lon) {
    lf_require(fields, "lat", lf_number(fields, "lat", lat, -90, 90));
    lf_require(fields, "lon", lf_number(fields, "lon", lon, -180, 180));
}

UserPoint lf_readPoint(const json& node, const std::string& path) {
    Fields fields = lf_open(node, path);
    UserPoint point;
    lf_number(fields, "at", point.at, 0, kMaxSeconds);
    lf_position(fields, point.lat, point.lon);
    lf_number(fields, "alt", point.alt, kMinElevationFt, kMaxAltitudeFt);
    lf_number(fields, "heading", point.heading, 0, 360);
    lf_number(fields, "groundSpeed", point.groundSpeed, 0, kMaxSpeedKt);
    lf_bool(fields, "onGround", point.onGround);
    lf_close(fields);
    return point;
}

GroundDisc lf_readDisc(const json& node, const std::string& path) {
    Fields fields = lf_open(node, path);
    GroundDisc disc;
    lf_position(fields, disc.lat, disc.lon);
    lf_require(fields, "radiusNm", lf_number(fields, "radiusNm", disc.radiusNm, 0, kMaxRadiusNm));
    lf_require(fields, "elevation", lf_number(fields, "elevation", disc.elevation, kMinElevationFt, kMaxElevationFt));
    lf_close(fields);
    return disc;
}

TitleFacts lf_readTitle(const json& node, const std::string& path) {
    Fields fields = lf_open(node, path);
    TitleFacts facts;
    lf_require(fields, "title", lf_text(fields, "title", facts.title));
    lf_number(fields, "staticCgFt", facts.staticCgFt, 0, 100);
    lf_number(fields, "staticPitchDeg", facts.staticPitchDeg, -45, 45);
    lf_bool(fields, "helicopter", facts.helicopter);
    lf_close(fields);
    return facts;
}

FaultKind lf_readKind(Fields& fields) {
    std::string name;
    lf_require(fields, "kind", lf_text(fields, "kind", name));
    for (const FaultName& row : kFaultNames) {
        if (row.name == name) return row.kind;
    }
    lf_fail(fmt::format("{}: there is no fault \"{}\"", fields.nameOf("kind"), name));
}

void lf_readCall(Fields& fields, ScenarioFault& fault) {
    lf_require(fields, "call", lf_text(fields, "call", fault.call));
    if (!gf_simPortHas(fault.call)) {
        lf_fail(fmt::format("{}: there is no call \"{}\"", fields.nameOf("call"), fault.call));
    }
    lf_whole(fields, "count", fault.count, 1, 1e6);
}

ScenarioFault lf_readFault(const json& node, const std::string& path) {
    Fields fields = lf_open(node, path);
    ScenarioFault fault;
    lf_require(fields, "at", lf_number(fields, "at", fault.at, 0, kMaxSeconds));
    fault.kind = lf_readKind(fields);
    switch (fault.kind) {
        case FaultKind::quit:
        case FaultKind::pause:
            lf_number(fields, "seconds", fault.seconds, 0, kMaxSeconds);
            break;
        case FaultKind::flightLoaded:
        case FaultKind::resume:
            break;
        case FaultKind::newFile:
            lf_text(fields, "text", fault.text);
            break;
        case FaultKind::teleport:
            lf_position(fields, fault.lat, fault.lon);
            break;
        case FaultKind::failCall:
            lf_readCall(fields, fault);
            break;
        case FaultKind::slowFrames:
            lf_require(fields, "rate", lf_number(fields, "rate", fault.rate, kMinFrameRate, kMaxFrameRate));
            lf_number(fields, "seconds", fault.seconds, 0, kMaxSeconds);
            break;
        case FaultKind::exception:
            lf_require(fields, "number", lf_whole(fields, "number", fault.number, 0, kMaxU32));
            break;
        case FaultKind::addObject:
            lf_position(fields, fault.lat, fault.lon);
            [[fallthrough]];
        case FaultKind::removeObject:
        case FaultKind::addTitle:
        case FaultKind::refuseTitle:
            lf_require(fields, "text", lf_text(fields, "text", fault.text));
            break;
    }
    lf_close(fields);
    return fault;
}

void lf_readUser(Fields& fields, Scenario& scenario) {
    if (!lf_list(fields, "user", scenario.user, lf_readPoint)) {
        scenario.user = {kParkedUser};
        scenario.elevation = kParkedElevation;
    }
    if (scenario.user.empty()) lf_fail("user must hold at least one point");
    for (std::size_t i = 1; i < scenario.user.size(); ++i) {
        if (scenario.user[i].at <= scenario.user[i - 1].at) {
            lf_fail(fmt::format("user[{}].at must be above that of the point before", i));
        }
    }
}

Scenario lf_readScenario(const json& root) {
    Fields fields = lf_open(root, {});
    Scenario s;
    lf_text(fields, "applicationName", s.applicationName);
    lf_whole(fields, "versionMajor", s.versionMajor, 0, kMaxU32);
    lf_whole(fields, "versionMinor", s.versionMinor, 0, kMaxU32);
    lf_whole(fields, "buildMajor", s.buildMajor, 0, kMaxU32);
    lf_whole(fields, "buildMinor", s.buildMinor, 0, kMaxU32);
    lf_number(fields, "openAfter", s.openAfter, 0, kMaxSeconds);
    lf_number(fields, "flightAfter", s.flightAfter, 0, kMaxSeconds);
    lf_number(fields, "frameRate", s.frameRate, kMinFrameRate, kMaxFrameRate);
    lf_number(fields, "utcAtOpen", s.utcAtOpen, 0, kMaxUnixSeconds);
    lf_readUser(fields, s);
    lf_number(fields, "elevation", s.elevation, kMinElevationFt, kMaxElevationFt);
    lf_list(fields, "ground", s.ground, lf_readDisc);
    lf_text(fields, "userTitle", s.userTitle);
    lf_text(fields, "userModel", s.userModel);
    lf_bool(fields, "allTitlesInstalled", s.allTitlesInstalled);
    lf_list(fields, "titles", s.titles, lf_readTitle);
    lf_list(fields, "installed", s.installed, lf_readText);
    lf_list(fields, "refused", s.refused, lf_readText);
    lf_number(fields, "announceAfter", s.announceAfter, 0, kMaxSeconds);
    lf_whole(fields, "maxObjects", s.maxObjects, 0, kMaxObjectsBound);
    lf_list(fields, "faults", s.faults, lf_readFault);
    lf_close(fields);
    return s;
}

}  // namespace

Scenario gf_defaultScenario() {
    Scenario scenario;
    scenario.user = {kParkedUser};
    scenario.elevation = kParkedElevation;
    return scenario;
}

Scenario gf_parseScenario(const std::string& text, const std::string& name) {
    try {
        return lf_readScenario(json::parse(text));
    } catch (const json::exception& e) {
        lf_fail(fmt::format("{}: {}", name, e.what()));
    } catch (const std::runtime_error& e) {
        lf_fail(fmt::format("{}: {}", name, e.what()));
    }
}

Scenario gf_readScenario(const std::filesystem::path& path) {
    const std::string name = gf_pathToUtf8(path);
    std::ifstream file(path, std::ios::binary);
    if (!file) lf_fail(fmt::format("{}: can't be read", name));
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    if (file.bad()) lf_fail(fmt::format("{}: can't be read", name));
    return gf_parseScenario(text, name);
}

}  // namespace hcr
