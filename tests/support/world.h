#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "core/model/aircraft.h"
#include "sim/port/sandbox/sandbox.h"
#include "tests/support/temp_folder.h"
#include "tools/feed/generator.h"

namespace hcr::test {

/// How often `piece` stands in `text`.
std::size_t countOf(const std::string& text, const std::string& piece);

struct WorldOptions {
    Scenario scenario;                 ///< by default a user parked at Amsterdam
    std::filesystem::path trace;       ///< trace file of the sandbox, none by default
    i32 rangeNm = 40;                  ///< fixed; AUTO_RANGE is off
    bool realTrafficHere = false;      ///< RealTraffic.jar exists, so that the control channel is used
    f64 utc = 1700000000;              ///< time of day at the start, Unix seconds
};

/// The working folder that a run needs: data sets of the demo, its liveries, parameters, docs.
void makeWorkFolder(const WorldOptions& options);
/// Every global of the program back to its start.
void resetProgram();

/// The whole program but for its threads and sockets: lines of the feed in, calls of the simulator out, in simulated
/// time. One cycle of the worker is 10 ms of the clock, which is held.
struct World {
    explicit World(WorldOptions worldOptions = {});
    ~World();
    World(const World&) = delete;
    World& operator=(const World&) = delete;

    /// Plays these lines at their times, which are moved so that the first one comes now.
    void feed(const std::vector<TimedLine>& timedLines);
    /// Hands one line to the decoder now.
    void line(const std::string& text);
    /// One cycle of the worker, and of the simulator.
    void cycle();
    /// Cycles for so many seconds; false when the run was asked to stop meanwhile.
    bool run(f64 duration);
    /// Seconds since the first cycle.
    f64 seconds() const;
    std::string log() const;

    WorldOptions options;
    f64 startUtc = 0;   ///< Unix seconds of the clock at the first cycle
    f64 feedShift = 0;  ///< clock minus the feed's own times

    TempFolder folder;
    std::vector<TimedLine> lines;
    std::size_t nextLine = 0;
};

/// A line of today's feed with the fields that matter, the rest "no value".
struct FeedLine {
    u32 hexid = 4740000;
    f64 lat = 52.0, lon = 4.0, alt = 10000, vs = 0, track = 90, speed = 250;
    std::string callsign = "KLM123", model = "B738", registration = "PH-BXA", from = "AMS", to = "LHR";
    f64 timestamp = 1700000000;
    f64 tas = 250;
    std::string text() const;
};

}  // namespace hcr::test
