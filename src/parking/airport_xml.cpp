#include "parking/airport_xml.h"

#include <fmt/format.h>

#include <cmath>

#include "core/model/geo.h"
#include "parking/stands_xml.h"
#include "shell/log.h"
#include "shell/meta.h"
#include "shell/parameters.h"
#include "shell/text.h"
#include "shell/version.h"
#include "shell/xml.h"

namespace hcr {
namespace {

using Parameters = pugi::xml_node;

template <typename Value>
void lf_add(Parameters& parameters, const char* name, const Value& value) {
    pugi::xml_node item = parameters.append_child("parameter");
    item.append_attribute("name").set_value(name);
    item.append_attribute("value").set_value(value);
}

void lf_addText(Parameters& parameters, const char* name, const std::string& value) {
    lf_add(parameters, name, value.c_str());
}

/// The user's choices at this airport.
void lf_addChoices(Parameters& parameters) {
    lf_add(parameters, "RANGE", RANGE.current.load());
    lf_add(parameters, "AUTO_RANGE", AUTO_RANGE.current.load());
    lf_add(parameters, "WEEK", WEEK.current.load());
    lf_add(parameters, "PARK_SOFT", PARK_SOFT.current.load());
    lf_add(parameters, "parking_percentage", parking_percentage.current.load());
    lf_add(parameters, "INITIAL_LOAD_ONLY", INITIAL_LOAD_ONLY.current.load());
    lf_add(parameters, "MAX_FIT", static_cast<i32>(std::lround(2 * MAX_FIT_FL.current)) - 1);
    lf_add(parameters, "MAX_LIVE_SEL", MAX_LIVE_SEL.current.load());
}

void lf_writeParameters(pugi::xml_node root, const AirportToWrite& airport, ApfMode mode) {
    const AirportFile& head = airport.head;
    Parameters parameters = root.append_child("parameters");
    lf_addText(parameters, "airport_name", head.airportName);
    lf_addText(parameters, "publisher", head.publisher);
    if (head.handmade) lf_add(parameters, "handmade", true);
    if (head.handmade || mode == ApfMode::generated) lf_add(parameters, "altitude", head.altitude);
    if (mode == ApfMode::generated) {
        lf_add(parameters, "num_parkpos", static_cast<unsigned long long>(airport.stands.size()));
    }
    if (head.handmade) {
        lf_add(parameters, "Qf_real", head.qualityReal);
        lf_add(parameters, "Qf_soft", head.qualitySoft);
    }
    if (head.publisher.empty()) {
        lf_addText(parameters, "BGLpath", airport.bglPath);
        lf_addText(parameters, "manufacturer", airport.manufacturer);
        lf_addText(parameters, "creator", airport.creator);
    }
    if (mode == ApfMode::learned) lf_addChoices(parameters);
}

/// Of a stand that the archived file has too: what was learned of its size and kind.
void lf_writeChanges(pugi::xml_node& element, const ParkPos& stand) {
    if (stand.radiusChanged) {
        element.append_attribute("radius_change").set_value(true);
        element.append_attribute("radius").set_value(fmt::format("{:.1f}", stand.radius * kMetresPerNm).c_str());
    }
    if (stand.cargoChanged) {
        element.append_attribute("cargo_change").set_value(true);
        element.append_attribute("cargo").set_value(stand.cargo);
    }
}

void lf_writeStand(pugi::xml_node positions, const ParkPos& stand, ApfMode mode, bool handmade) {
    pugi::xml_node element = positions.append_child("parkpos");
    element.append_attribute("id").set_value(stand.id.c_str());
    if (mode == ApfMode::generated || stand.manual || handmade) {
        gf_writeStandAttributes(element, stand);
    } else {
        lf_writeChanges(element, stand);
    }
    if (mode == ApfMode::learned) gf_writeOptions(element, stand);
}

}  // namespace

pugi::xml_attribute gf_airportParameter(const pugi::xml_document& document, const char* name) {
    return gf_rootOf(document)
        .child("parameters")
        .find_child_by_attribute("parameter", "name", name)
        .attribute("value");
}

bool gf_writeApf(const AirportToWrite& airport, const std::filesystem::path& path, ApfMode mode, i32 simCode) {
    pugi::xml_document document;
    MetaInfo meta;
    meta.version = gf_programVersion().text();
    meta.setSim(simCode);
    if (!gf_writeMeta(document, meta)) return false;
    pugi::xml_node root = document.child("root");
    lf_writeParameters(root, airport, mode);
    const pugi::xml_node positions = root.append_child("parkpositions");
    for (const ParkPos& stand : airport.stands) lf_writeStand(positions, stand, mode, airport.head.handmade);
    std::error_code fault;
    std::filesystem::create_directories(path.parent_path(), fault);
    if (fault) {
        gf_log(fmt::format("{}: {}", gf_shownPath(path.parent_path()), gf_errorText(fault)));
        return false;
    }
    return gf_saveXmlDocument(document, path);
}

}  // namespace hcr
