#pragma once

#include <limits>
#include <string_view>
#include <vector>

#include "core/model/samples.h"
#include "core/model/slot.h"

namespace hcr {

/// Existence in the simulator. Values are logged by name; see lifeStateName.
enum class LifeState : i32 { buffer = 0, adding2sim = 1, active = 2, liveryrespawn = 3, removingfromsim = 4 };
/// What a live aircraft is doing.
enum class FlightState : i32 {
    pushing_back = 0,
    pushed_back = 1,
    taxi = 2,
    take_off = 3,
    flying = 4,
    parking = 5,
    parked = 6,
    birth = 7,
};

/// The name as it is logged; std::out_of_range for a value outside of the enumeration. Any thread.
const char* lifeStateName(LifeState state);
/// The name as it is logged; std::out_of_range for a value outside of the enumeration. Any thread.
const char* flightStateName(FlightState state);

inline constexpr u32 kLastStaticId = 10000;  ///< hexid up to here: static aircraft, above: live aircraft
/// Value of throttleIndex before a setting was sent, which is 0..4.
inline constexpr i32 kNoThrottleSent = 5;
/// Value of flapsIndex before a setting was sent, which is 0..3.
inline constexpr i32 kNoFlapsSent = 4;

/// A record on a stand: the common head of all aircraft records. Owned by the run thread.
struct ParkedAc : FlightTexts {
    f64 halfSpanNm = 0;            ///< half wing span of the type, nm
    f64 staticCgFt = 0;            ///< height of the centre of gravity when standing, from the simulator, 1..35 ft
    f64 groundPitch = 0;           ///< pitch on the ground, radians, from the simulator
    f64 rotationPitch = 0;         ///< radians
    f64 climbPitch = 0;            ///< radians
    f64 taxiTurnRate = 0;          ///< radians per cs
    f64 turnRate = 0;              ///< the rate in force now, radians per cs
    f64 maxClimbPerCs = 0;         ///< upper bound of dAlt, feet per cs
    f64 standTaxiSpeed = 0;        ///< knots
    u32 hexid = 0;                 ///< see kLastStaticId
    i32 acClass = 0;               ///< AircraftCategory
    std::string_view liveryTitle;  ///< into the loaded scan results; empty until matched
    i32 flareTicks = 0, touchdownTicks = 0, rotationTicks = 0, climbPitchTicks = 0;  ///< cs
    bool cargo = false;                                                              ///< from the registration record
    bool fsltlModel = false;         ///< liveryTitle contains "FSLTL_": reverse thrust is -100 % throttle
    u32 objectId = 0;                ///< the simulator's object id; 0 until created
    f64 standLat = 0, standLon = 0;  ///< the assigned stand, degrees
    f64 standHeading = 0;            ///< radians
    HalfHourSlot parkedSince;        ///< arrival on the stand
    u32 standId = 0;                 ///< number of the stand; 0 = none
    LifeState lifeState = LifeState::buffer;
    i32 throttleIndex = kNoThrottleSent;  ///< last setting sent, 0..4
    i32 flapsIndex = kNoFlapsSent;        ///< last setting sent, 0..3
    bool standCargo = false;              ///< cargo attribute of the stand when it was assigned
    bool removeWhenCreated = false;       ///< creation is in flight, and it is to go as soon as it is made
    bool eraseLive = false;               ///< live records only: drop at the end of this cycle, no object exists
    bool erase = false;                   ///< drop at the end of this cycle
};

/// The block that is sent to the simulator as one record, in this order.
struct PositionBlock {
    f64 lat = 0, lon = 0;                  ///< degrees
    f64 pitch = 0, bank = 0, heading = 0;  ///< radians; heading 0..2 pi, bank +-pi
    f64 alt = 0;                           ///< feet
    f64 vsFtPerSec = 0;                    ///< feet per second
    f64 tas = 0;                           ///< knots
};
static_assert(sizeof(PositionBlock) == 64);

/// A curve on the ground; absent when p1x or p1y is NaN. Metres north (y) and east (x) of the origin.
struct GroundCurve {
    f64 originLat = 0, originLon = 0;
    f64 tMin = 0;
    f64 p2y = 0, p2x = 0;  ///< end point
    f64 tMax = 1;
    f64 p1x = std::numeric_limits<f64>::quiet_NaN(), p1y = std::numeric_limits<f64>::quiet_NaN();  ///< control point

