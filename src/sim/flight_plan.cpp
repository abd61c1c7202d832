#include "sim/flight_plan.h"

#include <fmt/format.h>

#include <filesystem>
#include <string>
#include <string_view>

#include "core/model/aircraft_class.h"
#include "core/model/labels.h"
#include "platform/code_page.h"
#include "platform/files.h"
#include "shell/file_names.h"
#include "shell/generations.h"
#include "shell/log.h"
#include "shell/parameters.h"
#include "shell/text.h"
#include "sim/definitions.h"
#include "sim/session.h"

namespace hcr {
namespace {

namespace fs = std::filesystem;

fs::path lf_planPath(u32 objectId) {
    return gFiles().origDest / fmt::format("{}.pln", objectId);
}

const char* lf_planKind(i32 acClass) {
    return acClass == Buzjets || acClass == Large || acClass == Heavy ? "IFR" : "VFR";
}

/// The codes come from the feed, and the simulator reads the file as XML.
std::string lf_escaped(std::string_view code) {
    std::string escaped;
    for (const char c : code) {
        switch (c) {
            case '&':
                escaped += "&amp;";
                break;
            case '<':
                escaped += "&lt;";
                break;
            case '>':
                escaped += "&gt;";
                break;
            default:
                escaped += c;
        }
    }
    return escaped;
}

std::string lf_planText(const LiveAc& ac) {
    return fmt::format("{}\n{}\n{}\n{}{}{}\n{}{}{}\n{}{}{}\n{}\n{}\n\n", "<?xml version=\"1.0\" encoding=\"UTF-8\"?>",
                       "<SimBase.Document Type=\"AceXML\" version=\"4,3\">", "<FlightPlan.FlightPlan>",  //
                       "<FPType>", lf_planKind(ac.acClass), "</FPType>",                                 //
                       "<DepartureID>", lf_escaped(ac.from), "</DepartureID>",                           //
                       "<DestinationID>", lf_escaped(ac.to), "</DestinationID>",                         //
                       "</FlightPlan.FlightPlan>", "</SimBase.Document>");
}

/// The file's full path; empty when it couldn't be written.
fs::path lf_writePlan(const LiveAc& ac) {
    std::error_code error;
    const fs::path path = fs::absolute(lf_planPath(ac.objectId), error);
    if (error) return {};
    gf_writeFile(path, lf_planText(ac), error);
    if (!error) return path;
    gf_tellWriteFault(path, error);
    return {};
}

/// MSFS 2024 knows no plans for these objects: its file is made, but not handed over.
bool lf_handOver(u32 objectId, const fs::path& path) {
    if (gf_sim2024Chosen()) return true;
    const std::string name = gf_narrowPath(path);
    const std::lock_guard lock(gSimMutex);
    if (gSimHandle == nullptr || gRequestError) return false;
    return gSimPort.SimConnect_AISetAircraftFlightPlan(gSimHandle, objectId, name.c_str(), kReqFlightPlan) == 0;
}

}  // namespace

bool gf_createFlightPlanFolder() {
    std::error_code error;
    fs::create_directories(gFiles().origDest, error);
    if (!error && fs::is_directory(gFiles().origDest, error)) return true;
    if (!error) error = std::make_error_code(std::errc::not_a_directory);
    gf_log(fmt::format("gf_createFlightPlanFolder: {}", gf_errorText(error)));
    return false;
}

void gf_makeFlightPlan(LiveAc& ac) {
    if (ac.from.empty() || ac.to.empty()) return;
    const fs::path path = lf_writePlan(ac);
    ac.hasFlightPlan = !path.empty() && lf_handOver(ac.objectId, path);
    if (ac.hasFlightPlan || !gf_mayLog(LogKind::flightPlanFile)) return;
    gf_logError(fmt::format("{} creating a flight plan failed", liveAcLabel(ac)));
}

void gf_removeFlightPlan(u32 objectId) {
    std::error_code error;
    fs::remove(lf_planPath(objectId), error);
    if (error) gf_log(fmt::format("gf_removeFlightPlan: {}", gf_errorText(error)));
}

void gf_removeFlightPlanFolder() {
    std::error_code error;
    fs::remove_all(gFiles().origDest, error);
    if (error) gf_log(fmt::format("gf_removeFlightPlanFolder: {}", gf_errorText(error)));
}

}  // namespace hcr
