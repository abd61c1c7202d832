#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <vector>

#include "core/model/geo.h"
#include "core/model/run_state.h"
#include "core/model/tables.h"
#include "engine/following.h"
#include "engine/intake.h"
#include "engine/life_cycle.h"
#include "engine/sim_news.h"
#include "liveries/dbase.h"
#include "sim/drain.h"
#include "sim/session_reset.h"

namespace hcr {
namespace {

constexpr i32 kAircraft = 500;
constexpr i32 kCycles = 360'000;     // an hour
constexpr i32 kReportEveryCs = 250;  // each aircraft is reported every two and a half seconds
constexpr i32 kDelayCs = 3000;

/// A flight in wide turns, so that headings and banks change with every leg.
struct Course {
    LatLon place;
    f64 track = 0, turn = 0, speed = 0, alt = 0;
};

struct Traffic {
    std::vector<Course> courses;

    Traffic() {
        gf_clearTables();
        gf_reserveTables();
        gf_resetSimSession();
        aircraftTypes = {"A320"};
        gClassTypes[2] = {"A320"};
        for (i32 i = 0; i < kAircraft; ++i) {
            Course course;
            course.place = {50 + 0.004 * i, 3 + 0.013 * (i % 97)};
            course.track = (i * 37) % 360;
            course.turn = (i % 7) - 3;
            course.speed = 180 + i % 300;
            course.alt = 3000 + 70.0 * i;
            courses.push_back(course);
            begin(i);
        }
    }

    PosSample sampleOf(const Course& course, i32 time) const {
        PosSample sample;
        sample.lat = course.place.lat;
        sample.lon = course.place.lon;
        sample.alt = course.alt;
        sample.speed = sample.tas = course.speed;
        sample.track = course.track;
        sample.airborne = true;
        sample.time = time;
        return sample;
    }

    void advance(Course& course) const {
        course.track = std::fmod(course.track + course.turn + 360, 360);
        const f64 feet = course.speed * kReportEveryCs * kFeetPerNm / 360000;
        course.place = destinationPoint(course.place.lat, course.place.lon, course.track * kDegToRad, feet);
    }

    /// A stream of thirty seconds, at a moment of its own in the rhythm of the reports.
    void begin(i32 i) {
        Course& course = courses[static_cast<std::size_t>(i)];
        const i32 phase = i * kReportEveryCs / kAircraft;
        TrafficReport report;
        report.hexid = static_cast<u32>(4740000 + i);
        report.callsign = fmt::format("KLM{}", i);
        report.model = "A320";
        report.sample = sampleOf(course, simTick + phase);
        gf_decodeReport(report);
        LiveAc& ac = gLiveAcs.back();
        ac.lifeState = LifeState::active;
        ac.flightState = FlightState::flying;
        ac.objectId = static_cast<u32>(1000 + i);
        ac.lat = course.place.lat;
        ac.lon = course.place.lon;
        ac.alt = course.alt;
        ac.heading = course.track * kDegToRad;
        for (i32 at = kReportEveryCs; at < kDelayCs; at += kReportEveryCs) {
            advance(course);
            decodeExisting(ac, sampleOf(course, simTick + phase + at));
        }
    }

    /// The reports that are due at this cycle: two at most, as in a worker cycle.
    void report() {
        const i32 step = simTick % kReportEveryCs;
        const i32 perCycle = kAircraft / kReportEveryCs;
        for (i32 k = 0; k < perCycle; ++k) {
            const i32 i = step * perCycle + k;
            Course& course = courses[static_cast<std::size_t>(i)];
            advance(course);
            decodeExisting(gLiveAcs[static_cast<std::size_t>(i)], sampleOf(course, simTick + kDelayCs));
        }
    }
};

/// One worker cycle over 500 aircraft in flight: median and 99th percentile of its length over an hour of cycles.
void engine_cycle_500(benchmark::State& state) {
    Traffic traffic;
    std::vector<f64> lengths;
    lengths.reserve(kCycles);
    for (auto _ : state) {
        const auto start = std::chrono::steady_clock::now();
        gf_updateAllLive();
        const auto end = std::chrono::steady_clock::now();
        lengths.push_back(std::chrono::duration<f64, std::micro>(end - start).count());
        state.SetIterationTime(lengths.back() * 1e-6);
        traffic.report();
        gEventQueue.clear();
        simTick += 1;
    }
    if (gPosQueueFront.size() != kAircraft) state.SkipWithError("aircraft were lost");
    std::sort(lengths.begin(), lengths.end());
    const auto at = [&lengths](f64 share) {
        return lengths[static_cast<std::size_t>(share * static_cast<f64>(lengths.size() - 1))];
    };
    state.counters["median_us"] = at(0.5);
    state.counters["p99_us"] = at(0.99);
    state.counters["worst_us"] = lengths.back();
    gf_clearTables();
    gf_forgetDbase();
}
BENCHMARK(engine_cycle_500)->Iterations(kCycles)->UseManualTime()->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace hcr
