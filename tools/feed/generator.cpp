#include "tools/feed/generator.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "tools/feed/report_line.h"

namespace hcr {
namespace {

constexpr f64 kRunwaySlotSeconds = 85;  // between two uses of the runway
constexpr f64 kFirstSlotSeconds = 40;
constexpr f64 kPushToFreeSeconds = 150;  // from the begin of a push until the stand can be given away
constexpr f64 kWeatherSeconds = 10;
constexpr f64 kDefaultRunwayHeading = 58;
constexpr f64 kDefaultRunwayAside = 926;  // m
constexpr i32 kStandsPerRow = 22;
constexpr f64 kStandWidth = 75, kStandRowDepth = 260, kFirstStandRow = 620;  // m

// Shares of the aircraft, where the caller doesn't tell.
constexpr f64 kArrivalShare = 0.22, kDepartureShare = 0.2, kLightShare = 0.08, kParkedShare = 0.12;

// Seconds between two reports of one aircraft.
struct Interval {
    f64 low = 0, high = 0;
};
constexpr Interval kStanding{12, 28}, kTaxiing{2.5, 4.5}, kLow{3, 6}, kHigh{5, 9};
constexpr f64 kHighFt = 10000;

struct Counts {
    i32 arrivals = 0, departures = 0, helicopters = 0, lights = 0, parked = 0, vehicles = 0, overflights = 0;
};

struct StandUse {
    std::size_t index = 0;
    f64 freeFrom = 0;  // seconds of the plan
};

struct World {
    const GenerateOptions& options;
    FeedRandom random;
    Fleet fleet;
    FeedPlan plan;
    Airfield field;
    FeedWind wind;
    std::vector<FlatStand> stands;
    std::vector<StandUse> uses;  // in the order in which they are given away
    f64 seconds = 0;             // length of the plan

