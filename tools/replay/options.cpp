#include "tools/replay/options.h"

#include <fmt/format.h>

#include <charconv>
#include <cmath>
#include <pugixml.hpp>
#include <stdexcept>

#include "shell/text.h"

namespace hcr {
namespace {

constexpr i32 kWidestRangeNm = 250;
constexpr f64 kLongestMinutes = 24 * 60;
constexpr f64 kLowestFt = -1500, kHighestFt = 20000;

f64 lf_number(std::string_view name, std::string_view text, f64 low, f64 high) {
    f64 value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    const bool whole = error == std::errc() && end == text.data() + text.size();
    if (!whole || !std::isfinite(value) || value < low || value > high) {
        throw std::runtime_error(fmt::format("{} takes a number from {} to {}, not '{}'", name, low, high, text));
    }
    return value;
}

LatLon lf_place(std::string_view name, const std::vector<std::string_view>& parts) {
    return {lf_number(name, parts[0], -90, 90), lf_number(name, parts[1], -180, 180)};
}

LatLon lf_user(const std::string& text) {
    const std::vector<std::string_view> parts = gf_splitCommas(text);
    if (parts.size() != 2) throw std::runtime_error(fmt::format("--user takes LAT,LON, not '{}'", text));
    return lf_place("--user", parts);
}

void lf_takeValue(ReplayOptions& options, const std::string& name, const std::string& value) {
    if (name == "--airport") {
        options.airport = value;
    } else if (name == "--user") {
        options.user = lf_user(value);
    } else if (name == "--range") {
        options.rangeNm = static_cast<i32>(lf_number(name, value, 1, kWidestRangeNm));
    } else if (name == "--minutes") {
        options.minutes = lf_number(name, value, 0, kLongestMinutes);
    } else if (name == "--work") {
        options.work = gf_pathFromUtf8(value);
    } else if (name == "--trace") {
        options.trace = gf_pathFromUtf8(value);
    } else if (name == "--picture") {
        options.picture = gf_pathFromUtf8(value);
    } else {
        throw std::runtime_error(fmt::format("unknown option '{}'", name));
    }
}

AirportEntry lf_readAirportFile(const std::string& name) {
    const std::filesystem::path path = gf_pathFromUtf8(name);
    pugi::xml_document document;
    const pugi::xml_parse_result result = document.load_file(path.c_str());
    if (!result) throw std::runtime_error(fmt::format("{} is no airport file: {}", name, result.description()));
    const pugi::xml_node root = document.child("root") ? document.child("root") : document;
    AirportEntry airport;
    airport.code = gf_pathToUtf8(path.stem());
    const pugi::xml_node altitude =
        root.child("parameters").find_child_by_attribute("parameter", "name", "altitude");
    airport.alt = altitude.attribute("value").as_double();
    i32 stands = 0;
    for (const pugi::xml_node stand : root.child("parkpositions").children("parkpos")) {
        airport.lat += stand.attribute("latitude").as_double();
        airport.lon += stand.attribute("longitude").as_double();
        ++stands;
    }
    if (stands == 0 || !altitude) {
        throw std::runtime_error(fmt::format("{} holds no {}; --airport LAT,LON,FT does without a file", name,
                                             stands == 0 ? "stands" : "altitude"));
    }
    airport.lat /= stands;
    airport.lon /= stands;
    return airport;
}

}  // namespace

const char* const kReplayUsage =
    "usage: halcyrane-replay FEED [options]\n"
    "Flies a recording of RealTraffic's datagrams through the whole program, with the built-in simulator, on a clock\n"
    "that is turned by hand: as fast as the machine can, and the same to the last bit each time.\n"
    "  --airport FILE|LAT,LON,FT  the park airport: an airport file, or its place and elevation; none by default\n"
    "  --user LAT,LON             where the user's aircraft stands; by default in the middle of the traffic\n"
    "  --range NM                 how far around the user traffic is shown (40)\n"
    "  --minutes N                only the first N minutes of the recording\n"
    "  --work DIR                 a folder of the program, with `input` and `output`; by default the working folder or\n"
    "                             the program's own. Without scanned liveries each type flies in a made-up one\n"
    "  --trace OUT                writes all that the simulator was told, one JSON object a line\n"
    "  --measure                  tells how far what was flown lies from the reports, for each aircraft and in all\n"
    "  --picture OUT              draws the flown tracks over the reported ones, as SVG\n";

ReplayOptions parseReplayOptions(const std::vector<std::string>& arguments) {
    ReplayOptions options;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& name = arguments[i];
        if (name == "--help" || name == "-h") {
            options.help = true;
        } else if (name == "--measure") {
            options.measure = true;
        } else if (!name.starts_with("--")) {
            if (!options.feed.empty()) throw std::runtime_error(fmt::format("one recording only, not '{}' too", name));
            options.feed = gf_pathFromUtf8(name);
        } else if (++i < arguments.size()) {
            lf_takeValue(options, name, arguments[i]);
        } else {
            throw std::runtime_error(fmt::format("{} needs a value", name));
        }
    }
    if (options.feed.empty() && !options.help) throw std::runtime_error("which recording? See --help");
    return options;
}

AirportEntry readReplayAirport(const std::string& text) {
    const std::vector<std::string_view> parts = gf_splitCommas(text);
    std::error_code ignored;
    if (std::filesystem::is_regular_file(gf_pathFromUtf8(text), ignored)) return lf_readAirportFile(text);
    if (parts.size() != 3) {
        throw std::runtime_error(fmt::format("--airport takes a file or LAT,LON,FT; there is no file '{}'", text));
    }
    AirportEntry airport;
    airport.code = "HERE";
    const LatLon place = lf_place("--airport", parts);
    airport.lat = place.lat;
    airport.lon = place.lon;
    airport.alt = lf_number("--airport", parts[2], kLowestFt, kHighestFt);
    return airport;
}

}  // namespace hcr
