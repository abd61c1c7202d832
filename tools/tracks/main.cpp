#include <fmt/format.h>

#include <charconv>
#include <cstdio>
#include <exception>
#include <fstream>
#include <nlohmann/json.hpp>

#include "platform/system.h"
#include "shell/generations.h"
#include "shell/text.h"
#include "tools/feed/recording.h"
#include "tools/tracks/stories.h"
#include "tools/tracks/tracks.h"

namespace {

using namespace hcr;

constexpr const char* kUsage =
    "usage: halcyrane-tracks [--seconds N] TRACE RECORDING SVG\n"
    "         draws the tracks that the built-in simulator flew (its trace) over the reported ones (a recording,\n"
    "         its first N seconds), and tells how far they lie apart\n"
    "       halcyrane-tracks --scenario SCENARIO RECORDING\n"
    "         prints the scenario with the user put into the middle of the recording's traffic\n"
    "       halcyrane-tracks --compare TRACE TRACE\n"
    "         tells where two sessions with the same traffic differ in kind: in their aircraft, titles, the order of\n"
    "         calls for each, its last state; ends with 1 when they do\n";

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

f64 lf_seconds(const std::string& text) {
    f64 seconds = 0;
    const auto [end, fault] = std::from_chars(text.data(), text.data() + text.size(), seconds);
    const bool good = fault == std::errc{} && end == text.data() + text.size() && seconds >= 0;
    if (!good) throw std::runtime_error(fmt::format("--seconds: '{}' is no number of seconds", text));
    return seconds;
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

}  // namespace

int main(int argc, char** argv) {
    gf_prepareConsole();
    std::vector<std::string> arguments = gf_arguments(argc, argv);
    try {
        f64 seconds = 0;
        if (std::ranges::any_of(arguments, [](const std::string& a) { return a == "--help" || a == "-h"; })) {
            std::fputs(kUsage, stdout);
            return 0;
        }
        if (arguments.size() == 3 && arguments[0] == "--scenario") return lf_placeUser(arguments[1], arguments[2]);
        if (arguments.size() == 3 && arguments[0] == "--compare") return lf_compare(arguments[1], arguments[2]);
        if (arguments.size() == 5 && arguments[0] == "--seconds") {
            seconds = lf_seconds(arguments[1]);
            arguments.erase(arguments.begin(), arguments.begin() + 2);
        }
        if (arguments.size() == 3) return lf_draw(arguments[0], arguments[1], arguments[2], seconds);
        std::fputs(kUsage, stderr);
        return 2;
    } catch (const std::exception& e) {
        fmt::print(stderr, "halcyrane-tracks: {}\n", e.what());
        return 1;
    }
}
