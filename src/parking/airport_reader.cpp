#include "parking/airport_reader.h"

#include <fmt/format.h>

#include <pugixml.hpp>

#include "core/model/park_state.h"
#include "core/model/tables.h"
#include "parking/adjacency.h"
#include "parking/airport_parameters.h"
#include "parking/airport_xml.h"
#include "parking/catalogue.h"
#include "parking/learned_file.h"
#include "parking/learned_path.h"
#include "parking/quality.h"
#include "parking/stands_xml.h"
#include "shell/controls.h"
#include "shell/file_names.h"
#include "shell/log.h"
#include "shell/messages.h"
#include "shell/meta.h"
#include "shell/parameters.h"
#include "shell/text.h"
#include "shell/window_state.h"
#include "shell/xml.h"

namespace hcr {
namespace {

namespace fs = std::filesystem;

constexpr const char* kLabel = "gf_readApf";
constexpr i32 kParameterMissing = 65;
constexpr i32 kPoorQuality = 3, kGoodQuality = 46;
constexpr f32 kDayHours = 24;
constexpr i32 kUsualPercentage = 30;

/// Where the file lies once it is on this computer; an error text when it can't be fetched.
std::string lf_locate(std::string_view path, fs::path& file) {
    if (gf_isLocalAirportPath(path)) {
        file = gf_pathFromUtf8(path);
        return {};
    }
    file = gFiles().airports / "park_airport.xml";
    return gf_downloadApf(path, file);
}

void lf_readHead(const pugi::xml_document& document, AirportFile& info) {
    info.rtTrafficWeek = gf_airportParameter(document, "RT_traffic_week").as_int();
    info.publisher = gf_airportParameter(document, "publisher").value();
    const pugi::xml_attribute altitude = gf_airportParameter(document, "altitude");
    if (!altitude) {
        throw UserErrorException(kParameterMissing, fmt::format("Parameter {} not found", "altitude"));
    }
    info.altitude = altitude.as_int();
    info.airportName = gf_airportParameter(document, "airport_name").value();
}

void lf_readQuality(const pugi::xml_document& document, AirportFile& info) {
    const pugi::xml_attribute real = gf_airportParameter(document, "Qf_real");
    const pugi::xml_attribute soft = gf_airportParameter(document, "Qf_soft");
    if (real && soft) {
        info.qualityReal = real.as_int();
        info.qualitySoft = soft.as_int();
    } else {
        std::tie(info.qualityReal, info.qualitySoft) = gf_qualityFactor();
    }
}

i32 lf_usualPercentage() {
    const AirportEntry* airport = gf_findAirport(gParkAirport.code);
    if (airport == nullptr) return kUsualPercentage;
    return airport->stands == 1 ? 100 : airport->stands == 2 ? 50 : kUsualPercentage;
}

/// What holds at an airport that was never visited.
void lf_setDefaults(const AirportFile& info) {
    if (info.qualityReal < kPoorQuality && info.qualitySoft >= 1) {
        PARK_SOFT.current = true;
        WEEK.current = true;
        MAX_FIT_FL.current = kDayHours;
        gf_maxFitFromHours();
        gf_showInControl(MAX_FIT_FL);
    } else if (info.qualityReal >= kGoodQuality) {
        PARK_SOFT.current = false;
        WEEK.current = false;
    }
    gf_showInControl(PARK_SOFT);
    gf_showInControl(WEEK);
    parking_percentage.current = lf_usualPercentage();
    gf_showInControl(parking_percentage);
    gf_log(fmt::format("{:24}: {}%", parking_percentage.name, parking_percentage.current.load()));
}

void lf_mergeLearned(std::string_view path, AirportFile& info) {
    gLearnedPath = gf_learnedPath(path, info.publisher);
    gHandmade = false;
    std::error_code ignored;
    if (gLearnedPath.empty()) {
        gf_log("no place to keep what is learned here, since the airport's file names no publisher");
        lf_setDefaults(info);
    } else if (fs::exists(gLearnedPath, ignored)) {
        lf_readLearned(gLearnedPath, info, gStands, gHandmade);
        std::tie(info.qualityReal, info.qualitySoft) = gf_qualityFactor();
        if (gHandmade) gf_log("A handmade airport file overruled the archived file!");
    } else {
        gf_log("learned does not exist");
        lf_setDefaults(info);
    }
    info.handmade = gHandmade;
}

void lf_logAirport(std::string_view path, const AirportFile& info) {
    const std::string source = gHandmade ? gf_pathToUtf8(gLearnedPath) : std::string(path);
    gf_log(fmt::format("Airport file read from '{}' for {}", source, gParkAirport.code));
    gf_log(fmt::format("{:24}: {}", "publisher", gf_quoted(info.publisher)));
    gf_log(fmt::format("{:24}: {} ft", "altitude", info.altitude));
    gf_log(fmt::format("{:24}: {}", "num_parkpos", gStands.size()));
    gf_log(fmt::format("{:24}: {}", "quality factor", gf_qualityText(info.qualityReal, info.qualitySoft)));
    gf_log(fmt::format("{:24}: {}", "RT traffic week", info.rtTrafficWeek));
}

void lf_showAirport(const AirportFile& info) {
    gWindow.airportName.set(info.airportName);
    gWindow.publisher.set(info.publisher);
    gWindow.qualityText.set(gf_qualityText(info.qualityReal, info.qualitySoft));
    gWindow.handmade = gHandmade;
    gWindow.standCount = gStands.size();
    gWindow.airportFileOk = true;
    gf_repaint(Band::airport);
}

std::string lf_read(std::string_view path, AirportFile& info) {
    fs::path file;
    if (std::string fault = lf_locate(path, file); !fault.empty()) return fault;
    pugi::xml_document document;
    if (const pugi::xml_parse_result result = gf_loadXmlDocument(document, file); !result) {
        return fmt::format("{}: could not load file: {} {}", kLabel, gf_shownPath(file), result.description());
    }
    if (!gf_readMeta(document, false)) return fmt::format("{}: refused to load", kLabel);
    lf_readHead(document, info);
    gStands.clear();
    gf_readStands(gf_rootOf(document), 1, gStands);
    lf_readQuality(document, info);
    document.reset();  // the largest part of what a load needs
    gf_rememberAirportParameters();
    lf_mergeLearned(path, info);
    gf_numberStands(gStands);
    gStands.shrink_to_fit();
    lf_logAirport(path, info);
    if (gStands.empty()) return "no stands found";
    lf_showAirport(info);
    gAirportAltitude = info.altitude;
    gAirportLoaded = true;
    gf_enableControl(gFlushStaticButton, true);
    return {};
}

}  // namespace

std::string gf_readApf(std::string_view path, AirportFile& info) {
    if (path.empty()) return fmt::format("{}: xml is empty", kLabel);
    if (!gf_hasParkAirport()) return fmt::format("{}: no park airport set", kLabel);
    try {
        return lf_read(path, info);
    } catch (const UserErrorException&) {
        throw;
    } catch (const std::exception& fault) {
        return fmt::format("{}: {}", kLabel, fault.what());
    }
}

}  // namespace hcr
