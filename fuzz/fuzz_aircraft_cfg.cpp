#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <regex>
#include <stdexcept>
#include <string>
#include <vector>

#include "liveries/aircraft_cfg.h"
#include "liveries/aircraft_cfg_file.h"
#include "liveries/aircraft_cfg_type.h"
#include "liveries/cfg_keys.h"
#include "liveries/dbase.h"
#include "liveries/dbase_reader.h"
#include "liveries/regcodes.h"
#include "liveries/reports.h"
#include "shell/text_files.h"

// Any bytes as an aircraft.cfg. The first one chooses the reader and the charset into which the others are put; what
// comes out must be a livery that the rest of the program can use. Short lines are compared with the expressions that
// define the keys.

namespace {

using namespace hcr;
namespace fs = std::filesystem;

constexpr std::size_t kLongestTitle = 255, kLongestRegistration = 12;
constexpr std::size_t kMostReports = 10'001, kLongestReport = 1200;
constexpr std::size_t kLongestForExpressions = 200;  // their matching recurses

constexpr const char* kDbase = R"(<root><aircrafts><aircraft types="B738,A320,B744,C172"/></aircrafts>
<high_performance><hpf types="F16"/></high_performance><heavy><hvy types="B744"/></heavy>
<large><lar types="B738,A320"/></large><buzjet><bzj types="C25A"/></buzjet><rotorcraft><rot types="EC35"/></rotorcraft>
<cargo_types><cargo_type types="B744"/></cargo_types><ICAO_airlines><ICAO codes="KLM,DLH,PVT,ZZZ"/></ICAO_airlines>
<cargo_operators><ICAO codes="GEC"/></cargo_operators><simaddons20><simaddon20 arpts="EHAM"/></simaddons20>
<fixes><fx wro="738" cor="B738"/></fixes><dbase><db reg="PH-BXA" airl="KLM" type="B738"/>
<db reg="N12" airl="PVT" type="C172"/></dbase></root>)";

struct KeyName {
    const char* name;
    CfgKey key;
};
constexpr KeyName kKeyNames[] = {{"title", CfgKey::title},
                                 {"texture", CfgKey::texture},
                                 {"base_container", CfgKey::baseContainer},
                                 {"icao_type_designator", CfgKey::typeDesignator},
                                 {"atc_id", CfgKey::atcId},
                                 {"icao_airline", CfgKey::airline},
                                 {"atc_parking_types", CfgKey::parkingTypes}};

/// The expressions of all keys in one, a group for each name and the last one for the value.
const std::regex& lf_keyExpression() {
    static const std::regex expression = [] {
        std::string names;
        for (const KeyName& key : kKeyNames) names += std::string(names.empty() ? "(" : "|(") + key.name + ")";
        return std::regex("\\s*(?:" + names + ")\\s*=\\s*(.*\\S)\\s*", std::regex::ECMAScript | std::regex::icase);
    }();
    return expression;
}

void lf_require(bool condition) {
    if (!condition) std::abort();
}

void lf_compareKeys(const std::string& line) {
    CfgKey expected = CfgKey::none;
    std::string value;
    std::smatch match;
    // Matching takes a hundred times as long as what it is compared with.
    if (line.find('=') != std::string::npos && std::regex_match(line, match, lf_keyExpression())) {
        for (std::size_t i = 0; i < std::size(kKeyNames); ++i) {
            if (match[i + 1].matched) expected = kKeyNames[i].key;
        }
        value = match[std::size(kKeyNames) + 1];
    }
    if (const std::size_t first = value.find('"'); first != std::string::npos) {
        const std::size_t second = value.find('"', first + 1);
        value = second == std::string::npos ? "" : value.substr(first + 1, second - first - 1);
    }
    if (value.empty() && expected != CfgKey::airline) expected = CfgKey::none;
    const CfgLine found = gf_cfgLine(line);
    lf_require(found.key == expected);
    if (expected != CfgKey::none) lf_require(found.value == value);
}

void lf_compareHeader(const std::string& line) {
    if (line.find('[') == std::string::npos) return;
    static const std::regex header("\\s*(\\[fltsim\\.)(\\d+)\\]\\s*", std::regex::ECMAScript | std::regex::icase);
    std::smatch match;
    const FltSimHeader found = gf_fltSimHeader(line);
    if (std::regex_match(line, match, header)) lf_require(found.isHeader && found.number == match[2].str());
}

