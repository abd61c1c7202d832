#include <fmt/format.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <exception>
#include <thread>

#include "platform/clock.h"
#include "platform/sockets.h"
#include "platform/system.h"
#include "shell/text.h"
#include "tools/feed/control_client.h"
#include "tools/feed/options.h"
#include "tools/feed/recording.h"
#include "tools/feed/traffic.h"

namespace {

using namespace hcr;

std::atomic<bool> gStopFeed{false};

constexpr int kFailed = 1, kUsage = 2;

void lf_printAircraft(const FeedPlan& plan) {
    fmt::print("{:10} {:>8} {:8} {:4} {:7} {:7} {:>7} {:>7} {:>7}\n", "kind", "hexid", "callsign", "type", "reg.",
               "route", "from s", "to s", "runway");
    const f64 start = plan.lines.empty() ? 0 : plan.lines.front().time;
    for (const GeneratedAircraft& a : plan.aircraft) {
        if (a.reports == 0) continue;
        fmt::print("{:10} {:>8} {:8} {:4} {:7} {:7} {:>7.0f} {:>7.0f} {:>7}\n", feedKindName(a.kind), a.hexid,
                   a.callsign, a.type, a.registration, a.from.empty() ? "" : a.from + "-" + a.to, a.firstReport - start,
                   a.lastReport - start, a.runwayTime == 0 ? "" : fmt::format("{:.0f}", a.runwayTime - start));
    }
}

std::vector<TimedLine> lf_withWeather(const FeedPlan& plan) {
    std::vector<TimedLine> lines;
    std::merge(plan.lines.begin(), plan.lines.end(), plan.weather.begin(), plan.weather.end(),
               std::back_inserter(lines), [](const TimedLine& a, const TimedLine& b) { return a.time < b.time; });
    return lines;
}

void lf_send(const FeedOptions& options, const std::vector<TimedLine>& lines) {
    ControlClient client{.host = options.controlHost, .port = options.controlPort, .version = options.version};
    std::thread control;
    if (options.control) control = std::thread([&client] { runControlClient(client, gStopFeed); });
    std::exception_ptr failure;
    try {
        sendLines(options, lines, gStopFeed);
    } catch (...) {
        failure = std::current_exception();
    }
    gStopFeed = true;
    if (control.joinable()) control.join();
    if (failure) std::rethrow_exception(failure);
}

void lf_generate(FeedOptions& options) {
    options.generate.start = gf_utcSeconds();
    const FeedPlan plan = generatePlan(options.generate);
    if (options.list) lf_printAircraft(plan);
    const std::vector<TimedLine> lines = lf_withWeather(plan);
    if (options.out.empty()) return lf_send(options, lines);
    writeRecordingFile(options.out, recordingText(lines));
    fmt::print("{} lines of {} aircraft in {}\n", plan.lines.size(), plan.aircraft.size(), gf_shownPath(options.out));
}

void lf_run(FeedOptions& options) {
    switch (options.command) {
        case FeedCommand::play:
            return lf_send(options, parseRecording(readRecordingFile(options.file)));
        case FeedCommand::generate:
            return lf_generate(options);
        case FeedCommand::record:
            return recordLines(options, gStopFeed);
    }
}

}  // namespace

int main(int argc, char** argv) {
    gf_prepareConsole();
    gf_onTerminate(gStopFeed);
    FeedOptions options;
    try {
        options = parseFeedOptions(gf_arguments(argc, argv));
    } catch (const std::exception& e) {
        fmt::print(stderr, "halcyrane-feed: {}\nhalcyrane-feed --help tells how it is used.\n", e.what());
        return kUsage;
    }
    if (!options.help.empty()) {
        fmt::print("{}", options.help);
        return 0;
    }
    try {
        if (gf_startSockets() != 0) throw std::runtime_error("the socket library doesn't start");
        lf_run(options);
        gf_endSockets();
    } catch (const std::exception& e) {
        fmt::print(stderr, "halcyrane-feed: {}\n", e.what());
        return kFailed;
    }
    return 0;
}
