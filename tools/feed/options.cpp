#include "tools/feed/options.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <functional>
#include <map>
#include <stdexcept>

#include "feed/udp_reader.h"
#include "shell/text.h"

namespace hcr {
namespace {

constexpr f64 kLongestPlanMinutes = 24 * 60;
constexpr f64 kHighestSpeed = 1000;
constexpr f64 kLongestRunSeconds = 1e7;

f64 lf_number(const std::string& name, std::string_view text, f64 low, f64 high) {
    f64 value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    const bool whole = error == std::errc() && end == text.data() + text.size();
    if (!whole || !std::isfinite(value) || value < low || value > high) {
        throw std::runtime_error(fmt::format("{} takes a number from {} to {}, not '{}'", name, low, high, text));
    }
    return value;
}

i32 lf_integer(const std::string& name, const std::string& text, i32 low, i32 high) {
    return static_cast<i32>(std::lround(lf_number(name, text, low, high)));
}

u16 lf_port(const std::string& name, const std::string& text) {
    return static_cast<u16>(lf_integer(name, text, 1, 65535));
}

FeedRunway lf_runway(const std::string& name, const std::string& text) {
    const std::vector<std::string_view> parts = gf_splitCommas(text);
    if (parts.size() != 4) throw std::runtime_error(name + " takes LAT,LON,HEADING,LENGTH");
    constexpr f64 kShortestFt = 4000, kLongestFt = 20000;
    return {lf_number(name, parts[0], -85, 85), lf_number(name, parts[1], -180, 180), lf_number(name, parts[2], 0, 360),
            lf_number(name, parts[3], kShortestFt, kLongestFt)};
}

std::string lf_host(const std::string& text) {
    return text == "localhost" ? "127.0.0.1" : text;
}

using Setter = std::function<void(const std::string& name, const std::string& value)>;

std::map<std::string, Setter> lf_valueOptions(FeedOptions& o) {
    GenerateOptions& g = o.generate;
    const auto number = [](f64& target, f64 low, f64 high) -> Setter {
        return
            [&target, low, high](const std::string& n, const std::string& v) { target = lf_number(n, v, low, high); };
    };
    const auto count = [](i32& target, i32 high) -> Setter {
        return [&target, high](const std::string& n, const std::string& v) { target = lf_integer(n, v, 0, high); };
    };
    const auto port = [](u16& target) -> Setter {
        return [&target](const std::string& n, const std::string& v) { target = lf_port(n, v); };
    };
    const auto text = [](std::string& target) -> Setter {
        return [&target](const std::string&, const std::string& v) { target = v; };
    };
    return {
        {"--host", [&o](const std::string&, const std::string& v) { o.host = lf_host(v); }},
        {"--control-host", [&o](const std::string&, const std::string& v) { o.controlHost = lf_host(v); }},
        {"--traffic-port", port(o.trafficPort)},
        {"--weather-port", port(o.weatherPort)},
        {"--control-port", port(o.controlPort)},
        {"--version", text(o.version)},
        {"--seconds", number(o.seconds, 0, kLongestRunSeconds)},
        {"--speed", number(o.speed, 0.01, kHighestSpeed)},
        {"--qnh", [&o](const std::string& n, const std::string& v) { o.qnh = lf_integer(n, v, 850, 1100); }},
        {"--out", [&o](const std::string&, const std::string& v) { o.out = gf_pathFromUtf8(v); }},
        {"--lat", number(g.lat, -85, 85)},
        {"--lon", number(g.lon, -180, 180)},
        {"--elevation", number(g.elevationFt, -1500, 15000)},
        {"--iata", text(g.airport)},
        {"--minutes", number(g.minutes, 0, kLongestPlanMinutes)},
        {"--aircraft", count(g.aircraft, kMostFeedAircraft)},
        {"--arrivals", count(g.arrivals, kMostFeedAircraft)},
        {"--departures", count(g.departures, kMostFeedAircraft)},
        {"--range", number(g.rangeNm, 20, 250)},
        {"--seed", [&g](const std::string& n,
                        const std::string& v) { g.seed = static_cast<u32>(lf_integer(n, v, 0, 2147483647)); }},
        {"--runway", [&g](const std::string& n, const std::string& v) { g.runway = {lf_runway(n, v)}; }},
    };
}

FeedCommand lf_command(const std::string& text) {
    if (text == "play") return FeedCommand::play;
    if (text == "generate") return FeedCommand::generate;
    if (text == "record") return FeedCommand::record;
    throw std::runtime_error(fmt::format("'{}' is no command", text));
}

}  // namespace

FeedOptions parseFeedOptions(const std::vector<std::string>& arguments) {
    FeedOptions o;
    o.trafficPort = kTrafficPort;
    o.weatherPort = kWeatherPort;
    if (arguments.empty()) throw std::runtime_error("a command is missing");
    o.help = std::ranges::any_of(arguments, [](const std::string& a) { return a == "--help" || a == "-h"; });
    if (o.help) return o;
    o.command = lf_command(arguments.front());
    const std::map<std::string, Setter> valueOptions = lf_valueOptions(o);
    const std::map<std::string, bool*> flags = {
        {"--loop", &o.loop}, {"--keep-timestamps", &o.keepTimestamps}, {"--list", &o.list}};
    for (std::size_t i = 1; i < arguments.size(); ++i) {
        const std::string& name = arguments[i];
        if (const auto flag = flags.find(name); flag != flags.end()) {
            *flag->second = true;
        } else if (name == "--no-control") {
            o.control = false;
        } else if (const auto option = valueOptions.find(name); option != valueOptions.end()) {
            if (++i == arguments.size()) throw std::runtime_error(name + " needs a value");
            option->second(name, arguments[i]);
        } else if (name.starts_with("-") || o.command == FeedCommand::generate || !o.file.empty()) {
            throw std::runtime_error(fmt::format("'{}' isn't understood", name));
        } else {
            o.file = gf_pathFromUtf8(name);
        }
    }
    if (o.command != FeedCommand::generate && o.file.empty()) throw std::runtime_error("the file is missing");
    if (o.controlHost.empty()) o.controlHost = o.host;
    return o;
}

const char* feedUsage() {
    return R"(usage: halcyrane-feed play FILE [options]
       halcyrane-feed generate [options]
       halcyrane-feed record FILE [options]

play sends a recording: lines of the feed as they came, or with the receive time (Unix seconds) and a tab in front.
generate makes up traffic around a place and sends it. record writes what arrives into a file that play takes.
Files ending in .gz are compressed.

  --host ADDRESS          IPv4 address to send to (127.0.0.1)
  --traffic-port N        UDP port of the traffic (49005)
  --weather-port N        UDP port of the weather (49004)
  --control-host NAME     where the program's control channel listens (as --host)
  --control-port N        its TCP port (10747)
  --no-control            don't connect to it
  --version TEXT          version that is told when it is asked for (10.0.240)
  --seconds N             end after N seconds
  --speed X               X times as fast
play:
  --loop                  begin again at the end
  --keep-timestamps       send the recorded timestamps instead of moving them to now
  --qnh N                 pressure to send when the recording has no weather (1013)
generate:
  --out FILE              write a recording instead of sending
  --list                  print the aircraft
  --lat N --lon N         the place (52.3086, 4.7639)
  --elevation FEET        its elevation (-11)
  --iata CODE             its code (AMS)
  --runway LAT,LON,HEADING,LENGTH
                          threshold, degrees true and feet of the runway in use
  --minutes N             length (60)
  --aircraft N            number of aircraft (120)
  --arrivals N, --departures N
                          how many of them land or take off
  --range NM              how far out traffic begins and ends (60)
  --seed N                another number, other traffic (1)
)";
}

}  // namespace hcr
