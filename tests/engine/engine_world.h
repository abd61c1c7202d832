#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "core/model/aircraft.h"
#include "core/model/geo.h"
#include "core/model/sim_requests.h"
#include "tests/shell/shell_world.h"

namespace hcr::test {

/// A flight that holds its course, speed and rate of climb on a great circle.
struct Flight {
    u32 hexid = 4740000;
    std::string callsign = "KLM1023";
    LatLon start{52.0, 4.0};
    f64 track = 90, speed = 300, alt = 12000, vs = 0;  ///< degrees, knots, feet, feet per minute
    std::string model = "A320", registration = "";

    /// The report `seconds` behind the start.
    TrafficReport at(f64 seconds) const;
};

/// What the simulator holds of one object, with every position that was written into it.
struct FakeObject {
    u32 hexid = 0;
    std::string callsign, title;
    PositionBlock created;
    std::vector<PositionBlock> writes;
    std::vector<i32> writeTicks;
    i32 goneAt = 0;  ///< simTick of its removal, 0 while it is there
};

/// The engine with its queues, and a simulator that answers at once over a flat ground. Time goes by in cycles.
struct EngineWorld : ShellWorld {
    void SetUp() override;
    void TearDown() override;

    /// One cycle of 10 ms, in the order of the worker. The invariants of the live table are checked behind it.
    void cycle();
    void cycles(i32 count);
    /// Runs cycles up to this time since the start of the test; true when `until` ended it before.
    bool runTo(f64 seconds, const std::function<bool()>& until = {});
    /// Reports the flight every `every` seconds while cycles run up to `seconds`.
    void fly(const Flight& flight, f64 seconds, f64 every = 2);
    void report(TrafficReport report);
    f64 now() const;

    /// The object last created for this name.
    FakeObject* object(const std::string& callsign);
    /// Makes an active record on this sample's place, with the object number `objectId`; for single operations.
    LiveAc& activeAc(const PosSample& s1, u32 objectId = 500);
    /// The events sent so far to the object, as "id=data".
    std::vector<std::string> eventsOf(u32 objectId) const;

    std::map<u32, FakeObject> objects;  ///< by object id
    std::vector<EventCommand> events;
    f64 ground = 0;  ///< feet
    i32 startTick = 0;

private:
    void simulate();
    void sendStatus();
    u32 nextObject = 100;
};

/// Puts the user's aircraft into the air over a place; heading north.
void placeUser(LatLon place, f64 alt = 0, f64 agl = 0);

/// A sample of a level flight; not stationary, airborne by its altitude.
PosSample sampleAt(LatLon place, f64 alt, f64 speed, i32 time);

}  // namespace hcr::test
