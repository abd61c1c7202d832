#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace hcr {

/// What a trace of the built-in simulator tells of one aircraft, times, places and object numbers aside.
struct AircraftStory {
    /// Its calls and announcements in their order: "create Boeing 737-800 - KLM", "ObjectAdded", "GEAR_SET 1", ...
    /// Not among them are the data requests and the flight plan, which come from another thread of the program, so that
    /// their order against the rest is chance.
    std::vector<std::string> steps;
    std::size_t plans = 0;  ///< flight plans that were handed over
    std::string state;      ///< the last one: lights, gear, flaps and so on
};
/// By tail number.
using AircraftStories = std::map<std::string, AircraftStory>;

/// A line that can't be read is passed over. Throws std::runtime_error when the file can't be opened.
AircraftStories readStories(const std::filesystem::path& trace);

/// Where two sessions with the same traffic differ in kind, a line each; empty when they don't.
std::vector<std::string> compareStories(const AircraftStories& one, const AircraftStories& other);

}  // namespace hcr
