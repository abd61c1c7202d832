#include "parking/learned_file.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <pugixml.hpp>
#include <string>
#include <tuple>

#include "core/model/tables.h"
#include "parking/airport_parameters.h"
#include "parking/airport_xml.h"
#include "parking/quality.h"
#include "parking/stands_xml.h"
#include "shell/controls.h"
#include "shell/generations.h"
#include "shell/log.h"
#include "shell/messages.h"
#include "shell/meta.h"
#include "shell/parameters.h"
#include "shell/text.h"
#include "shell/time_text.h"
#include "shell/version.h"
#include "shell/xml.h"

namespace hcr {
namespace {

constexpr f64 kNowhereDeg = 0.0001;
constexpr i32 kUsualPercentage = 30;

/// What goes with the merging of one file.
struct Merge {
    const std::filesystem::path& path;
    std::vector<ParkPos>& stands;
    bool clearFlights = false;  ///< of a version that learned flights badly
};

ParkPos* lf_standOf(std::vector<ParkPos>& stands, std::string_view id) {
    const auto found = std::find_if(stands.begin(), stands.end(), [id](const ParkPos& s) { return s.id == id; });
    return found == stands.end() ? nullptr : &*found;
}

template <typename Value>
void lf_logSetting(const std::string& name, const Value& value) {
    gf_log(fmt::format("{:24}: {}", name, value));
}

/// A setting with a control, when the file has it.
void lf_takeSetting(const pugi::xml_document& document, CheckBox& box) {
    const pugi::xml_attribute value = gf_airportParameter(document, box.name.c_str());
    if (!value) return;
    box.current = value.as_bool();
    gf_showInControl(box);
    lf_logSetting(box.name, box.current.load());
}

void lf_takeSetting(const pugi::xml_document& document, NumberChoice& choice, const char* usual = nullptr) {
    const pugi::xml_attribute value = gf_airportParameter(document, choice.name.c_str());
    if (!value && usual == nullptr) return;
    const i32 number = value ? value.as_int() : std::stoi(usual);
    choice.current = std::clamp(number, choice.lower, choice.upper);
    gf_showInControl(choice);
    lf_logSetting(choice.name, choice.current.load());
}

void lf_takeMaxFit(const pugi::xml_document& document) {
    const pugi::xml_attribute value = gf_airportParameter(document, "MAX_FIT");
    if (!value) return;
    MAX_FIT.current = std::clamp(value.as_int(), MAX_FIT.lower, MAX_FIT.upper);
    gf_hoursFromMaxFit();
    gf_log(fmt::format("{:24}: {} (max number of half hours, is {:.1F} hrs decimal)", MAX_FIT.name,
                       MAX_FIT.current.load(), MAX_FIT_FL.current.load()));
}

void lf_takeSettings(const pugi::xml_document& document) {
    lf_takeSetting(document, MAX_LIVE_SEL);
    lf_takeSetting(document, RANGE);
    lf_takeSetting(document, AUTO_RANGE);
    static const std::string usual = std::to_string(kUsualPercentage);
    lf_takeSetting(document, parking_percentage, usual.c_str());
    lf_takeSetting(document, WEEK);
    lf_takeSetting(document, PARK_SOFT);
    lf_takeMaxFit(document);
    lf_takeSetting(document, INITIAL_LOAD_ONLY);
}

void lf_compareNames(const pugi::xml_document& document, const AirportFile& info) {
    const std::string name = gf_airportParameter(document, "airport_name").value();
    if (name == info.airportName) return;
    gf_showMessage(fmt::format("Warning: learned file airport name: '{}' differs from archived file airport name: '{}'",
                               gf_quoted(name), gf_quoted(info.airportName)),
                   true);
}

/// The head of a handmade airport is its own where it has one.
void lf_takeHead(const pugi::xml_document& document, AirportFile& info) {
    if (const pugi::xml_attribute value = gf_airportParameter(document, "altitude")) info.altitude = value.as_int();
    if (const pugi::xml_attribute value = gf_airportParameter(document, "airport_name")) {
        info.airportName = value.value();
    }
    if (const pugi::xml_attribute value = gf_airportParameter(document, "publisher")) info.publisher = value.value();
}

bool lf_isKnown(const ParkPos& stand, const StandOption& option) {
    return std::any_of(stand.options.begin(), stand.options.end(), [&option](const StandOption& known) {
        return known.day == option.day && known.hard == option.hard && known.reg == option.reg &&
               known.airline == option.airline && known.type == option.type && (known.hours & option.hours).any();
    });
}

void lf_mergeOptions(const pugi::xml_node& element, ParkPos& stand) {
    u32 next = stand.options.empty() ? 1 : stand.options.back().index + 1;
    for (const pugi::xml_node node : element.children("opt")) {
        StandOption option;
        if (!gf_readOption(node, option)) continue;
        if (option.hours.none()) {
            gf_logError("empty bit set");
            continue;
        }
        if (lf_isKnown(stand, option)) continue;
        option.index = next++;
        stand.options.push_back(std::move(option));
    }
    stand.options.shrink_to_fit();
}

void lf_mergeStand(const pugi::xml_node& element, ParkPos& stand, const Merge& merge) {
    const std::optional<f64> radius = gf_readRadius(element);
    if (element.attribute("radius_change").as_bool() && radius) {
        stand.radius = *radius;
        stand.radiusChanged = true;
    }
    if (element.attribute("cargo_change").as_bool()) {
        stand.cargo = element.attribute("cargo").as_bool();
        stand.cargoChanged = true;
    }
    if (!merge.clearFlights) lf_mergeOptions(element, stand);
}

void lf_addManual(const pugi::xml_node& element, std::string_view id, const Merge& merge) {
    const std::string file = gf_shownPath(merge.path);
    if (lf_standOf(merge.stands, id) != nullptr) {
        gf_logError(fmt::format("manually created standid {} already exists in {}", id, file));
        return;
    }
    ParkPos stand;
    stand.id = id;
    const bool read = gf_readStand(element, 0, stand);
    const bool nowhere = std::fabs(stand.lat) <= kNowhereDeg && std::fabs(stand.lon) <= kNowhereDeg;
    if (!read || nowhere || stand.radius == 0) {
        gf_logError(fmt::format("manually created standid {} misses correct attributes in {}", id, file));
        return;
    }
    stand.manual = true;
    if (merge.clearFlights) stand.options.clear();
    merge.stands.push_back(std::move(stand));
}

void lf_mergeStands(const pugi::xml_node& root, const Merge& merge) {
    for (const pugi::xml_node element : root.child("parkpositions").children("parkpos")) {
        const std::string_view id = gf_trim(element.attribute("id").value());
        if (element.attribute("manual").as_bool()) {
            lf_addManual(element, id, merge);
        } else if (ParkPos* stand = lf_standOf(merge.stands, id)) {
            lf_mergeStand(element, *stand, merge);
        } else {
            gf_log(fmt::format("learned stand {} in {} not found?", gf_quoted(id), gf_shownPath(merge.path)));
        }
    }
}

/// Read whole before it takes the archived stands' place: a damaged one costs only itself.
void lf_readHandmade(const pugi::xml_document& document, AirportFile& info, std::vector<ParkPos>& stands) {
    std::vector<ParkPos> own;
    gf_readStands(gf_rootOf(document), 1, own);
    stands = std::move(own);
    lf_takeHead(document, info);
}

/// Too old to be trusted with flights: before 11.10.0 they were learned wrongly.
bool lf_isOld(const MetaInfo& meta) {
    if (VersionData(meta.version) >= VersionData(11, 10, 0)) return false;
    gf_log(
        "\nThis learned file was created with and older Halcy version than 11.10.0,\nAll flights will be cleared, "
        "except for a handmade file\n");
    return true;
}

void lf_keepAside(const std::filesystem::path& path) {
    gf_save1GenerationOf(path);
}

/// What a learned file holds of a stand; nothing to keep gives false.
bool lf_keepLearned(ParkPos& stand) {
    std::erase_if(stand.options, [](const StandOption& option) { return option.origin == 1; });
    return !stand.options.empty() || stand.manual || stand.radiusChanged || stand.cargoChanged;
}

}  // namespace

void gf_mergeLearned(const pugi::xml_document& document, const std::filesystem::path& path, AirportFile& info,
                     std::vector<ParkPos>& stands, bool& handmade) {
    const std::optional<MetaInfo> meta = gf_readMeta(document, true);
    if (!meta) return;
    const bool clearFlights = lf_isOld(*meta);
    lf_compareNames(document, info);
    lf_takeSettings(document);
    if (gf_airportParameter(document, "handmade")) {
        lf_readHandmade(document, info, stands);
        handmade = true;
    } else {
        lf_mergeStands(gf_rootOf(document), Merge{path, stands, clearFlights});
    }
}

void lf_readLearned(const std::filesystem::path& path, AirportFile& info, std::vector<ParkPos>& stands,
                    bool& handmade) {
    pugi::xml_document document;
    if (const pugi::xml_parse_result result = gf_loadXmlDocument(document, path); !result) {
        lf_keepAside(path);
        gf_logError(fmt::format("{} found, but could not be loaded, saved as *.0.xml: {}", gf_shownPath(path),
                                result.description()));
        return;
    }
    gf_log(fmt::format("Read from learned airport file: '{}'", gf_shownPath(path)));
    try {
        gf_mergeLearned(document, path, info, stands, handmade);
    } catch (const std::exception& fault) {
        lf_keepAside(path);
        gf_log(fmt::format("{}: {}", "lf_readLearned", fault.what()));
    }
}

void gf_saveLearnedFile() {
    if (gLearnedPath.empty()) return;
    AirportToWrite airport;
    airport.head = gAirportFile;
    airport.head.handmade = gHandmade;
    airport.stands = gStands;
    if (gHandmade) {
        std::tie(airport.head.qualityReal, airport.head.qualitySoft) = gf_qualityFactor();
    } else {
        std::erase_if(airport.stands, [](ParkPos& stand) { return !lf_keepLearned(stand); });
    }
    const std::string path = gf_shownPath(gLearnedPath);
    if (!gf_writeApf(airport, gLearnedPath, ApfMode::learned, gf_sim2024Chosen() ? 2 : 1)) {
        gf_log(fmt::format("{} saving '{}' did not succeed", gf_timeOfDay(), path));
        return;
    }
    gf_log(fmt::format("{}{} '{}' saved with {} update{}", gf_timeOfDay(), gHandmade ? " handmade" : "", path,
                       gLearnedUpdates, gf_plural(gLearnedUpdates)));
}

}  // namespace hcr