    bool absent() const { return p1x != p1x || p1y != p1y; }
};

/// The path ahead: front = the point last reached, element 1 = the point being flown to. A few dozen elements at most,
/// kept in one block so that a cycle neither allocates nor chases pointers.
using SampleStream = std::vector<PosSample>;

/// A live aircraft. Owned by the run thread; moved, never copied, when the table changes.
struct LiveAc : ParkedAc, PositionBlock {
    // What each cycle touches stands side by side.
    SampleStream stream;
    FlightState flightState = FlightState::birth;
    i32 flarePhase = 0;  ///< 0..4
    bool onGround = false;
    bool landing = false;       ///< on approach or in the flare
    bool rollOutFlare = false;  ///< from touchdown until the nose is down
    // Increments, set at each sample and added in each cycle.
    f64 dLat = 0, dLon = 0;                   ///< degrees per cs
    f64 dPitch = 0, dBank = 0, dHeading = 0;  ///< radians per cs
    f64 dAlt = 0;                             ///< feet per cs
    GroundCurve curve;

    f64 curveT = 0;                    ///< parameter now, 0..0.999999
    f64 curveDt = 0;                   ///< increment per cs
    f64 curveAngle = 0;                ///< degrees of turn
    f64 targetVs = 0;                  ///< feet per minute
    f64 targetSpeed = 0;               ///< knots; negative while pushing_back
    f64 lastTimestamp = 0;             ///< timestamp of the report last accepted, Unix seconds
    f64 reportLat = 0, reportLon = 0;  ///< place of the last report, degrees
    i32 repeats = 0;                   ///< reports since then that told the same place, of an aircraft in the air
    i32 reportTick = 0;                ///< simTick at which the last report that told a new place came
    i32 createdTick = 0;   ///< simTick at which its creation was decided, later that at which its object was seen
    f64 doubtedAt = 0;     ///< timestamp of the report last dropped for its speed, Unix seconds; 0 = none
    f64 doubtedSpeed = 0;  ///< its speed, knots
    f64 lastCollisionLat = 0, lastCollisionLon = 0;  ///< position at the last check against static aircraft
    i64 arrivedTicks = 0;                            ///< wall clock in 100 ns, last moment confirmed on its stand
    i32 extendCount = 0;    ///< 0 real samples; > 0 extrapolated samples left; -1 extrapolation has ended
    i32 holdStartTick = 0;  ///< simTick
    FlightState prevFlightState = FlightState::birth;  ///< before the last change
    bool parkReportSeen = false;                       ///< a report arrived while parking or parked
    bool hasFlightPlan = false;                        ///< a flight-plan file was written for this object
    bool userConflictSkip = false;  ///< the stream is being skipped because of a conflict with the user
    bool holding = false;           ///< in a hold on the ground
    PosSample pushbackSecond;       ///< the alternative second point of a push-back

    f64 lastParkTryLat = 0, lastParkTryLon = 0;  ///< last sample for which a stand was searched
    i32 maxEarly = 1000, maxLate = 1000;         ///< cs that a sample's time may move
    i32 groundRunCount = 1;                      ///< counts down from the first movement of a take-off run
    i32 pushbackPhase = 0;                       ///< 0, 1, 2
    i32 retreatCount = 0;                        ///< consecutive reports that moved further from the stand
    f64 targetHeading = 0;                       ///< radians
    f64 agl = 2500;                              ///< feet above ground, from the simulator
    f64 fieldAltAgl = 0;                         ///< altitude above the park airport during the flare decision, feet
    f64 touchdownHeading = 0;                    ///< radians
    f64 standDistance = 0;                       ///< nm; bound for leaving a stand
    f64 firstStandDist = 0, lastStandDist = 0;   ///< nm; first and last report from the stand
    f64 headingError = 0;                        ///< degrees between targetHeading and heading
    f64 spawnHeading = 0;                        ///< radians; heading to spawn with after a livery respawn
    bool spawnHeadingValid = false;
    bool pushbackClockwise = false, pushbackTurnKnown = false;
    f64 flareGround = 0;  ///< ground altitude reference of the flare, feet
    bool flareGroundValid = false;
    bool landedHere = false;   ///< has landed and not yet moved off a stand or started a take-off run
    bool towed = false;        ///< left its stand too soon to be a departure
    bool cleanConfig = false;  ///< gear and flaps were retracted after a climb past the first check
    bool takeOffRun = false;
    bool tookOffHere = false;  ///< rotated in the simulator and hasn't been above 1000 ft AGL since
    bool above10000Done = false;
    bool climbLightsDone = false;
    bool rollOut = false;          ///< on the runway after landing
    bool wantsToLeave = false;     ///< parked, and a report has moved away
    bool turningToTarget = false;  ///< headingError above 3 degrees on the ground

    LiveAc() = default;
    LiveAc(LiveAc&&) = default;
    LiveAc& operator=(LiveAc&&) = default;
    LiveAc(const LiveAc&) = delete;
    LiveAc& operator=(const LiveAc&) = delete;

    const PositionBlock& position() const { return *this; }
};

}  // namespace hcr
