#include "tests/support/world.h"

#include <fmt/format.h>

#include <fstream>
#include <stdexcept>

#include "core/model/geo.h"
#include "core/model/run_state.h"
#include "core/model/tables.h"
#include "core/run/run.h"
#include "core/run/worker.h"
#include "feed/control_channel.h"
#include "feed/traffic_reader.h"
#include "liveries/dbase.h"
#include "liveries/matching.h"
#include "liveries/results.h"
#include "parking/catalogue.h"
#include "parking/park_airport.h"
#include "platform/clock.h"
#include "platform/system.h"
#include "shell/file_names.h"
#include "shell/log.h"
#include "shell/parameter_file.h"
#include "shell/stream_cipher.h"
#include "shell/window_state.h"
#include "sim/flight_plan.h"
#include "sim/session.h"
#include "tests/support/environment.h"

namespace hcr::test {
namespace {

constexpr i64 kCycleUs = 10'000;
constexpr int kLongestStartCycles = 3000;  // thirty seconds

void lf_encipher(const char* name, const std::filesystem::path& target) {
    if (!gf_streamEncrypt(demoData(name), target)) throw std::runtime_error(std::string("no ") + name);
}

/// The start of a flight as the run thread makes it, with the simulator's thread turned by hand.
void lf_startFlight() {
    bool asked = false;
    for (int i = 0; i < kLongestStartCycles; ++i) {
        gf_turnClock(kCycleUs);
        gf_pumpSimClient();
        if (!gFlightRunning) continue;
        if (!asked) {
            gf_requestUserOnGround();
            gf_requestUserIdentity();
            asked = true;
        }
        if (i % 20 == 0) gf_fetchUserPosition();
        const UserAircraftData user = gf_lastUserPosition();
        if (gUserOnGroundKnown && positionKnown(user.lat, user.lon)) return;
    }
    throw std::runtime_error("the sandbox didn't start a flight");
}

}  // namespace

std::size_t countOf(const std::string& text, const std::string& piece) {
    std::size_t count = 0;
    for (std::size_t at = text.find(piece); at != std::string::npos; at = text.find(piece, at + piece.size())) ++count;
    return count;
}

void makeWorkFolder(const WorldOptions& options) {
    namespace fs = std::filesystem;
    const fs::path here = fs::current_path();
    gf_useUserFolders(here / "config", here / "data");
    gf_rebuildFileNames();
    fs::create_directories("docs");
    fs::create_directories("input/my_regcodes");
    fs::create_directories("output/info");
    lf_encipher("dbase.xml", gFiles().dbaseEnc);
    lf_encipher("airports.xml", gFiles().airportsEnc);
    lf_encipher("AIG-regcodes.xml", gFiles().aigEnc);
    fs::copy_file(demoData("LiveriesScanned.xml"), gFiles().liveriesScanned);
    if (options.realTrafficHere) {
        fs::create_directories(gf_roamingFolder() / "InsideSystems");
        writeFile(gf_roamingFolder() / "InsideSystems" / "RealTraffic.jar", "");
    }
    gf_makeConfigurationFolder();
    gf_resetParameters();
    PROGRAM_VERSION.current.set(gf_programVersion().text());
    MSFS_INSTALL_PATH.current.set((here / "packages").string());
    SCAN_LIVERIES.current = false;
    SCAN_AIRPORTS.current = false;
    AUTO_RANGE.current = false;
    RANGE.current = options.rangeNm;
    PORT_NUMBER.current.set("0");
    gf_saveParameters(false);
}

void resetProgram() {
    gf_resetRun();
    gf_clearLiveryTables();
    gf_forgetLiveries();
    gf_resetParameters();
    gRestart = false;
    gExitCode = 0;
    gRtOnThisPc = false;
    gLastTimestamp = 0;
    while (gf_takeWindowMessage(0) != WindowMessage::none) {
    }
}

World::World(WorldOptions worldOptions) : options(std::move(worldOptions)) {
    if (options.scenario.user.empty()) options.scenario = gf_defaultScenario();
    gf_holdClock(options.utc);
    resetProgram();
    makeWorkFolder(options);
    gf_openLog();
    gf_startSandbox(options.scenario, options.trace);
    gf_loadAtStart();
    gf_loadScanResults();
    gf_setRange(options.rangeNm);
    gf_createFlightPlanFolder();
    gf_resetSimSession();
    lf_startFlight();
    gf_handPositionToDecoder();
    gSlot = currentSlot();
    gSeconds = 0;
    startUtc = gf_utcSeconds();
    const std::lock_guard lock(gReportMutex);
    gAcceptReports = true;
}

World::~World() {
    gf_endSimClient();
    gf_stopSandbox();
    resetProgram();
    gf_useUserFolders({}, {});
    gf_forgetDbase();
    gf_forgetAirports();
    gf_closeLog();
    gf_releaseClock();
}

void World::feed(const std::vector<TimedLine>& timedLines) {
    lines = timedLines;
    nextLine = 0;
    if (!lines.empty()) feedShift = gf_utcSeconds() - lines.front().time;
}

void World::line(const std::string& text) {
    gTrafficReader.text = text;
    gTrafficReader.handleText();
    gTrafficReader.text = {};
}

void World::cycle() {
    gf_turnClock(kCycleUs);
    gf_pumpSimClient();
    const f64 now = gf_utcSeconds();
    while (nextLine < lines.size() && lines[nextLine].time + feedShift <= now) line(lines[nextLine++].line);
    gf_tick();
}

bool World::run(f64 duration) {
    const auto cycles = static_cast<i64>(duration * 100.0 + 0.5);
    for (i64 i = 0; i < cycles; ++i) {
        cycle();
        if (gf_stopAsked()) return false;
    }
    return true;
}

f64 World::seconds() const {
    return gf_utcSeconds() - startUtc;
}

std::string World::log() const {
    gf_logFlush();
    return readFile("Log.txt");
}

std::string FeedLine::text() const {
    return fmt::format(
        "RTTFC,{},{:.5f},{:.5f},{:.0f},{:.0f},1,{:.2f},{:.2f},{},{},{},{},{},{:.1f},X2,{},adsb_icao,-1,-1,{:.0f},-1.000,"
        "-1.0,-1.0,-1.00,{:.2f},-1,,A3,-1.0,-1,-1,-1.00,,3.6,-3.3,-1,-1,-1,-1,1,80857",
        hexid, lat, lon, alt, vs, track, speed, callsign, model, registration, from, to, timestamp, callsign, tas,
        track == 0 ? 360.0 : track);
}

}  // namespace hcr::test
