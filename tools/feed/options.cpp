#include "tools/feed/options.h"

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <stdexcept>

#include "feed/udp_reader.h"
#include "shell/options.h"
#include "shell/text.h"

namespace hcr {
namespace {

constexpr f64 kHighestPort = 65535;
constexpr f64 kLongestPlanMinutes = 24 * 60;
constexpr f64 kHighestSpeed = 1000;
constexpr f64 kLongestRunSeconds = 1e7;
constexpr f64 kHighestSeed = 2147483647;
constexpr f64 kShortestRunwayFt = 4000, kLongestRunwayFt = 20000;

FeedRunway lf_runway(const std::string& text) {
    const std::string name = "--runway";
    const std::vector<std::string_view> parts = gf_splitCommas(text);
    if (parts.size() != 4) throw std::runtime_error(name + " takes LAT,LON,HEADING,LENGTH");
    return {gf_boundedNumber(name, parts[0], {-85, 85}), gf_boundedNumber(name, parts[1], {-180, 180}),
            gf_boundedNumber(name, parts[2], {0, 360}),
            gf_boundedNumber(name, parts[3], {kShortestRunwayFt, kLongestRunwayFt})};
}

void lf_addHost(CLI::App& app, const std::string& name, const std::string& about, std::string& host) {
    gf_addText(app, name, "ADDRESS", about,
               [&host](const std::string& text) { host = text == "localhost" ? "127.0.0.1" : text; });
}

void lf_addPort(CLI::App& app, const std::string& name, const std::string& about, u16& port) {
    gf_addNumber(app, name, "N", about, 1, kHighestPort, port);
}

void lf_addCommonOptions(CLI::App& app, FeedOptions& o) {
    lf_addHost(app, "--host", "IPv4 address to send to (127.0.0.1)", o.host);
    lf_addPort(app, "--traffic-port", "UDP port of the traffic (49005)", o.trafficPort);
    lf_addPort(app, "--weather-port", "UDP port of the weather (49004)", o.weatherPort);
    lf_addHost(app, "--control-host", "where the program's control channel listens (as --host)", o.controlHost);
    lf_addPort(app, "--control-port", "its TCP port (10747)", o.controlPort);
    app.add_flag_callback(
        "--no-control", [&o] { o.control = false; }, "don't connect to it");
    app.add_option("--version", o.version, "version that is told when it is asked for (10.0.240)");
    gf_addNumber(app, "--seconds", "N", "end after N seconds", 0, kLongestRunSeconds, o.seconds);
    gf_addNumber(app, "--speed", "X", "X times as fast", 0.01, kHighestSpeed, o.speed);
}

void lf_addPlay(CLI::App& play, FeedOptions& o) {
    gf_addPath(play, "FILE", "", "the recording; of one that ends in .gz the text is compressed", o.file)->required();
    play.add_flag("--loop", o.loop, "begin again at the end");
    play.add_flag("--keep-timestamps", o.keepTimestamps, "send the recorded timestamps instead of moving them to now");
    gf_addNumber(play, "--qnh", "N", "pressure to send when the recording has no weather (1013)", 850, 1100, o.qnh);
}

void lf_addTraffic(CLI::App& generate, GenerateOptions& g) {
    gf_addNumber(generate, "--aircraft", "N", "number of aircraft (120)", 0, kMostFeedAircraft, g.aircraft);
    gf_addNumber(generate, "--arrivals", "N", "how many of them land", 0, kMostFeedAircraft, g.arrivals);
    gf_addNumber(generate, "--departures", "N", "how many of them take off", 0, kMostFeedAircraft, g.departures);
    gf_addNumber(generate, "--minutes", "N", "length (60)", 0, kLongestPlanMinutes, g.minutes);
    gf_addNumber(generate, "--range", "NM", "how far out traffic begins and ends (60)", 20, 250, g.rangeNm);
    gf_addNumber(generate, "--seed", "N", "another number, other traffic (1)", 0, kHighestSeed, g.seed);
}

void lf_addPlace(CLI::App& generate, GenerateOptions& g) {
    gf_addNumber(generate, "--lat", "N", "the place (52.3086)", -85, 85, g.lat);
    gf_addNumber(generate, "--lon", "N", "the place (4.7639)", -180, 180, g.lon);
    gf_addNumber(generate, "--elevation", "FEET", "its elevation (-11)", -1500, 15000, g.elevationFt);
    generate.add_option("--iata", g.airport, "its code (AMS)")->type_name("CODE");
    gf_addText(generate, "--runway", "LAT,LON,HEADING,LENGTH", "threshold, degrees true and feet of the runway in use",
               [&g](const std::string& text) { g.runway = {lf_runway(text)}; });
}

void lf_addGenerate(CLI::App& generate, FeedOptions& o) {
    gf_addPath(generate, "--out", "FILE", "write a recording instead of sending", o.out);
    generate.add_flag("--list", o.list, "print the aircraft");
    lf_addPlace(generate, o.generate);
    lf_addTraffic(generate, o.generate);
}

CLI::App& lf_addCommand(CLI::App& app, FeedOptions& o, FeedCommand command, const std::string& name,
                        const std::string& about) {
    CLI::App* const added = app.add_subcommand(name, about);
    added->parse_complete_callback([&o, command] { o.command = command; });
    return *added;
}

}  // namespace

FeedOptions parseFeedOptions(const std::vector<std::string>& arguments) {
    FeedOptions o;
    o.trafficPort = kTrafficPort;
    o.weatherPort = kWeatherPort;
    CLI::App app("Stands in for RealTraffic.", "halcyrane-feed");
    gf_prepareOptions(app);
    app.require_subcommand(1);
    CLI::App& play = lf_addCommand(app, o, FeedCommand::play, "play",
                                   "Sends a recording: lines of the feed as they came, or with the receive time\n"
                                   "(Unix seconds) and a tab in front.");
    CLI::App& generate =
        lf_addCommand(app, o, FeedCommand::generate, "generate", "Makes up traffic around a place and sends it.");
    CLI::App& record =
        lf_addCommand(app, o, FeedCommand::record, "record", "Writes what arrives into a file that play takes.");
    lf_addPlay(play, o);
    lf_addGenerate(generate, o);
    gf_addPath(record, "FILE", "", "the recording to be made; in .gz it is compressed", o.file)->required();
    for (CLI::App* command : {&play, &generate, &record}) lf_addCommonOptions(*command, o);
    o.help = gf_parseOptions(app, arguments);
    if (o.controlHost.empty()) o.controlHost = o.host;
    return o;
}

}  // namespace hcr
