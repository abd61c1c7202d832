#pragma once

#include <array>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "liveries/livery_data.h"
#include "platform/types.h"

namespace hcr {

// The reference data. Read once per process on the run thread, read-only afterwards (scan threads read too).

/// A real airframe.
struct DbaseRecord {
    std::string airl;    ///< whose colours it wears
    std::string type;    ///< ICAO type
    std::string opr;     ///< operator that flies it in place of airl; wins when not empty
    bool cargo = false;
};

using TextOrderedSet = std::set<std::string, std::less<>>;

struct AirportList {
    std::string publisher;
    std::vector<std::string> airports;
};

extern TextOrderedSet aircraftTypes, cargoTypes, icaoAirlines, cargoOperators, simAddons20;
extern std::array<TextOrderedSet, 6> gClassTypes;   ///< by class; class 0 stays empty
extern std::vector<std::vector<std::string>> similarGroups, publisherGroups;
extern std::map<std::string, f64, std::less<>> halfSpans;  ///< nautical miles
extern std::array<f64, 6> classHalfSpan;
extern f64 maxHalfSpan;
extern TextMap<std::string> typeFixes;
extern std::vector<AirportList> thirdParties20, thirdParties24;
extern TextMap<DbaseRecord> dbaseRecords;
extern TextMap<std::vector<std::string>> similarTypes;
extern TextMap<TextMap<std::vector<std::string>>> similarForAirline;

/// False if the file couldn't be parsed; throws std::runtime_error when it is missing or can't be deciphered, and
/// UserErrorException 61.
bool gf_readDbase();
/// Empties every table; for tests.
void gf_forgetDbase();

bool gf_isValidType(std::string_view type);
bool gf_isAirline(std::string_view code);
i32 gf_acClass(std::string_view type);
/// Half wing span in nautical miles: the type's, else the mean of its class (0 for a class without any).
f64 gf_halfSpanNm(std::string_view type);
std::vector<std::string> gf_regcodeVariants(std::string_view registration);
/// The record of a registration or null; the pointer is good for the process.
const DbaseRecord* gf_dbaseRecord(std::string_view registration);
std::optional<std::string> gf_regcodeInTitle(std::string_view title);
std::vector<std::string> gf_shuffled(const std::vector<std::string>& list);
std::vector<std::string> gf_similarTypes(std::string_view type);
std::vector<std::string> gf_similarForAirline(std::string_view airline, std::string_view type);
void gf_buildSimilarTables();

}  // namespace hcr
