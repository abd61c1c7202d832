#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "core/model/geo.h"
#include "parking/catalogue.h"

namespace hcr {

struct ReplayOptions {
    std::filesystem::path feed;
    std::string airport;         ///< a file, or LAT,LON,FT; empty: none
    std::optional<LatLon> user;  ///< none: in the middle of the traffic
    i32 rangeNm = 40;
    f64 minutes = 0;             ///< of the recording; 0: all
    std::filesystem::path work;  ///< folder with `input` and `output`; empty: found by replayData
    std::filesystem::path trace, picture;
    bool measure = false;
    std::string help;  ///< the help text when nothing else is wanted
};

/// Throws std::runtime_error with a text for the user.
ReplayOptions parseReplayOptions(const std::vector<std::string>& arguments);
/// The airport of --airport: elevation and place from "LAT,LON,FT", or from an airport file, where the middle of the
/// stands is taken for the place. Throws std::runtime_error with a text for the user.
AirportEntry readReplayAirport(const std::string& text);

}  // namespace hcr
