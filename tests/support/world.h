#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "core/model/aircraft.h"
#include "core/run/reset.h"
#include "tests/support/temp_folder.h"
#include "tools/replay/simulated_run.h"

namespace hcr::test {

/// How often `piece` stands in `text`.
std::size_t countOf(const std::string& text, const std::string& piece);

struct WorldOptions {
    Scenario scenario;             ///< by default a user parked at Amsterdam
    std::filesystem::path trace;   ///< trace file of the sandbox, none by default
    i32 rangeNm = 40;              ///< fixed; AUTO_RANGE is off
    bool realTrafficHere = false;  ///< RealTraffic.jar exists, so that the control channel is used
    f64 utc = 1700000000;          ///< time of day at the start, Unix seconds
};

/// The working folder that a run needs: data sets of the demo, its liveries, parameters, docs.
void makeWorkFolder(const WorldOptions& options);
using hcr::resetProgram;

/// The folder of a world, which is the working folder before the run begins and until it has ended.
struct WorldFolder {
    explicit WorldFolder(WorldOptions worldOptions);

    WorldOptions options;
    TempFolder folder;
};

/// The whole program in simulated time, in a folder of its own with the demo's data.
struct World : WorldFolder, SimulatedRun {
    explicit World(WorldOptions worldOptions = {});

    std::string log() const;
};

/// A line of today's feed with the fields that matter, the rest "no value".
struct FeedLine {
    u32 hexid = 4740000;
    f64 lat = 52.0, lon = 4.0, alt = 10000, vs = 0, track = 90, speed = 250;
    std::string callsign = "KLM123", model = "B738", registration = "PH-BXA", from = "AMS", to = "LHR";
    f64 timestamp = 1700000000;
    f64 tas = 250;
    f64 roll = -1;  ///< degrees, to the right; -1 for none
    std::string text() const;
};

}  // namespace hcr::test