    explicit World(const GenerateOptions& o) : options(o), random(o.seed), seconds(o.minutes * 60) {}
};

template <typename T>
void lf_shuffle(FeedRandom& random, std::vector<T>& values) {
    for (std::size_t i = values.size(); i > 1; --i) {
        std::swap(values[i - 1], values[static_cast<std::size_t>(random.below(static_cast<i32>(i)))]);
    }
}

void lf_layRunway(World& world) {
    const GenerateOptions& o = world.options;
    Airfield& field = world.field;
    field.origin = {o.lat, o.lon};
    field.elevationFt = o.elevationFt;
    field.rangeMetres = o.rangeNm * kMetresPerNm;
    if (!o.runway.empty()) {
        const FeedRunway& runway = o.runway.front();
        field.threshold = geoToFlat(field.origin, {runway.lat, runway.lon});
        field.bearing = runway.heading * kDegToRad;
        field.length = runway.lengthFt * kMetresPerNm / kFeetPerNm;
    } else {
        field.bearing = kDefaultRunwayHeading * kDegToRad;
        field.length = FeedRunway{}.lengthFt * kMetresPerNm / kFeetPerNm;
        field.threshold = field.at(-field.length / 2, kDefaultRunwayAside);
    }
    const LatLon threshold = flatToGeo(field.origin, field.threshold);
    world.plan.runway = {threshold.lat, threshold.lon, field.bearing * kRadToDeg,
                         field.length * kFeetPerNm / kMetresPerNm};
    world.wind.from = field.bearing + 25 * kDegToRad;
}

void lf_layStands(World& world, i32 wanted) {
    const Airfield& field = world.field;
    world.plan.stands = world.options.stands;
    if (world.plan.stands.empty()) {
        const f64 aside = field.right({0, 0}) > 0 ? 1 : -1;  // the place lies there
        for (i32 i = 0; i < wanted; ++i) {
            const f64 along = field.length / 2 + (i % kStandsPerRow - kStandsPerRow / 2) * kStandWidth;
            const f64 depth = kFirstStandRow + i / kStandsPerRow * kStandRowDepth;
            const LatLon at = flatToGeo(field.origin, field.at(along, aside * depth));
            const f64 heading = wrapTwoPi(field.bearing + aside * kPi / 2) * kRadToDeg;
            world.plan.stands.push_back({at.lat, at.lon, heading});
        }
    }
    f64 right = 0;
    for (const FeedStand& stand : world.plan.stands) {
        world.stands.push_back({geoToFlat(field.origin, {stand.lat, stand.lon}), stand.heading * kDegToRad});
        right += field.right(world.stands.back().at);
    }
    world.field.side = right > 0 ? 1 : -1;
    for (std::size_t i = 0; i < world.stands.size(); ++i) world.uses.push_back({i, 0});
    lf_shuffle(world.random, world.uses);
}

i32 lf_wanted(i32 asked, f64 share, i32 all) {
    return asked >= 0 ? asked : static_cast<i32>(std::lround(share * all));
}

// What fits on the runway and on the stands; the rest flies over.
Counts lf_countKinds(const GenerateOptions& o, i32 slots, i32 standLimit) {
    Counts counts;
    const i32 all = std::clamp(o.aircraft, 0, kMostFeedAircraft);
    i32 left = all;
    const auto take = [&left](i32 wanted, i32 limit) {
        const i32 taken = std::clamp(std::min(wanted, limit), 0, left);
        left -= taken;
        return taken;
    };
    // Unless asked for, arrivals leave departures their part of the runway's time.
    const i32 arrivalSlots = o.arrivals >= 0 || o.departures == 0 ? slots : (slots + 1) / 2;
    counts.arrivals = take(lf_wanted(o.arrivals, kArrivalShare, all), std::min(arrivalSlots, standLimit));
    counts.departures = take(lf_wanted(o.departures, kDepartureShare, all),
                             std::min(slots - counts.arrivals, standLimit - counts.arrivals));
    i32 standsLeft = standLimit - counts.arrivals - counts.departures;
    counts.helicopters = take(o.helicopters >= 0 ? o.helicopters : 1, standsLeft);
    standsLeft -= counts.helicopters;
    counts.parked = take(lf_wanted(o.parked, kParkedShare, all), standsLeft);
    counts.lights = take(lf_wanted(o.lights, kLightShare, all), left);
    counts.overflights = left;
    counts.vehicles = o.vehicles >= 0 ? o.vehicles : 2;
    return counts;
}

i32 lf_takeStand(World& world, f64 from, f64 until) {
    const auto found = std::find_if(world.uses.begin(), world.uses.end(),
                                    [from](const StandUse& use) { return use.freeFrom <= from; });
    if (found == world.uses.end()) return -1;
    found->freeFrom = until;
    return static_cast<i32>(found->index);
}

Interval lf_interval(const Airfield& field, const Motion& motion) {
    if (motion.speed <= 0) return kStanding;
    if (onGround(field, motion.height)) return kTaxiing;
    return motion.height < kHighFt ? kLow : kHigh;
}

// Writes the reports of one aircraft whose first stage begins at `begin` seconds of the plan.
void lf_report(World& world, GeneratedAircraft& aircraft, const std::vector<Stage>& stages, f64 begin) {
    const bool namelessOnStand = aircraft.kind == FeedKind::parked && world.random.chance(0.3);
    const std::string callsign = namelessOnStand ? "@@@@@@@@" : aircraft.callsign;
    const f64 start = world.options.start;
    f64 due = -1;
    bool stood = false, wasGround = false, first = true;
    for (const TravelStep& step : travel(stages)) {
        const f64 now = begin + step.time;
        const bool ground = onGround(world.field, heightOf(step));
        if (!first && ground != wasGround && aircraft.runwayTime == 0) aircraft.runwayTime = start + now;
        first = false;
        wasGround = ground;
        if (now < 0) continue;
        if (now > world.seconds) break;
        if (due < 0) due = now + world.random.between(0, kStanding.low / 2);
        if (stood && step.metresPerSecond > 0) due = std::min(due, now + world.random.between(0.5, 2));
        stood = step.metresPerSecond <= 0;
        if (now < due) continue;
        const Motion motion = motionOf(step);
        const f64 timestamp = std::floor((start + now) * 10) / 10;
        const Interval interval = lf_interval(world.field, motion);
        due = now + world.random.between(interval.low, interval.high);
        world.plan.lines.push_back({start + now + world.random.between(0, world.options.latencySeconds),
                                    reportLine(aircraft, callsign, world.field, world.wind, motion, timestamp)});
        if (aircraft.reports == 0) aircraft.firstReport = timestamp;
        aircraft.lastReport = timestamp;
        ++aircraft.reports;
    }
}

GeneratedAircraft lf_newAircraft(World& world, FeedKind kind) {
    const GenerateOptions& o = world.options;
    GeneratedAircraft aircraft;
    aircraft.kind = kind;
    const bool privatelyOwned = kind == FeedKind::light || kind == FeedKind::helicopter;
    const std::vector<FeedOperator>& operators = kind == FeedKind::light        ? privateOwners()
                                                 : kind == FeedKind::helicopter ? helicopterOwners()
                                                 : o.operators.empty()          ? usualOperators()
                                                                                : o.operators;
    nameAircraft(world.fleet, world.random, operators, aircraft);
    aircraft.sendsHeading = world.random.chance(privatelyOwned ? 0.4 : 0.85);
    aircraft.sendsRoll = world.random.chance(0.6);
    if (privatelyOwned) return aircraft;
    const bool comesHere = kind == FeedKind::arrival;
    const bool leavesHere = kind == FeedKind::departure || (kind == FeedKind::parked && world.random.chance(0.5));
    aircraft.from = leavesHere ? o.airport : otherAirport(world.random, o.airport);
    aircraft.to = comesHere || kind == FeedKind::parked ? o.airport : otherAirport(world.random, o.airport);
    if (kind == FeedKind::parked && leavesHere) aircraft.to = otherAirport(world.random, o.airport);
    return aircraft;
}

void lf_addDeparture(World& world, f64 rollTime) {
    GeneratedAircraft aircraft = lf_newAircraft(world, FeedKind::departure);
    aircraft.stand = lf_takeStand(world, 0, rollTime);
    if (aircraft.stand < 0) return;
    const FlatStand& stand = world.stands[static_cast<std::size_t>(aircraft.stand)];
    std::vector<Stage> stages = departureStages(world.random, world.field, feedPerformance(aircraft.type), stand);
    const f64 hold = world.random.between(15, 70);
    const f64 toHold = travelTime({stages[0], stages[1]});
    stages.back().waitBefore = hold;
    const f64 push = rollTime - hold - toHold;
    stages.front().waitBefore = std::max(push, 0.0);
    for (StandUse& use : world.uses) {
        if (use.index == static_cast<std::size_t>(aircraft.stand)) use.freeFrom = push + kPushToFreeSeconds;
    }
    lf_report(world, aircraft, stages, std::min(push, 0.0));
    world.plan.aircraft.push_back(std::move(aircraft));
}

void lf_addArrival(World& world, f64 touchdownTime) {
    GeneratedAircraft aircraft = lf_newAircraft(world, FeedKind::arrival);
    const f64 standing = world.random.between(400, 1500);
    aircraft.stand = lf_takeStand(world, touchdownTime, 1e9);
    if (aircraft.stand < 0) return;
    const FlatStand& stand = world.stands[static_cast<std::size_t>(aircraft.stand)];
    const std::vector<Stage> stages =
        arrivalStages(world.random, world.field, feedPerformance(aircraft.type), stand, standing);
    f64 flightTime = 0;
    for (const TravelStep& step : travel(stages)) {
        flightTime = step.time;
        if (onGround(world.field, heightOf(step))) break;
    }
    lf_report(world, aircraft, stages, touchdownTime - flightTime);
    world.plan.aircraft.push_back(std::move(aircraft));
}

// An aircraft whose flight lies anywhere in the plan's time, also across its borders.
void lf_addPassing(World& world, FeedKind kind) {
    GeneratedAircraft aircraft = lf_newAircraft(world, kind);
    const FeedPerformance& performance = feedPerformance(aircraft.type);
    const std::vector<Stage> stages = kind == FeedKind::light
                                          ? lightStages(world.random, world.field, performance)
                                          : overflightStages(world.random, world.field, performance);
    const f64 middle = world.random.between(0, world.seconds);
    lf_report(world, aircraft, stages, middle - travelTime(stages) / 2);
    aircraft.runwayTime = 0;
    world.plan.aircraft.push_back(std::move(aircraft));
}

void lf_addHelicopter(World& world) {
    GeneratedAircraft aircraft = lf_newAircraft(world, FeedKind::helicopter);
    aircraft.stand = lf_takeStand(world, 0, 1e9);
    if (aircraft.stand < 0) return;
    const FlatStand& pad = world.stands[static_cast<std::size_t>(aircraft.stand)];
    const std::vector<Stage> stages = helicopterStages(world.random, world.field, feedPerformance(aircraft.type), pad);
    lf_report(world, aircraft, stages, world.random.between(0, world.seconds / 3));
    world.plan.aircraft.push_back(std::move(aircraft));
}

void lf_addParked(World& world) {
    GeneratedAircraft aircraft = lf_newAircraft(world, FeedKind::parked);
    aircraft.stand = lf_takeStand(world, 0, 1e9);
    if (aircraft.stand < 0) return;
    const FlatStand& stand = world.stands[static_cast<std::size_t>(aircraft.stand)];
    lf_report(world, aircraft, {standingStage(stand, world.field.elevationFt, world.seconds)}, 0);
    world.plan.aircraft.push_back(std::move(aircraft));
}

void lf_addVehicle(World& world, i32 number) {
    GeneratedAircraft vehicle;
    vehicle.kind = FeedKind::vehicle;
    vehicle.hexid = 0x48A700 + static_cast<u32>(number);
    vehicle.callsign = fmt::format("FOLLOW{}", number + 1);
    vehicle.type = "GRND";
    lf_report(world, vehicle, vehicleStages(world.random, world.field), 0);
    world.plan.aircraft.push_back(std::move(vehicle));
}

void lf_addWeather(World& world) {
    const i32 qnh = 1004 + world.random.below(24);
    for (f64 at = 0; at < world.seconds; at += kWeatherSeconds) {
        world.plan.weather.push_back({world.options.start + at, feedWeatherLine(world.options.airport, qnh)});
    }
}

}  // namespace

const char* feedKindName(FeedKind kind) {
    constexpr const char* kNames[] = {"arrival", "departure", "overflight", "light", "helicopter", "parked", "vehicle"};
    return kNames[static_cast<std::size_t>(kind)];
}

std::string feedWeatherLine(const std::string& icao, i32 qnh) {
    return fmt::format(
        R"({{"ICAO": "{0}","QNH": "{1}", "METAR": "{0} Q{1}", "NAME": "{0}", "IATA": "{0}","DISTNM": 0.1}})", icao,
        qnh);
}

FeedPlan generatePlan(const GenerateOptions& options) {
    World world(options);
    lf_layRunway(world);
    const i32 slots = std::max(0, static_cast<i32>((world.seconds - kFirstSlotSeconds) / kRunwaySlotSeconds) + 1);
    const i32 standLimit = options.stands.empty() ? kMostFeedAircraft : static_cast<i32>(options.stands.size());
    const Counts counts = lf_countKinds(options, slots, standLimit);
    lf_layStands(world, counts.arrivals + counts.departures + counts.helicopters + counts.parked);

    std::vector<i32> order(static_cast<std::size_t>(slots));
    for (std::size_t i = 0; i < order.size(); ++i) order[i] = static_cast<i32>(i);
    lf_shuffle(world.random, order);
    const auto slotTime = [&](i32 use) {
        return kFirstSlotSeconds + order[static_cast<std::size_t>(use)] * kRunwaySlotSeconds;
    };
    // What stands there from the start takes its stand before what comes later.
    for (i32 i = 0; i < counts.departures; ++i) lf_addDeparture(world, slotTime(i));
    for (i32 i = 0; i < counts.parked; ++i) lf_addParked(world);
    for (i32 i = 0; i < counts.helicopters; ++i) lf_addHelicopter(world);
    for (i32 i = 0; i < counts.arrivals; ++i) lf_addArrival(world, slotTime(counts.departures + i));
    for (i32 i = 0; i < counts.overflights; ++i) lf_addPassing(world, FeedKind::overflight);
    for (i32 i = 0; i < counts.lights; ++i) lf_addPassing(world, FeedKind::light);
    for (i32 i = 0; i < counts.vehicles; ++i) lf_addVehicle(world, i);
    lf_addWeather(world);
    std::stable_sort(world.plan.lines.begin(), world.plan.lines.end(),
                     [](const TimedLine& a, const TimedLine& b) { return a.time < b.time; });
    return std::move(world.plan);
}

std::vector<TimedLine> generateFeed(const GenerateOptions& options) {
    return generatePlan(options).lines;
}

}  // namespace hcr
