#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "core/model/aircraft.h"
#include "parking/catalogue.h"
#include "sim/port/sandbox/scenario.h"
#include "tools/feed/generator.h"

namespace hcr {

struct SimulatedRunOptions {
    Scenario scenario;                 ///< by default a user parked at Amsterdam
    std::filesystem::path trace;       ///< trace file of the sandbox, none by default
    i32 rangeNm = 40;                  ///< fixed, whatever the settings say
    f64 utc = 1700000000;              ///< time of day at the start, Unix seconds
    bool restarts = false;             ///< another run follows: what a restart keeps is kept at the end
    bool everyTypeHasALivery = false;  ///< makes LiveriesScanned.xml anew, with one generic livery a type
};

/// The whole program but for its threads and sockets: lines of the feed in, calls of the simulator out, in simulated
/// time. One cycle of the worker is 10 ms of the clock, which is held. It works in the working folder, which must hold
/// `docs`, `input` and the liveries, with the users' folders set elsewhere than the real user's, in a program as
/// resetProgram leaves it. One at a time, and no other thread of the program may run.
struct SimulatedRun {
    /// Loads and starts the flight. Throws what the load throws, std::runtime_error when no flight begins.
    explicit SimulatedRun(const SimulatedRunOptions& options);
    ~SimulatedRun();
    SimulatedRun(const SimulatedRun&) = delete;
    SimulatedRun& operator=(const SimulatedRun&) = delete;

    /// Plays these lines at their times, which are moved so that the first one comes now.
    void feed(std::vector<TimedLine> timedLines);
    /// Hands one datagram to its reader now, by what it is.
    void line(const std::string& text);
    /// One cycle of the worker, and of the simulator.
    void cycle();
    /// Cycles for so many seconds; false when the run was asked to stop meanwhile.
    bool run(f64 duration);
    /// Seconds since the first cycle.
    f64 seconds() const;

    /// Called for each report that the decoder lets through.
    std::function<void(const TrafficReport&)> onReport;
    bool restarts = false;
    f64 startUtc = 0;   ///< Unix seconds of the clock at the first cycle
    f64 feedShift = 0;  ///< clock minus the feed's own times
    std::vector<TimedLine> lines;
    std::size_t nextLine = 0;
};

/// Makes this the park airport, without stands: what the decoder and the engine know of it is its place and elevation.
void useParkAirport(const AirportEntry& airport);

}  // namespace hcr
