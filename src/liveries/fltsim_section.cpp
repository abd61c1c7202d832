#include "liveries/fltsim_section.h"

#include <algorithm>

#include "core/model/aircraft_class.h"
#include "liveries/dbase.h"
#include "shell/log.h"
#include "shell/text.h"

namespace hcr {
namespace {

constexpr const char* kUnbrandedAirline = "ZZZ";
constexpr const char* kPrivateOwner = "PVT";
/// Written for "no airline at all" by some packages.
constexpr std::string_view kLongUnbranded = "ZZZZ";
/// A code that a package gives to liveries of no airline, and on purpose: no fault.
constexpr std::string_view kRefusedAirline = "RFO";
/// Aircraft for the user himself, which are no AI traffic.
constexpr std::string_view kUserTitles[] = {"FenixA320", "PMDG 737"};
constexpr std::string_view kStubEnding = "-STUB";

bool lf_isUserTitle(const std::string& title) {
    return std::any_of(std::begin(kUserTitles), std::end(kUserTitles),
                       [&](std::string_view name) { return title.find(name) != std::string::npos; });
}

/// "DLHX" and "DLHC" are cargo and charter flights of "DLH".
std::string lf_airlineOf(std::string_view value) {
    if (value.empty() || value == kLongUnbranded) return kUnbrandedAirline;
    std::string code = gf_upper(lf_normalized(value));
    if (code.size() == 4 && (code.back() == 'X' || code.back() == 'C')) code.pop_back();
    return code;
}

NextLine lf_takeAirline(CfgSection& section, std::string_view value) {
    section.airline = lf_airlineOf(value);
    if (gf_isAirline(section.airline)) return NextLine::read;
    if (section.airline == kRefusedAirline) return NextLine::giveUp;
    lf_reportAirline(section.file, section.airline, section.header);
    section.airline.clear();
    return NextLine::read;
}

void lf_takeAtcId(CfgSection& section, std::string_view value) {
    value = value.substr(0, value.find(';'));
    if (lf_checkAtcId(value, section.atcid)) return;
    lf_report(section.file, gIncompleteSections,
              fmt::format("invalid atc_id={} in: {}", lf_shown(value), section.title));
    section.atcid.clear();
}

NextLine lf_takeLine(CfgSection& section, std::string_view line) {
    const auto [key, value] = gf_cfgLine(line);
    if (key == CfgKey::title) {
        const NextLine next = lf_takeTitle(section, value);
        return lf_isUserTitle(section.title) ? NextLine::giveUp : next;
    }

    if (section.airline.empty()) {
        if (key == CfgKey::airline) return lf_takeAirline(section, value);
    } else if (lf_mentions(line, "icao_airline")) {
        section.report("{} {} has more than one icao_airline key");
        return NextLine::giveUp;
    }
    if (section.parkingTypes.empty()) {
        if (key == CfgKey::parkingTypes) {
            section.parkingTypes = gf_upper(lf_normalized(value));
            return NextLine::read;
        }
    } else if (lf_mentions(line, "atc_parking_types")) {
        section.report("{} {} has more than one atc_parking_types key");
        return NextLine::giveUp;
    }
    if (section.atcid.empty()) {
        if (key == CfgKey::atcId) lf_takeAtcId(section, value);
    } else if (lf_mentions(line, "atc_id=")) {
        section.report("{}, {}, has more than one atc_id key");
        return NextLine::giveUp;
    }
    return NextLine::read;
}

/// Finds an airline for a section that names none. A large aircraft without one must not fly as somebody's own.
bool lf_guessAirline(CfgSection& section) {
    const bool isHeavy = gf_acClass(section.file.type) == Heavy;
    if (!section.atcid.empty()) {
        const DbaseRecord* record = gf_dbaseRecord(section.atcid);
        if (record != nullptr && !record->airl.empty()) {
            section.airline = record->airl;
            return true;
        }
        if (isHeavy) section.report("'{}' '{}' has no airline and regcode not in dbase");
    } else if (isHeavy) {
        section.report("'{}' '{}' has no airline and no regcode info");
    } else {
        section.atcid = gf_regcodeInTitle(section.title).value_or("");
    }
    if (isHeavy) return false;
    section.airline = kPrivateOwner;
    return true;
}

bool lf_isCargo(const std::string& parkingTypes) {
    return parkingTypes.find("CARGO") != std::string::npos && parkingTypes.find("GATE") == std::string::npos;
}

std::optional<FoundLivery> lf_liveryOf(CfgSection& section) {
    if (section.title.empty()) {
        section.report("{} {} misses title");
        return std::nullopt;
    }
    if (section.title.ends_with(kStubEnding)) section.airline = kUnbrandedAirline;
    if (lf_isDontUseTitle(section.title)) return std::nullopt;
    if (section.airline == kUnbrandedAirline) section.atcid.clear();
    if (section.airline.empty() && !lf_guessAirline(section)) return std::nullopt;
    return FoundLivery{lf_livery(section, lf_isCargo(section.parkingTypes)),
                       section.fault("{} {} title '{}' already exists", section.title)};
}

std::optional<FoundLivery> lf_readSection(CfgFile& file, std::string_view text) {
    CfgSection section = lf_cfgSection(file, text);
    const NextLine next = lf_takeLines(section, lf_takeLine);
    if (section.airline.empty()) {
        lf_report(file, gIncompleteSections,
                  fmt::format("{} {} icao_airline is missing, or it has invalid info ", file.shownPath,
                              lf_shown(section.header)));
    }
    return next == NextLine::giveUp ? std::nullopt : lf_liveryOf(section);
}

}  // namespace

std::optional<FoundLivery> lf_procesFltSimSection(CfgFile& file, std::string_view text) {
    try {
        return lf_readSection(file, text);
    } catch (const std::exception& exception) {
        gf_logError(fmt::format("Exception in lf_procesFltSimSection: {}, file: {}", exception.what(), file.shownPath));
        return std::nullopt;
    }
}

}  // namespace hcr
