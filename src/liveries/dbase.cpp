#include "liveries/dbase.h"

#include <algorithm>

#include "core/model/aircraft_class.h"

namespace hcr {

TextOrderedSet aircraftTypes, cargoTypes, icaoAirlines, cargoOperators, simAddons20;
std::array<TextOrderedSet, 6> gClassTypes;
std::vector<std::vector<std::string>> similarGroups, publisherGroups;
std::map<std::string, f64, std::less<>> halfSpans;
std::array<f64, 6> classHalfSpan{};
f64 maxHalfSpan = 0;
TextMap<std::string> typeFixes;
std::vector<AirportList> thirdParties20, thirdParties24;
RegistrationTable dbaseRecords;

namespace {

/// A registration below this length is looked for inside titles.
constexpr std::size_t kLongestInTitle = 5;
/// Shorter registrations have no dash to be left out.
constexpr std::size_t kShortestWithDash = 5;

bool lf_mayLackDash(std::string_view registration) {
    return registration.size() >= kShortestWithDash && registration.front() != 'N' &&
           registration.find('-') == std::string_view::npos;
}

std::string lf_dashAfter(std::string_view registration, std::size_t count) {
    std::string spelling(registration);
    return spelling.insert(count, 1, '-');
}

}  // namespace

void gf_forgetDbase() {
    for (TextOrderedSet* set : {&aircraftTypes, &cargoTypes, &icaoAirlines, &cargoOperators, &simAddons20}) {
        set->clear();
    }
    for (TextOrderedSet& set : gClassTypes) set.clear();
    similarGroups.clear();
    publisherGroups.clear();
    halfSpans.clear();
    classHalfSpan.fill(0);
    maxHalfSpan = 0;
    typeFixes.clear();
    thirdParties20.clear();
    thirdParties24.clear();
    dbaseRecords.clear();
}

bool gf_isValidType(std::string_view type) {
    return !type.empty() && aircraftTypes.contains(type);
}

bool gf_isAirline(std::string_view code) {
    return !code.empty() && icaoAirlines.contains(code);
}

i32 gf_acClass(std::string_view type) {
    for (const i32 acClass : {Large, Heavy, Buzjets, Rotorcraft, HighPerf}) {
        if (gClassTypes[static_cast<std::size_t>(acClass)].contains(type)) return acClass;
    }
    return Light;
}

f64 gf_halfSpanNm(std::string_view type) {
    const auto span = halfSpans.find(type);
    return span != halfSpans.end() ? span->second : classHalfSpan[static_cast<std::size_t>(gf_acClass(type))];
}

std::vector<std::string> gf_regcodeVariants(std::string_view registration) {
    std::vector<std::string> variants;
    if (lf_mayLackDash(registration)) {
        variants.push_back(lf_dashAfter(registration, 2));
        variants.push_back(lf_dashAfter(registration, 1));
    }
    variants.emplace_back(registration);
    return variants;
}

const DbaseRecord* gf_dbaseRecord(std::string_view registration) {
    if (registration.empty()) return nullptr;
    if (lf_mayLackDash(registration)) {
        // The variants of gf_regcodeVariants one by one: usually the first one is it.
        for (const std::size_t count : {std::size_t{2}, std::size_t{1}}) {
            if (const DbaseRecord* record = dbaseRecords.find(lf_dashAfter(registration, count))) return record;
        }
    }
    return dbaseRecords.find(registration);
}

std::optional<std::string> gf_regcodeInTitle(std::string_view title) {
    // Every short piece of the title is looked up, which is far less work than to search it for each short key.
    u32 first = TextIndex::kNone;
    for (std::size_t from = 0; from < title.size(); ++from) {
        const std::size_t longest = std::min(kLongestInTitle, title.size() - from);
        for (std::size_t length = 1; length <= longest; ++length) {
            first = std::min(first, dbaseRecords.positionOf(title.substr(from, length)));
        }
    }
    if (first == TextIndex::kNone) return std::nullopt;
    return std::string(dbaseRecords.registration(first));
}

}  // namespace hcr
