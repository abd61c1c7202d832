#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "core/model/geo.h"
#include "tools/feed/generator.h"

namespace hcr {

/// One point of a track: seconds on its own clock, degrees, feet.
struct TrackPoint {
    f64 seconds = 0, lat = 0, lon = 0, alt = 0;
};
using Track = std::vector<TrackPoint>;
/// By callsign.
using Tracks = std::map<std::string, Track>;

/// The once-a-second states of a trace of the built-in simulator. A line that can't be read is passed over. Throws
/// std::runtime_error when the file can't be opened.
Tracks readFlownTracks(const std::filesystem::path& trace);
/// The reports of a recording, seconds counted from its first line; those behind `seconds` are left out (0 = none).
Tracks readReportedTracks(const std::filesystem::path& recording, f64 seconds);

/// The same from lines that are there already.
Tracks reportedTracks(const std::vector<TimedLine>& lines, f64 seconds);
/// The middle of the reported positions, by the median of each coordinate. Throws std::runtime_error without any.
LatLon middleOfTraffic(const std::vector<TimedLine>& lines);

/// How far the flown points lie off the reported lines, metres. Aircraft fly on when their reports have ended; what
/// lies beyond a track's last point isn't compared.
struct Deviation {
    std::size_t points = 0;
    f64 median = 0, p99 = 0, worst = 0;
    std::string worstName;
};
Deviation measureDeviation(const Tracks& flown, const Tracks& reported);

/// A picture of both, reported below flown.
std::string drawTracks(const Tracks& flown, const Tracks& reported);

}  // namespace hcr
