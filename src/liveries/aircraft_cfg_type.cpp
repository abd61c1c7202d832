#include "liveries/aircraft_cfg_type.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

#include "liveries/dbase.h"
#include "shell/text.h"
#include "shell/text_files.h"

namespace hcr {
namespace {

struct StockContainer {
    std::string_view name;  ///< upper case
    std::string_view type;
};

/// Aircraft of the simulator itself, on which a livery may be built without naming a type.
constexpr StockContainer kStockContainers[] = {
    {"ASOBO_FLIGHTDESIGNCT", "FDCT"},
    {"ASOBO_LONGITUDE", "C700"},
    {"ASOBO_VL3", "VL3"},
    {"ASOBO_SAVAGE_CUB", "SAVG"},
    {"ASOBO_SAVAGE_SHOCKULTRA", "SAVG"},
    {"ASOBO_XCUB", "CC19"},
    {"ASOBO_PITTS", "PTS2"},
    {"ASOBO_SR22", "SR22"},
    {"ASOBO_ICON", "A5"},
    {"ASOBO_TBM930", "TBM9"},
    {"ASOBO_KINGAIR350", "B350"},
    {"ASOBO_E330", "E300"},
    {"ASOBO_DV20", "DV20"},
    {"ASOBO_DR400", "DR40"},
    {"ASOBO_DA62", "DA62"},
    {"ASOBO_DA40_TDI", "DA40"},
    {"ASOBO_DA40_NG", "DA40"},
    {"ASOBO_CAP10C", "CP10"},
    {"ASOBO_CJ4", "C25C"},
    {"ASOBO_C152", "C152"},
    {"ASOBO_C152_AEROBAT", "C152"},
    {"ASOBO_C172SP_AS1000", "C172"},
    {"ASOBO_C172SP_CLASSIC", "C172"},
    {"ASOBO_BONANZA_G36", "BE36"},
    {"ASOBO_BARON_G58", "B58T"},
    {"ASOBO_B747_8I", "B748"},
    {"ASOBO_B787_10", "B78X"},
    {"ASOBO_208B_GRAND_CARAVAN_EX", "C208"},
    {"ASOBO_A320_NEO", "A20N"},
    {"FLYBYWIRE_A320_NEO", "A20N"},
};

/// Aircraft for the user himself, whose files name no type; no AI package.
constexpr std::array<std::string_view, 2> kUserAircraft = {"pmdg-aircraft-7", "fnx-aircraft-3"};

/// Folders in which an IVAO package holds its aircraft, from the package on.
constexpr std::array<std::string_view, 2> kIvaoPackages = {"IVAO_MTL", "IVAO_X-CSL"};
constexpr std::size_t kLongestType = 4;

/// The type of "..\NAME"; empty for an unknown name.
std::string_view lf_typeOfContainer(std::string_view value) {
    constexpr std::size_t kWayUp = 3;
    if (value.size() <= kWayUp) return {};
    const std::string name = gf_upper(value.substr(kWayUp));
    const auto found = std::find_if(std::begin(kStockContainers), std::end(kStockContainers),
                                    [&](const StockContainer& stock) { return stock.name == name; });
    return found == std::end(kStockContainers) ? std::string_view() : found->type;
}

/// The first type that the lines of a key give; empty if none does.
template <typename TypeOf>
std::string lf_firstType(std::string_view text, CfgKey key, TypeOf typeOf) {
    TextLines lines{text};
    for (std::string_view line; lines.next(line);) {
        const CfgLine keyLine = gf_cfgLine(line);
        if (keyLine.key != key) continue;
        if (std::string type{typeOf(keyLine.value)}; !type.empty()) return type;
    }
    return {};
}

/// The code itself or what it is corrected to; empty, and reported, if neither is a type.
std::string lf_checkedType(CfgFile& file, const std::string& code) {
    if (gf_isValidType(code)) return code;
    if (const auto fix = typeFixes.find(code); fix != typeFixes.end()) {
        lf_report(
            file, gCodeFixes,
            fmt::format("Model fix: {} found in {} changed into {}", lf_shown(code), file.shownPath, fix->second));
        return fix->second;
    }
    lf_report(file, gInvalidTypes, fmt::format("{:16} in {}", lf_shown(code), file.shownPath));
    return {};
}

/// Takes the last component off a path; empty at the path's start.
std::string_view lf_takeLast(std::string_view& path) {
    const std::size_t separator = path.find_last_of("/\\");
    if (separator == std::string_view::npos) return {};
    const std::string_view last = path.substr(separator + 1);
    path = path.substr(0, separator);
    return last;
}

bool lf_equals(std::string_view text, std::string_view upper) {
    return gf_upper(text) == upper;
}

bool lf_isWord(std::string_view text) {
    return !text.empty() && std::all_of(text.begin(), text.end(), [](char c) {
        return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '_';
    });
}

/// "B738WLfa" of ".../IVAO_MTL/SimObjects/Airplanes/IVAO_B738WLfa/aircraft.cfg"; empty for another path.
std::string_view lf_ivaoModel(std::string_view path) {
    constexpr std::string_view kPrefix = "IVAO_";
    if (!lf_equals(lf_takeLast(path), "AIRCRAFT.CFG")) return {};
    const std::string_view folder = lf_takeLast(path);
    if (folder.size() <= kPrefix.size() || !lf_equals(folder.substr(0, kPrefix.size()), kPrefix)) return {};
    const std::string_view model = folder.substr(kPrefix.size());
    if (!lf_isWord(model) || !lf_equals(lf_takeLast(path), "AIRPLANES")) return {};
    if (!lf_equals(lf_takeLast(path), "SIMOBJECTS")) return {};
    const std::string package = gf_upper(lf_takeLast(path));
    const bool isIvao = std::find(kIvaoPackages.begin(), kIvaoPackages.end(), package) != kIvaoPackages.end();
    return isIvao && !path.empty() ? model : std::string_view();
}

}  // namespace

std::string lf_typeFromFile(CfgFile& file) {
    std::string code =
        lf_firstType(file.text, CfgKey::typeDesignator, [](std::string_view value) { return gf_upper(value); });
    if (code.empty()) code = lf_firstType(file.text, CfgKey::baseContainer, lf_typeOfContainer);
    if (!code.empty()) return lf_checkedType(file, code);
    const bool isUserAircraft = std::any_of(kUserAircraft.begin(), kUserAircraft.end(), [&](std::string_view name) {
        return file.shownPath.find(name) != std::string::npos;
    });
    if (!isUserAircraft) {
        lf_report(file, gInvalidFiles,
                  fmt::format("Line icao_type_designator= is missing in [General] section of {}", file.shownPath));
    }
    return {};
}

std::string lf_typeFromIvaoPath(CfgFile& file) {
    const std::string_view model = lf_ivaoModel(file.shownPath);
    return model.empty() ? std::string() : lf_checkedType(file, std::string(model.substr(0, kLongestType)));
}

}  // namespace hcr
