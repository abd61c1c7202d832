#include "tools/replay/options.h"

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <pugixml.hpp>
#include <stdexcept>

#include "shell/options.h"
#include "shell/text.h"

namespace hcr {
namespace {

constexpr f64 kWidestRangeNm = 250;
constexpr f64 kLongestMinutes = 24 * 60;
constexpr f64 kLowestFt = -1500, kHighestFt = 20000;

LatLon lf_place(std::string_view name, const std::vector<std::string_view>& parts) {
    return {gf_boundedNumber(name, parts[0], {-90, 90}), gf_boundedNumber(name, parts[1], {-180, 180})};
}

LatLon lf_user(const std::string& text) {
    const std::vector<std::string_view> parts = gf_splitCommas(text);
    if (parts.size() != 2) throw std::runtime_error(fmt::format("--user takes LAT,LON, not '{}'", text));
    return lf_place("--user", parts);
}

AirportEntry lf_readAirportFile(const std::string& name) {
    const std::filesystem::path path = gf_pathFromUtf8(name);
    pugi::xml_document document;
    const pugi::xml_parse_result result = document.load_file(path.c_str());
    if (!result) throw std::runtime_error(fmt::format("{} is no airport file: {}", name, result.description()));
    const pugi::xml_node root = document.child("root") ? document.child("root") : document;
    AirportEntry airport;
    airport.code = gf_pathToUtf8(path.stem());
    const pugi::xml_node altitude = root.child("parameters").find_child_by_attribute("parameter", "name", "altitude");
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

ReplayOptions parseReplayOptions(const std::vector<std::string>& arguments) {
    ReplayOptions options;
    CLI::App app(
        "Flies a recording of RealTraffic's datagrams through the whole program, with the built-in simulator, on a "
        "clock\n"
        "that is turned by hand: as fast as the machine can, and the same to the last bit each time.",
        "halcyrane-replay");
    gf_prepareOptions(app);
    gf_addPath(app, "FEED", "", "the recording", options.feed)->required();
    app.add_option("--airport", options.airport,
                   "the park airport: an airport file, or its place and elevation;\nnone by default")
        ->type_name("FILE|LAT,LON,FT");
    gf_addText(app, "--user", "LAT,LON", "where the user's aircraft stands; by default in the middle of the\ntraffic",
               [&options](const std::string& text) { options.user = lf_user(text); });
    gf_addNumber(app, "--range", "NM", "how far around the user traffic is shown (40)", 1, kWidestRangeNm,
                 options.rangeNm);
    gf_addNumber(app, "--minutes", "N", "only the first N minutes of the recording", 0, kLongestMinutes,
                 options.minutes);
    gf_addPath(app, "--work", "DIR",
               "a folder of the program, with `input` and `output`; by default\nthe working folder or the program's "
               "own. Without scanned liveries\neach type flies in a made-up one",
               options.work);
    gf_addPath(app, "--trace", "OUT", "writes all that the simulator was told, one JSON object a line", options.trace);
    app.add_flag("--measure", options.measure,
                 "tells how far what was flown lies from the reports, for each\naircraft and in all");
    gf_addPath(app, "--picture", "OUT", "draws the flown tracks over the reported ones, as SVG", options.picture);
    options.help = gf_parseOptions(app, arguments);
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
    airport.alt = gf_boundedNumber("--airport", parts[2], {kLowestFt, kHighestFt});
    return airport;
}

}  // namespace hcr
