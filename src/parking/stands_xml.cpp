#include "parking/stands_xml.h"

#include <fmt/format.h>

#include <charconv>
#include <cmath>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>

#include "core/model/geo.h"
#include "liveries/dbase.h"
#include "shell/log.h"
#include "shell/messages.h"
#include "shell/text.h"

namespace hcr {
namespace {

constexpr i32 kStandWithoutId = 93, kStandTwice = 94;
constexpr f64 kMaxLatitude = 90, kMaxLongitude = 180;

/// The number that an attribute holds, 0 for a missing one; nothing when it is none.
std::optional<f64> lf_number(const pugi::xml_node& element, const char* name) {
    const std::string_view text = gf_trim(element.attribute(name).value());
    if (text.empty()) return 0.0;
    f64 number = 0;
    const auto [stop, fault] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (fault != std::errc{} || stop != text.data() + text.size() || !std::isfinite(number)) return {};
    return number;
}

bool lf_refuse(const ParkPos& stand, const char* reason, const char* value) {
    gf_log(fmt::format("Parking position '{}' left out: {} '{}'", gf_quoted(stand.id), reason, gf_quoted(value)));
    return false;
}

bool lf_readPlace(const pugi::xml_node& element, ParkPos& stand) {
    const std::optional<f64> lat = lf_number(element, "latitude"), lon = lf_number(element, "longitude");
    if (!lat || std::fabs(*lat) > kMaxLatitude) {
        return lf_refuse(stand, "no latitude", element.attribute("latitude").value());
    }
    if (!lon || std::fabs(*lon) > kMaxLongitude) {
        return lf_refuse(stand, "no longitude", element.attribute("longitude").value());
    }
    stand.lat = *lat;
    stand.lon = *lon;
    return *lat != 0 || *lon != 0;
}

void lf_splitCallsigns(std::string_view text, StandOption& option) {
    const std::size_t colon = text.find(':');
    option.cs1 = text.substr(0, colon);
    if (colon != std::string_view::npos) option.cs2 = text.substr(colon + 1);
}

/// What the reference data tell of a registration stands above what the file tells.
void lf_readAirframe(const pugi::xml_node& element, StandOption& option) {
    const DbaseRecord* record = option.reg.empty() ? nullptr : gf_dbaseRecord(option.reg);
    if (record == nullptr) {
        option.airline = element.attribute("airl").value();
        option.type = element.attribute("type").value();
        return;
    }
    option.airline = record->opr.empty() ? record->airl : record->opr;
    option.type = record->type;
}

void lf_readOptions(const pugi::xml_node& element, u32 origin, ParkPos& stand) {
    for (const pugi::xml_node node : element.children("opt")) {
        StandOption option;
        if (!gf_readOption(node, option)) continue;
        option.origin = origin;
        option.index = static_cast<u32>(stand.options.size() + 1);
        stand.options.push_back(std::move(option));
    }
    stand.options.shrink_to_fit();
}

std::string lf_idOf(const pugi::xml_node& element, std::size_t count) {
    const pugi::xml_attribute attribute = element.attribute("id");
    if (!attribute) {
        throw UserErrorException(kStandWithoutId,
                                 fmt::format("Parking position #{} has no '{}' attribute.", count, "id"));
    }
    std::string id(gf_trim(attribute.value()));
    if (id.empty()) {
        throw UserErrorException(kStandWithoutId,
                                 fmt::format("Parking position #{} has empty '{}' attribute.", count, "id"));
    }
    return id;
}

std::string lf_bitsText(const HalfHours& hours) {
    return hours.to_string();
}

}  // namespace

std::optional<f64> gf_readRadius(const pugi::xml_node& element) {
    const std::optional<f64> metres = lf_number(element, "radius");
    if (!metres || *metres < 0 || *metres > kLargestRadiusM) return {};
    return *metres / kMetresPerNm;
}

bool gf_readOption(const pugi::xml_node& element, StandOption& option) {
    const char* hours = element.attribute("hh").value();
    const i32 day = element.attribute("day").as_int();
    if (*hours == '\0' || day < 1 || day > 7) return false;
    option.hours = gf_hours2bitset(hours);
    option.day = static_cast<u32>(day);
    option.hard = element.attribute("soft").as_bool() ? 0 : 1;
    option.coupled = element.attribute("cpl").as_bool();
    option.reg = element.attribute("reg").value();
    lf_splitCallsigns(element.attribute("cs").value(), option);
    lf_readAirframe(element, option);
    return true;
}

bool gf_readStand(const pugi::xml_node& element, u32 origin, ParkPos& stand) {
    if (!lf_readPlace(element, stand)) return false;
    const std::optional<f64> radius = gf_readRadius(element), heading = lf_number(element, "heading");
    if (!radius) return lf_refuse(stand, "no radius", element.attribute("radius").value());
    if (!heading || std::fabs(*heading) > 360) {
        return lf_refuse(stand, "no heading", element.attribute("heading").value());
    }
    stand.radius = *radius;
    stand.heading = *heading * kDegToRad;
    stand.cargo = element.attribute("cargo").as_bool();
    stand.ramp = element.attribute("ramp").as_bool();
    stand.heli = element.attribute("heli").as_bool();
    lf_readOptions(element, origin, stand);
    return true;
}

void gf_readStands(const pugi::xml_node& root, u32 origin, std::vector<ParkPos>& stands) {
    const auto elements = root.child("parkpositions").children("parkpos");
    const auto found = static_cast<std::size_t>(std::distance(elements.begin(), elements.end()));
    stands.reserve(stands.size() + std::min(found, kMostStands));
    std::unordered_set<std::string> seen;
    std::size_t count = 0, options = 0;
    for (const pugi::xml_node element : elements) {
        if (stands.size() >= kMostStands || options >= kMostOptions) {
            gf_log(fmt::format("Too many stands or options, {} of {} stands read", count, found));
            return;
        }
        ParkPos stand;
        stand.id = lf_idOf(element, ++count);
        if (!seen.insert(stand.id).second) {
            throw UserErrorException(kStandTwice,
                                     fmt::format("Parking position '{}' appears more than once.", stand.id));
        }
        if (!gf_readStand(element, origin, stand)) continue;
        options += stand.options.size();
        stands.push_back(std::move(stand));
    }
}

void gf_writeStandAttributes(pugi::xml_node& element, const ParkPos& stand) {
    const auto add = [&element](const char* name) { return element.append_attribute(name); };
    add("latitude").set_value(fmt::format("{:.6f}", stand.lat).c_str());
    add("longitude").set_value(fmt::format("{:.6f}", stand.lon).c_str());
    add("heading").set_value(fmt::format("{:.1f}", stand.heading * kRadToDeg).c_str());
    add("radius").set_value(fmt::format("{:.1f}", stand.radius * kMetresPerNm).c_str());
    if (stand.heli) {
        add("heli").set_value(true);
    } else {
        add("cargo").set_value(stand.cargo);
        add("ramp").set_value(stand.ramp);
    }
    if (stand.manual) add("manual").set_value(true);
}

void gf_writeOptions(pugi::xml_node& element, const ParkPos& stand) {
    for (const StandOption& option : stand.options) {
        if (option.index == 0) continue;
        const std::optional<std::string> hours = gf_bitset2hours(option.hours);
        if (!hours) {
            gf_logError(fmt::format("bit set problem: {} {} {}", option.reg, option.cs1, lf_bitsText(option.hours)));
            continue;
        }
        pugi::xml_node node = element.append_child("opt");
        const auto add = [&node](const char* name, const std::string& value) {
            node.append_attribute(name).set_value(value.c_str());
        };
        add("reg", option.reg);
        if (option.reg.empty() || gf_dbaseRecord(option.reg) == nullptr) {
            add("airl", option.airline);
            add("type", option.type);
        }
        if (option.hard == 0) node.append_attribute("soft").set_value(true);
        node.append_attribute("day").set_value(option.day);
        add("hh", *hours);
        if (!option.cs1.empty()) add("cs", option.cs2.empty() ? option.cs1 : option.cs1 + ":" + option.cs2);
        if (option.coupled) node.append_attribute("cpl").set_value(true);
    }
}

}  // namespace hcr
