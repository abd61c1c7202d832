#include "tools/replay/simulated_run.h"

#include <fmt/format.h>

#include <stdexcept>
#include <utility>

#include "core/model/geo.h"
#include "core/model/range.h"
#include "core/model/run_state.h"
#include "core/model/tables.h"
#include "core/run/load.h"
#include "core/run/reset.h"
#include "core/run/tick.h"
#include "feed/feed_counters.h"
#include "feed/qnh_reader.h"
#include "feed/traffic_reader.h"
#include "liveries/dbase.h"
#include "liveries/results.h"
#include "parking/park_airport.h"
#include "platform/clock.h"
#include "platform/user_folders.h"
#include "shell/file_names.h"
#include "shell/log.h"
#include "shell/log_start.h"
#include "shell/random.h"
#include "shell/run_stop.h"
#include "shell/text_files.h"
#include "shell/window_state.h"
#include "sim/flight_plan.h"
#include "sim/port/sandbox/sandbox.h"
#include "sim/requests.h"
#include "sim/session.h"
#include "sim/session_reset.h"
#include "sim/sim_client.h"
#include "tools/feed/recording.h"

namespace hcr {
namespace {

constexpr i64 kCycleUs = 10'000;
constexpr int kLongestStartCycles = 3000;  // thirty seconds
constexpr int kPositionCycles = 20;
constexpr u32 kSeed = 11;  // what is drawn by chance is drawn alike in each run

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
        if (i % kPositionCycles == 0) gf_fetchUserPosition();
        const UserAircraftData user = gf_lastUserPosition();
        if (gUserOnGroundKnown && positionKnown(user.lat, user.lon)) return;
    }
    throw std::runtime_error("the sandbox didn't start a flight");
}

/// One livery of no airline for each type, so that each aircraft finds one.
void lf_writeGenericLiveries() {
    std::string liveries;
    for (const std::string& type : aircraftTypes) {
        liveries += fmt::format("<liv airl=\"ZZZ\" type=\"{0}\" title=\"Replay {0}\"/>\n", type);
    }
    gf_writeTextFile(fmt::format("<root><liveries>\n{}</liveries></root>\n", liveries), gFiles().liveriesScanned,
                     false);
}

}  // namespace

SimulatedRun::SimulatedRun(const SimulatedRunOptions& options) : restarts(options.restarts) {
    gf_holdClock(options.utc);
    gf_seedRandom(kSeed);
    gf_openLog();
    gf_startSandbox(options.scenario, options.trace);
    gf_loadAtStart();
    if (options.everyTypeHasALivery) lf_writeGenericLiveries();
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

SimulatedRun::~SimulatedRun() {
    gf_endSimClient();
    gf_stopSandbox();
    if (restarts) {
        gf_resetRun();
    } else {
        resetProgram();
        gf_useUserFolders({}, {});
    }
    gf_closeLog();
    gf_releaseClock();
}

void SimulatedRun::feed(std::vector<TimedLine> timedLines) {
    lines = std::move(timedLines);
    nextLine = 0;
    if (!lines.empty()) feedShift = gf_utcSeconds() - lines.front().time;
}

void SimulatedRun::line(const std::string& text) {
    UdpReader& reader = isWeatherLine(text) ? static_cast<UdpReader&>(gQnhReader) : gTrafficReader;
    const u64 accepted = gFeedCounters.accepted;
    reader.text = text;
    reader.handleText();
    reader.text = {};
    if (onReport && gFeedCounters.accepted != accepted && !gReports.empty()) onReport(gReports.back());
}

void SimulatedRun::cycle() {
    gf_turnClock(kCycleUs);
    gf_pumpSimClient();
    const f64 now = gf_utcSeconds();
    while (nextLine < lines.size() && lines[nextLine].time + feedShift <= now) line(lines[nextLine++].line);
    gf_tick();
}

bool SimulatedRun::run(f64 duration) {
    const auto cycles = static_cast<i64>(duration * 100.0 + 0.5);
    for (i64 i = 0; i < cycles; ++i) {
        cycle();
        if (gf_stopAsked()) return false;
    }
    return true;
}

f64 SimulatedRun::seconds() const {
    return gf_utcSeconds() - startUtc;
}

void useParkAirport(const AirportEntry& airport) {
    gParkAirport = airport;
    gTrafficReader.parkAirportLat = airport.lat;
    gTrafficReader.parkAirportLon = airport.lon;
    gTrafficReader.parkAirportAlt = airport.alt;
    gTrafficReader.parkAirportAltValid = true;
}

}  // namespace hcr