bool lf_matters(const std::string& line) {
    switch (gf_cfgLine(line).key) {
        case CfgKey::none:
        case CfgKey::baseContainer:
        case CfgKey::typeDesignator:
            break;
        default:
            return true;
    }
    return line.find("icao_airline") != std::string::npos || line.find("atc_parking_types") != std::string::npos ||
           line.find("atc_id=") != std::string::npos;
}

/// The quick walk may leave out nothing that counts.
void lf_compareWalks(const std::string& text) {
    CfgKeyLines quick{text};
    std::string_view candidate, line;
    bool more = quick.next(candidate);
    for (TextLines lines{text}; lines.next(line);) {
        const bool isCandidate = more && candidate.data() == line.data();
        if (isCandidate) lf_require(candidate == line);
        if (isCandidate) more = quick.next(candidate);
        const std::string copy(line);
        if (!isCandidate) lf_require(!lf_matters(copy));
        if (copy.size() > kLongestForExpressions) continue;
        lf_compareKeys(copy);
        lf_compareHeader(copy);
    }
    lf_require(!more);
}

std::string lf_encoded(const std::uint8_t* data, std::size_t size, unsigned charset) {
    if (charset == 0) return {reinterpret_cast<const char*>(data), size};
    std::string bytes = charset == 1 ? "\xEF\xBB\xBF" : charset == 2 ? "\xFF\xFE" : "\xFE\xFF";
    for (std::size_t i = 0; i < size; ++i) {
        if (charset == 3) bytes += '\0';
        bytes += static_cast<char>(data[i]);
        if (charset == 2) bytes += '\0';
    }
    return bytes;
}

void lf_checkReports() {
    for (const ReportList* list : {&gInvalidAirlines, &gInvalidTypes, &gCodeFixes, &gInvalidFiles, &gIncompleteSections,
                                   &gFilesWithoutSections}) {
        lf_require(list->size() <= 2 * kMostReports);  // doubled titles are counted apart
        for (const std::string& line : *list) lf_require(line.size() <= kLongestReport);
    }
}

/// Reads the reference data once. No file of either package exists, but for one folder of textures.
struct Packages {
    fs::path path = fs::temp_directory_path() / ("fuzz_aircraft_cfg_" + std::to_string(getpid()));

    Packages() {
        fs::create_directories(path / "IVAO_MTL/SimObjects/Airplanes/IVAO_B738WLfa/texture.A");
        lf_require(gf_readDbaseText(kDbase).empty());
    }
    Packages(const Packages&) = delete;
    Packages& operator=(const Packages&) = delete;
    ~Packages() {
        std::error_code error;
        fs::remove_all(path, error);
    }
};

/// What the readers do with a file, without the file.
CfgContent lf_contentOf(const fs::path& path, const std::string& text, bool isIvao) {
    CfgFile file = lf_cfgFile(1, path);
    file.text = text;
    if (isIvao) {
        file.type = lf_typeFromIvaoPath(file);
        lf_readIvaoSections(file);
    } else {
        lf_readSections(file);
    }
    return std::move(file.content);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    static const Packages packages;
    const bool isIvao = (data[0] & 1U) != 0;
    std::string text;
    try {
        text = gf_textOf(lf_encoded(data + 1, size - 1, data[0] >> 1U & 3U));
    } catch (const std::runtime_error&) {
        return 0;  // no UTF-16, though its mark says so
    }
    const fs::path path =
        packages.path / (isIvao ? "IVAO_MTL/SimObjects/Airplanes/IVAO_B738WLfa/aircraft.cfg" : "pack/aircraft.cfg");

    gf_clearScanLists();
    dontUseTitles = {"unwanted"};
    std::vector<LiveryData> liveries;
    gf_takeOver(lf_contentOf(path, text, isIvao), liveries);
    for (const LiveryData& livery : liveries) {
        lf_require(!livery.title.empty() && livery.title.size() <= kLongestTitle && livery.title != "unwanted");
        lf_require(gf_isValidType(livery.type) && gf_isAirline(livery.airl));
        lf_require(livery.atcid.size() <= kLongestRegistration);
    }
    lf_require(seenTitles.size() == liveries.size());
    lf_checkReports();
    lf_compareWalks(text);
    return 0;
}
