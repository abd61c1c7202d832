#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "platform/types.h"

namespace hcr {

/// What a trace of the built-in simulator tells of one aircraft, times, places and object numbers aside.
struct AircraftStory {
    /// Its calls and announcements in their order: "create Boeing 737-800 - KLM", "ObjectAdded", "GEAR_SET 1", ...
    /// Not among them are the data requests and the flight plan, which come from another thread of the program, so that
    /// their order against the rest is chance.
    std::vector<std::string> steps;
    std::vector<f64> times;  ///< of the steps, seconds since the session opened
    std::size_t plans = 0;   ///< flight plans that were handed over
    std::string state;       ///< the last one: lights, gear, flaps and so on
};
struct SessionStory {
    std::map<std::string, AircraftStory> aircraft;  ///< by tail number
    f64 end = 0;                                    ///< time of the trace's last line
};

/// A line that can't be read is passed over. Throws std::runtime_error when the file can't be opened.
SessionStory readStories(const std::filesystem::path& trace);

/// Where two sessions with the same traffic differ in kind, a line each; empty when they don't. That one of them was
/// closed some seconds later, and so got further, is no difference.
std::vector<std::string> compareStories(const SessionStory& one, const SessionStory& other);

}  // namespace hcr
