#include "tests/parking/airport_world.h"

#include <fmt/format.h>

#include "core/model/aircraft_class.h"
#include "core/model/park_state.h"
#include "core/model/run_state.h"
#include "core/model/tables.h"
#include "parking/airport_parameters.h"
#include "parking/airport_reader.h"
#include "parking/learned_file.h"
#include "parking/plan.h"
#include "parking/static_aircraft.h"
#include "shell/file_names.h"

namespace hcr::test {
namespace {

constexpr const char* kAirframes = R"(<dbase>
    <db reg="PH-BXA" airl="KLM" type="B738"/><db reg="PH-BXB" airl="KLM" type="B738" opr="DLH"/>
    <db reg="D-AIZA" airl="DLH" type="A320"/><db reg="G-CIVA" airl="KLM" type="B744"/></dbase>)";

void lf_forget() {
    gf_clearTables();
    gf_resetParking();
    gParkAirport = AirportEntry{};
    gSelectedStand.clear();
    gSlot = HalfHourSlot{};
}

}  // namespace

AirportWorld::AirportWorld() {
    lf_forget();
    folder.readDbase(kAirframes);
    folder.loadLiveries(liv("KLM", "B738", "KLM 737") + liv("DLH", "A320", "DLH A320") + liv("KLM", "B744", "KLM 747"));
    gParkAirport.code = "EHAM";
    gSlot = HalfHourSlot{1, 20};
}

AirportWorld::~AirportWorld() {
    gf_restoreAirportParameters();
    lf_forget();
}

void AirportWorld::writeAirport(const std::string& stands, const std::string& parameters) const {
    writeWhole(gFiles().mySimaddon / "EHAM.xml",
               fmt::format(R"(<root><meta><info name="copyright" value="x"/><info name="sim" value="1"/></meta>
                   <parameters><parameter name="airport_name" value="Schiphol"/>
                   <parameter name="publisher" value="simaddon"/><parameter name="altitude" value="-11"/>{}</parameters>
                   <parkpositions>{}</parkpositions></root>)",
                           parameters, stands));
}

std::string AirportWorld::read() {
    head = AirportFile{};
    std::string fault = gf_readApf(gf_airportFilePath("EHAM"), head);
    gAirportFile = head;
    return fault;
}

void AirportWorld::leave() {
    gf_saveLearnedFile();
    gf_restoreAirportParameters();
    gStands.clear();
    gAirportLoaded = false;
}

std::string AirportWorld::learned() const {
    return readWhole(gFiles().learnedSimaddon / "EHAM.xml");
}

std::string stand(const std::string& id, f64 metresEast, const std::string& options, const std::string& more) {
    const f64 degreesPerMetre = 1 / (1852.0 * 60);  // on the equator
    return fmt::format(R"(<parkpos id="{}" latitude="0.0" longitude="{:.7f}" heading="90" radius="20" {}>{}</parkpos>)",
                       id, 10 + metresEast * degreesPerMetre, more, options);
}

std::string opt(const std::string& reg, const std::string& hours, const std::string& callsigns,
                const std::string& more) {
    return fmt::format(R"(<opt reg="{}" hh="{}" cs="{}" {} {}/>)", reg, hours, callsigns,
                       more.find("day=") == std::string::npos ? R"(day="1")" : "", more);
}

LiveAc learner(const std::string& registration, const std::string& callsign) {
    LiveAc ac;
    ac.hexid = 4740000;
    ac.registration = registration;
    ac.callsign = callsign;
    ac.acClass = Large;
    return ac;
}

}  // namespace hcr::test
