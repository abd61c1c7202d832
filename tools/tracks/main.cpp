#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>
#include <fstream>
#include <nlohmann/json.hpp>

#include "platform/system.h"
#include "shell/generations.h"
#include "shell/options.h"
#include "shell/text.h"
#include "tools/feed/recording.h"
#include "tools/tracks/stories.h"
#include "tools/tracks/tracks.h"

namespace {

using namespace hcr;

constexpr int kFailed = 1, kUsage = 2;
constexpr f64 kLongestSeconds = 1e9;

constexpr const char* kAbout =
    "TRACE RECORDING SVG\n"
    "  draws the tracks that the built-in simulator flew (its trace) over the reported ones (a recording),\n"
    "  and tells how far they lie apart\n"
    "--scenario SCENARIO RECORDING\n"
    "  prints the scenario with the user put into the middle of the recording's traffic\n"
    "--compare TRACE TRACE\n"
    "  tells where two sessions with the same traffic differ in kind: in their aircraft, titles, the order of\n"
    "  calls for each, its last state; ends with 1 when they do\n";

struct TracksOptions {
    bool scenario = false, compare = false;
    f64 seconds = 0;  ///< of the recording; 0: all
    std::vector<std::string> files;
    std::string help;
};

int lf_draw(const std::string& trace, const std::string& recording, const std::string& svg, f64 seconds) {
    const Tracks flown = readFlownTracks(gf_pathFromUtf8(trace));
    const Tracks reported = readReportedTracks(gf_pathFromUtf8(recording), seconds);
    std::error_code error;
    if (!gf_writeInPlace(gf_pathFromUtf8(svg), drawTracks(flown, reported), error)) {
        throw std::runtime_error(fmt::format("{} can't be written: {}", svg, gf_writeFaultText(error)));
    }
    const Deviation off = measureDeviation(flown, reported);
    fmt::print(
        "   {} aircraft flown, {} positions compared with the reports: median {:.1f} m off the reported line, "
        "99 % within {:.1f} m, worst {:.1f} m ({})\n",
        flown.size(), off.points, off.median, off.p99, off.worst, off.worstName);
    return 0;
}

int lf_placeUser(const std::string& scenario, const std::string& recording) {
    std::ifstream file(gf_pathFromUtf8(scenario));
    nlohmann::json json = nlohmann::json::parse(file);
    const LatLon user = middleOfTraffic(parseRecording(readRecordingFile(gf_pathFromUtf8(recording))));
    json["user"] = nlohmann::json::array({{{"at", 0},
                                           {"lat", user.lat},
                                           {"lon", user.lon},
                                           {"alt", json.value("elevation", 0.0)},
                                           {"heading", 0},
                                           {"groundSpeed", 0},
                                           {"onGround", true}}});
    fmt::print("{}\n", json.dump(2));
    return 0;
}

int lf_compare(const std::string& one, const std::string& other) {
    const SessionStory session = readStories(gf_pathFromUtf8(one));
    const std::vector<std::string> differences = compareStories(session, readStories(gf_pathFromUtf8(other)));
    for (const std::string& difference : differences) fmt::print("{}\n", difference);
    std::size_t steps = 0;
    for (const auto& [tail, story] : session.aircraft) steps += story.steps.size();
    fmt::print("{} aircraft with {} steps compared, {} differences\n", session.aircraft.size(), steps,
               differences.size());
    return differences.empty() && steps > 0 ? 0 : 1;
}

TracksOptions lf_parse(const std::vector<std::string>& arguments) {
    TracksOptions options;
    CLI::App app(kAbout, "halcyrane-tracks");
    gf_prepareOptions(app);
    CLI::Option* const compare = app.add_flag("--compare", options.compare, "compare two traces");
    app.add_flag("--scenario", options.scenario, "put the user into a scenario")->excludes(compare);
    gf_addNumber(app, "--seconds", "N", "only the first N seconds of the recording", 0, kLongestSeconds,
                 options.seconds);
    app.add_option("FILES", options.files, "as above");
    options.help = gf_parseOptions(app, arguments);
    const std::size_t needed = options.scenario || options.compare ? 2 : 3;
    if (options.help.empty() && options.files.size() != needed) {
        throw std::runtime_error(fmt::format("{} files are needed, not {}", needed, options.files.size()));
    }
    return options;
}

int lf_run(const TracksOptions& options) {
    const std::vector<std::string>& files = options.files;
    if (options.scenario) return lf_placeUser(files[0], files[1]);
    if (options.compare) return lf_compare(files[0], files[1]);
    return lf_draw(files[0], files[1], files[2], options.seconds);
}

}  // namespace

int main(int argc, char** argv) {
    gf_prepareConsole();
    TracksOptions options;
    try {
        options = lf_parse(gf_arguments(argc, argv));
    } catch (const std::exception& e) {
        fmt::print(stderr, "halcyrane-tracks: {}\nhalcyrane-tracks --help tells how it is used.\n", e.what());
        return kUsage;
    }
    if (!options.help.empty()) {
        fmt::print("{}", options.help);
        return 0;
    }
    try {
        return lf_run(options);
    } catch (const std::exception& e) {
        fmt::print(stderr, "halcyrane-tracks: {}\n", e.what());
        return kFailed;
    }
}
