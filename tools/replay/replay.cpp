#include "tools/replay/replay.h"

#include <fmt/format.h>

#include <algorithm>
#include <stdexcept>

#include "platform/clock_source.h"
#include "shell/text.h"
#include "shell/text_files.h"
#include "tools/feed/recording.h"
#include "tools/replay/command_log.h"
#include "tools/replay/flight_log.h"
#include "tools/replay/measure_text.h"
#include "tools/replay/work_folder.h"
#include "tools/tracks/tracks.h"

namespace hcr {
namespace {

constexpr f64 kAfterwards = 110;  // seconds: the delay, the longest extension, and some
constexpr i32 kFrameRate = 10;    // enough for a track, and most of the time goes into frames

std::vector<TimedLine> lf_readLines(const ReplayOptions& options) {
    std::vector<TimedLine> lines = parseRecording(readRecordingFile(options.feed));
    if (lines.empty()) throw std::runtime_error(fmt::format("{} holds no lines", gf_shownPath(options.feed)));
    if (options.minutes > 0) {
        const f64 end = lines.front().time + options.minutes * 60;
        std::erase_if(lines, [end](const TimedLine& line) { return line.time > end; });
    }
    return lines;
}

Scenario lf_scenario(const LatLon& user, f64 groundFt) {
    Scenario scenario = gf_defaultScenario();
    scenario.user.resize(1);
    scenario.user.front().lat = user.lat;
    scenario.user.front().lon = user.lon;
    scenario.elevation = groundFt;
    scenario.frameRate = kFrameRate;
    return scenario;
}

void lf_draw(const FlightLog& log, const std::filesystem::path& path) {
    Tracks flown, reported;
    for (const FlightRecord& flight : log.flights) {
        if (flight.flown.empty()) continue;
        const std::string& name = flight.callsign.empty() ? flight.registration : flight.callsign;
        for (const FlownPoint& p : flight.flown) flown[name].push_back({p.at, p.lat, p.lon, p.alt});
        for (const ReportedPoint& p : flight.reports) reported[name].push_back({p.at, p.lat, p.lon, p.alt});
    }
    if (!gf_writeTextFile(drawTracks(flown, reported), path, false)) {
        throw std::runtime_error(fmt::format("{} can't be written", gf_shownPath(path)));
    }
}

}  // namespace

int replay(const ReplayOptions& options) {
    // The paths are the caller's, and the working folder changes.
    const std::vector<TimedLine> lines = lf_readLines(options);
    const AirportEntry airport = options.airport.empty() ? AirportEntry{} : readReplayAirport(options.airport);
    const LatLon user = options.user ? *options.user : middleOfTraffic(lines);
    const std::filesystem::path picture = options.picture.empty() ? "" : std::filesystem::absolute(options.picture);
    SimulatedRunOptions setup;
    setup.scenario = lf_scenario(user, airport.alt);
    setup.trace = options.trace.empty() ? "" : std::filesystem::absolute(options.trace);
    setup.rangeNm = options.rangeNm;
    setup.utc = lines.front().time;

    const ReplayFolder folder(options.work);
    setup.everyTypeHasALivery = !folder.hasLiveries;
    SimulatedRun run(setup);
    if (!airport.code.empty()) useParkAirport(airport);
    FlightLog log(run);
    const CommandLog commands;
    const i64 begin = gf_systemSteadyUs();  // of the wall; the run's own clock is turned by hand
    const f64 duration = lines.back().time - lines.front().time;
    run.feed(lines);
    const bool whole = run.run(duration + kAfterwards);
    const f64 took = static_cast<f64>(gf_systemSteadyUs() - begin) / 1e6;
    if (!picture.empty()) lf_draw(log, picture);
    if (options.measure) fmt::print("{}\n", measureText(log));
    const auto shown =
        std::count_if(log.flights.begin(), log.flights.end(), [](const FlightRecord& f) { return !f.flown.empty(); });
    fmt::print(
        "{:.1f} minutes of the feed flown in {:.1f} s, {:.0f} times as fast; user at {:.4f},{:.4f}, {} lines, {} "
        "aircraft in range, {} of them flew\n",
        duration / 60, took, (duration + kAfterwards) / took, user.lat, user.lon, lines.size(), log.flights.size(),
        shown);
    fmt::print("{} creations, {} removals, {} events, {} positions; fingerprint {:016x}\n", commands.creations,
               commands.removals, commands.events, commands.writes, commands.hash);
    if (!whole) fmt::print("the program stopped by itself after {:.0f} s\n", run.seconds());
    return whole ? 0 : 1;
}

}  // namespace hcr
