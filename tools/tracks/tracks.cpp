#include "tools/tracks/tracks.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <limits>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "core/model/geo.h"
#include "shell/text.h"
#include "tools/feed/recording.h"

namespace hcr {
namespace {

constexpr std::size_t kFewestFields = 29;
constexpr std::size_t kLat = 2, kLon = 3, kAlt = 4, kCallsign = 9, kRegistration = 11;
constexpr f64 kMetresPerDegree = 60.0 * kMetresPerNm;

f64 lf_number(std::string_view text) {
    char* end = nullptr;
    const std::string copy(text);
    const f64 value = std::strtod(copy.c_str(), &end);
    return end == copy.c_str() || !std::isfinite(value) ? 0 : value;
}

f64 lf_median(std::vector<f64>& values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

struct Offset {
    f64 metres = std::numeric_limits<f64>::infinity();
    bool isPast = false;  ///< it lies beyond the line's end
};

/// From a point to the straight line between two others, in the plane around the point.
Offset lf_offset(const TrackPoint& p, const TrackPoint& a, const TrackPoint& b) {
    const f64 east = std::cos(p.lat * kDegToRad) * kMetresPerDegree;
    const f64 ax = (a.lon - p.lon) * east, ay = (a.lat - p.lat) * kMetresPerDegree;
    const f64 bx = (b.lon - p.lon) * east, by = (b.lat - p.lat) * kMetresPerDegree;
    const f64 dx = bx - ax, dy = by - ay;
    const f64 length = dx * dx + dy * dy;
    const f64 place = length == 0 ? 0 : -(ax * dx + ay * dy) / length;
    const f64 along = std::clamp(place, 0.0, 1.0);
    return {std::hypot(ax + along * dx, ay + along * dy), place > 1};
}

/// To the nearest of a track's lines; past is what lies beyond the last one only.
Offset lf_offset(const TrackPoint& p, const Track& track) {
    Offset best;
    for (std::size_t i = 1; i < track.size(); ++i) {
        Offset line = lf_offset(p, track[i - 1], track[i]);
        line.isPast = line.isPast && i + 1 == track.size();
        if (line.metres < best.metres) best = line;
    }
    return best;
}

}  // namespace

Tracks readFlownTracks(const std::filesystem::path& trace) {
    std::ifstream file(trace);
    if (!file) throw std::runtime_error(fmt::format("{} can't be opened", gf_pathToUtf8(trace)));
    Tracks tracks;
    for (std::string line; std::getline(file, line);) {
        if (line.find("\"tail\"") == std::string::npos || line.find("\"call\"") != std::string::npos) continue;
        const nlohmann::json state = nlohmann::json::parse(line, nullptr, false);
        if (!state.is_object() || !state.contains("object") || !state.contains("frozen")) continue;
        if (!state["frozen"].is_number() || state["frozen"].get<int>() == 0) continue;  // not yet ours
        tracks[state.value("tail", "")].push_back(
            {state.value("t", 0.0), state.value("lat", 0.0), state.value("lon", 0.0), state.value("alt", 0.0)});
    }
    return tracks;
}

Tracks readReportedTracks(const std::filesystem::path& recording, f64 seconds) {
    return reportedTracks(parseRecording(readRecordingFile(recording)), seconds);
}

LatLon middleOfTraffic(const std::vector<TimedLine>& lines) {
    std::vector<f64> lats, lons;
    for (const auto& [name, track] : reportedTracks(lines, 0)) {
        for (const TrackPoint& p : track) {
            lats.push_back(p.lat);
            lons.push_back(p.lon);
        }
    }
    if (lats.empty()) throw std::runtime_error("the recording holds no positions");
    return {lf_median(lats), lf_median(lons)};
}

Tracks reportedTracks(const std::vector<TimedLine>& lines, f64 seconds) {
    Tracks tracks;
    for (const TimedLine& line : lines) {
        const f64 at = line.time - lines.front().time;
        if (seconds > 0 && at > seconds) break;
        const std::vector<std::string_view> fields = gf_splitCommas(line.line);
        if (fields.size() < kFewestFields) continue;
        const std::string_view callsign = fields[kCallsign];
        const bool named = !callsign.empty() && callsign != "null" && callsign.find('@') == std::string_view::npos;
        const std::string name(named ? callsign : fields[kRegistration]);
        const TrackPoint point{at, lf_number(fields[kLat]), lf_number(fields[kLon]), lf_number(fields[kAlt])};
        if (!name.empty() && positionKnown(point.lat, point.lon)) tracks[name].push_back(point);
    }
    return tracks;
}

Deviation measureDeviation(const Tracks& flown, const Tracks& reported) {
    Deviation result;
    std::vector<f64> metres;
    for (const auto& [name, track] : flown) {
        const auto told = reported.find(name);
        if (told == reported.end() || told->second.size() < 2) continue;
        for (const TrackPoint& point : track) {
            const Offset off = lf_offset(point, told->second);
            if (off.isPast) continue;
            if (off.metres > result.worst) result.worstName = name;
            result.worst = std::max(result.worst, off.metres);
            metres.push_back(off.metres);
        }
    }
    result.points = metres.size();
    if (metres.empty()) return result;
    std::sort(metres.begin(), metres.end());
    result.median = metres[metres.size() / 2];
    result.p99 = metres[metres.size() * 99 / 100];
    return result;
}

}  // namespace hcr
