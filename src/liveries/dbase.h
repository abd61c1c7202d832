#pragma once

#include <array>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "liveries/livery_data.h"
#include "liveries/registrations.h"
#include "platform/types.h"

namespace hcr {

// The reference data. Read once per process on the run thread, read-only afterwards (scan threads read too).

using TextOrderedSet = std::set<std::string, std::less<>>;

/// The airports, by ICAO code, that one publisher is known to have made.
struct AirportList {
    std::string publisher;
    std::vector<std::string> airports;
};

/// ICAO designators of types and airlines in capitals; names of publishers in simAddons20.
extern TextOrderedSet aircraftTypes, cargoTypes, icaoAirlines, cargoOperators, simAddons20;
extern std::array<TextOrderedSet, 6> gClassTypes;  ///< by class; class 0 stays empty
/// Types, and publishers' names, that stand for each other: a group per element.
extern std::vector<std::vector<std::string>> similarGroups, publisherGroups;
extern std::map<std::string, f64, std::less<>> halfSpans;  ///< nautical miles
extern std::array<f64, 6> classHalfSpan;  ///< by class, mean of its types, nautical miles; 0 without any
extern f64 maxHalfSpan;                   ///< of all types, nautical miles
extern TextMap<std::string> typeFixes;    ///< wrong type to right one
/// For MSFS 2020 and MSFS 2024.
extern std::vector<AirportList> thirdParties20, thirdParties24;
extern RegistrationTable dbaseRecords;  ///< the real airframes

/// Empties every table; for tests.
void gf_forgetDbase();

/// Whether the reference data know this type or airline. Any thread once they are read.
bool gf_isValidType(std::string_view type);
bool gf_isAirline(std::string_view code);
/// AircraftCategory of a type, Light for one that stands nowhere. Any thread, as above.
i32 gf_acClass(std::string_view type);
/// Half wing span in nautical miles: the type's, else the mean of its class (0 for a class without any).
f64 gf_halfSpanNm(std::string_view type);
/// The spellings under which a registration may be stored, in the order in which they are to be tried.
std::vector<std::string> gf_regcodeVariants(std::string_view registration);
/// The record of a registration or null; the pointer is good for the process.
const DbaseRecord* gf_dbaseRecord(std::string_view registration);
/// The first registration, in the order of the table, that has 1 to 5 characters and occurs in the title.
std::optional<std::string> gf_regcodeInTitle(std::string_view title);
}  // namespace hcr
