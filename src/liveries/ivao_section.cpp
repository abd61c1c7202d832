#include "liveries/ivao_section.h"

#include <algorithm>
#include <array>

#include "liveries/dbase.h"
#include "shell/log.h"
#include "shell/text.h"

namespace hcr {
namespace {

constexpr const char* kUnbrandedAirline = "ZZZ";
constexpr std::size_t kAirlineLength = 3;
/// Folders of models with winglets, whose titles have a "W" behind the type.
constexpr std::array<std::string_view, 5> kWinglets = {"IVAO_B738WLfa", "IVAO_B739WLfa", "IVAO_A320wCFM",
                                                       "IVAO_A320wIAE", "IVAO_A319fIAEw"};

NextLine lf_takeIvaoTitle(CfgSection& section, std::string_view value) {
    const bool isFirst = section.title.empty();
    const NextLine next = lf_takeTitle(section, value);
    if (isFirst && next == NextLine::read && section.title != value) {
        gf_log(fmt::format("removed spaces around title '{}' --> '{}'", lf_shown(value), section.title));
    }
    return next;
}

void lf_takeAtcId(CfgSection& section, std::string_view value) {
    if (lf_checkAtcId(value, section.atcid)) return;
    lf_report(section.file, gIncompleteSections,
              fmt::format("invalid atc_id={} in {}", lf_shown(value), section.title));
    section.atcid.clear();
}

NextLine lf_takeLine(CfgSection& section, std::string_view line) {
    const auto [key, value] = gf_cfgLine(line);
    if (key == CfgKey::title) return lf_takeIvaoTitle(section, value);

    if (section.parkingTypes.empty()) {
        if (key == CfgKey::parkingTypes) {
            section.parkingTypes = lf_normalized(value);
            return NextLine::read;
        }
    } else if (lf_mentions(line, "atc_parking_types")) {
        section.report("{} {} has more than one atc_parking_types key");
        return NextLine::giveUp;
    }
    if (section.atcid.empty()) {
        if (key == CfgKey::atcId) {
            lf_takeAtcId(section, value);
            return NextLine::read;
        }
    } else if (lf_mentions(line, "atc_id=")) {
        section.report("{}, {}, has more than one atc_id key");
        return NextLine::giveUp;
    }
    if (key == CfgKey::texture && section.texture.empty()) section.texture = value;
    return NextLine::read;
}

bool lf_isFolder(const std::filesystem::path& path) {
    std::error_code error;
    return std::filesystem::is_directory(path, error);
}

bool lf_hasTexture(const CfgSection& section) {
    const std::filesystem::path folder = section.file.path.parent_path();
    const std::filesystem::path texture = folder / gf_pathFromUtf8("texture." + section.texture);
    if (lf_isFolder(texture)) return true;
    // A dot at the end of a name counts for nothing where the simulator runs.
    if (section.texture.empty() && lf_isFolder(folder / "texture")) return true;
    lf_report(section.file, gIncompleteSections,
              fmt::format("{} {} does not exist", lf_shown(gf_shownPath(texture)), lf_shown(section.header)));
    return false;
}

bool lf_isWordLetter(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '_';
}

/// The three letters behind the model's name and any blanks, at the first place where there are such; else empty.
std::string_view lf_airlineInTitle(std::string_view title, const std::string& model) {
    for (std::size_t at = title.find(model); at != std::string_view::npos; at = title.find(model, at + 1)) {
        const std::string_view behind = gf_trimCfg(title.substr(at + model.size()));
        const std::string_view code = behind.substr(0, kAirlineLength);
        if (code.size() == kAirlineLength && std::all_of(code.begin(), code.end(), lf_isWordLetter)) return code;
    }
    return {};
}

bool lf_hasWinglets(const std::string& folder) {
    return std::any_of(kWinglets.begin(), kWinglets.end(),
                       [&](std::string_view name) { return folder.find(name) != std::string::npos; });
}

/// Empty, and reported, if there is none. A livery that its title calls unbranded is no airframe's.
std::string lf_airlineOf(CfgSection& section) {
    const CfgFile& file = section.file;
    const std::string model = file.type + (lf_hasWinglets(file.folder) ? "W" : "");
    const std::string_view code = lf_airlineInTitle(section.title, model);
    if (!code.empty()) {
        if (code == kUnbrandedAirline) section.atcid.clear();
        if (gf_isAirline(code)) return std::string(code);
        lf_reportAirline(section.file, code, section.header);
        return {};
    }
    if (section.atcid.empty()) {
        section.report("{} {} misses airlinecode in title: {}, and no regcode", section.title);
        return {};
    }
    const DbaseRecord* record = gf_dbaseRecord(section.atcid);
    if (record != nullptr && !record->airl.empty()) return std::string(record->airl);
    section.report("{} {} misses airlinecode in title: {}, and regcode unknown {}", section.title, section.atcid);
    return {};
}

}  // namespace

std::optional<FoundLivery> lf_ivaoSection(CfgFile& file, std::string_view text) {
    CfgSection section = lf_cfgSection(file, text);
    if (lf_takeLines(section, lf_takeLine) == NextLine::giveUp || !lf_hasTexture(section)) return std::nullopt;
    if (section.title.empty()) {
        section.report("{} {} misses title");
        return std::nullopt;
    }
    if (lf_isDontUseTitle(section.title)) return std::nullopt;
    section.airline = lf_airlineOf(section);
    if (section.airline.empty()) return std::nullopt;
    constexpr bool kCargo = false;  // the package has none
    return FoundLivery{lf_livery(section, kCargo), section.fault("{} {} title already exists: {}", section.title)};
}

}  // namespace hcr
