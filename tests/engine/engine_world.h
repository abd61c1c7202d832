#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <string>

#include "core/model/aircraft.h"
#include "core/model/geo.h"
#include "core/model/run_state.h"
#include "tests/support/flight_recorder.h"
#include "tests/support/world.h"

namespace hcr::test {

/// A flight that holds its course, speed and rate of climb on a great circle.
struct Flight {
    u32 hexid = 4740000;
    std::string callsign = "KLM1023";
    LatLon start{52.0, 4.0};
    f64 track = 90, speed = 300, alt = 12000, vs = 0;  ///< degrees, knots, feet, feet per minute
    std::string model = "B738", registration = "";

    /// What the feed tells of it `seconds` behind the start.
    FeedLine lineAt(f64 seconds) const;
    /// The same as the decoder makes it, to be played now.
    TrafficReport at(f64 seconds) const;
};

/// A sample of a level flight; not stationary, airborne by its altitude.
PosSample sampleAt(LatLon place, f64 alt, f64 speed, i32 time);

/// Puts the user's aircraft over a place until the simulator tells of it anew; for single operations.
void placeUser(LatLon place, f64 alt = 0, f64 agl = 0);

/// The whole program in simulated time, with a look into the engine's tables. Time goes by in cycles of the worker.
struct EngineWorld : testing::Test {
    EngineWorld() { begin(); }

    /// A fresh world, by default with a range of 100 nm and a user who stands at Amsterdam.
    void begin(std::optional<LatLon> user = {});
    /// The invariants of the live table are checked behind each cycle.
    void cycle();
    void cycles(i32 count);
    /// Runs cycles up to this time since the start of the world; true when `until` ended it before.
    bool runTo(f64 seconds, const std::function<bool()>& until = {});
    /// Reports the flight every `every` seconds while cycles run up to `seconds`.
    void fly(const Flight& flight, f64 seconds, f64 every = 2);
    f64 now() const { return simTick / 100.0; }
    bool logHas(const std::string& piece) const;

    /// What the simulator was told of this name; nothing when it never came.
    const FlownAircraft* flown(const std::string& callsign) const;
    /// An active record on this sample's place with an object number that the simulator doesn't know, for single
    /// operations.
    LiveAc& activeAc(const PosSample& s1, u32 objectId = 500);

    std::optional<World> world;
    std::optional<FlightRecorder> recorder;
};

}  // namespace hcr::test
