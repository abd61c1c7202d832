#include "liveries/cfg_keys.h"

#include <algorithm>

namespace hcr {
namespace {

constexpr std::string_view kBlanks = " \t\n\v\f\r";
constexpr std::string_view kNoNumber = "10000";

struct KeyName {
    std::string_view name;
    CfgKey key;
};

constexpr KeyName kKeyNames[] = {
    {"title", CfgKey::title},
    {"texture", CfgKey::texture},
    {"base_container", CfgKey::baseContainer},
    {"icao_type_designator", CfgKey::typeDesignator},
    {"atc_id", CfgKey::atcId},
    {"icao_airline", CfgKey::airline},
    {"atc_parking_types", CfgKey::parkingTypes},
};

char lf_lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool lf_isBlank(char c) {
    return kBlanks.find(c) != std::string_view::npos;
}

std::string_view lf_trimLeft(std::string_view text) {
    while (!text.empty() && lf_isBlank(text.front())) text.remove_prefix(1);
    return text;
}

/// `name` in lower case.
bool lf_startsWith(std::string_view text, std::string_view name) {
    return text.size() >= name.size() &&
           std::equal(name.begin(), name.end(), text.begin(), [](char a, char b) { return a == lf_lower(b); });
}

/// Nearly all lines are of other keys and end here, most of them at their first letter.
const KeyName* lf_findName(std::string_view text) {
    if (text.empty()) return nullptr;
    const char first = lf_lower(text.front());
    for (const KeyName& candidate : kKeyNames) {
        if (candidate.name.front() == first && lf_startsWith(text, candidate.name)) return &candidate;
    }
    return nullptr;
}

/// Empty when a quote has no partner.
std::string_view lf_withoutQuotes(std::string_view value) {
    const std::size_t first = value.find('"');
    if (first == std::string_view::npos) return value;
    const std::size_t second = value.find('"', first + 1);
    return second == std::string_view::npos ? std::string_view() : value.substr(first + 1, second - first - 1);
}

}  // namespace

std::string_view gf_trimCfg(std::string_view text) {
    text = lf_trimLeft(text);
    while (!text.empty() && lf_isBlank(text.back())) text.remove_suffix(1);
    return text;
}

bool gf_holdsCfgBlank(std::string_view text) {
    return text.find_first_of(kBlanks) != std::string_view::npos;
}

CfgLine gf_cfgLine(std::string_view line) {
    line = lf_trimLeft(line);
    const KeyName* name = lf_findName(line);
    if (name == nullptr) return {};
    line = lf_trimLeft(line.substr(name->name.size()));
    if (!line.starts_with('=')) return {};
    const std::string_view whole = gf_trimCfg(line.substr(1));
    // A lone carriage return inside ends the line for some editors and not for others: such a line means nothing.
    if (whole.empty() || whole.find('\r') != std::string_view::npos) return {};
    const std::string_view value = lf_withoutQuotes(whole);
    if (value.empty() && name->key != CfgKey::airline) return {};
    return {name->key, value};
}

bool gf_isCfgComment(std::string_view line) {
    return lf_trimLeft(line).starts_with("//");
}

CfgMentions gf_cfgMentions(std::string_view line) {
    constexpr std::string_view kIcao = "icao", kAtc = "atc", kAirline = "_airline", kParking = "_parking_types",
                               kId = "_id=";
    CfgMentions mentions;
    if (gf_isCfgComment(line)) return mentions;
    for (std::size_t at = line.find('_'); at != std::string_view::npos; at = line.find('_', at + 1)) {
        const std::string_view before = line.substr(0, at), behind = line.substr(at);
        if (before.ends_with(kIcao)) {
            mentions.airline = mentions.airline || behind.starts_with(kAirline);
        } else if (before.ends_with(kAtc)) {
            mentions.parkingTypes = mentions.parkingTypes || behind.starts_with(kParking);
            mentions.atcId = mentions.atcId || behind.starts_with(kId);
        }
    }
    return mentions;
}

FltSimHeader gf_fltSimHeader(std::string_view line) {
    constexpr std::string_view kStart = "[fltsim.", kStartCapitals = "[FLTSIM.";
    if (gf_isCfgComment(line)) return {};
    const std::string_view whole = gf_trimCfg(line);
    if (lf_startsWith(whole, kStart) && whole.ends_with(']')) {
        const std::string_view number = whole.substr(kStart.size(), whole.size() - kStart.size() - 1);
        const bool isNumber =
            !number.empty() && std::all_of(number.begin(), number.end(), [](char c) { return c >= '0' && c <= '9'; });
        if (isNumber) return {true, number};
    }
    const bool isHeader =
        line.find(kStart) != std::string_view::npos || line.find(kStartCapitals) != std::string_view::npos;
    return {isHeader, isHeader ? kNoNumber : std::string_view()};
}

}  // namespace hcr
