#include "tools/replay/flight_log.h"

#include <algorithm>
#include <cmath>

#include "core/model/geo.h"
#include "core/model/tables.h"
#include "sim/port/sandbox/sandbox.h"

namespace hcr {
namespace {

constexpr f64 kDelay = 30;           // seconds between a report's arrival and its playing
constexpr f64 kSampleSeconds = 0.5;  // between two points of the flown track
constexpr f64 kMetresPerSecondPerKnot = kMetresPerNm / 3600.0;

FlightRecord& lf_flight(FlightLog& log, const TrafficReport& report) {
    const auto [found, isNew] = log.byHexid.try_emplace(report.hexid, log.flights.size());
    if (isNew) log.flights.emplace_back().hexid = report.hexid;
    FlightRecord& flight = log.flights[found->second];
    if (flight.callsign.empty()) flight.callsign = report.callsign;
    if (flight.registration.empty()) flight.registration = report.registration;
    if (flight.type.empty()) flight.type = report.model;
    return flight;
}

void lf_onReport(FlightLog& log, const TrafficReport& report) {
    FlightRecord& flight = lf_flight(log, report);
    if (report.timestamp <= flight.lastTimestamp) return;  // an old one, overtaken by others on the way
    flight.lastTimestamp = report.timestamp;
    flight.fastestKt = std::max(flight.fastestKt, report.sample.speed);
    const PosSample& s = report.sample;
    flight.lastReportAt = log.watched.seconds() + kDelay;
    const bool repeats = !flight.reports.empty() && s.airborne &&
                         samePosition(s.lat, s.lon, flight.reports.back().lat, flight.reports.back().lon);
    if (!repeats) flight.reports.push_back({flight.lastReportAt, s.lat, s.lon, s.alt, s.speed});
}

void lf_compareWithLast(FlightRecord& flight, const FlownPoint& now) {
    const FlownPoint& last = flight.last;
    const f64 moved = distanceNm(last.lat, last.lon, now.lat, now.lon) * kMetresPerNm;
    const f64 explained = flight.fastestKt * kMetresPerSecondPerKnot * (now.at - last.at);
    flight.jumpMetres = std::max(flight.jumpMetres, moved - explained);
    flight.stepFeet = std::max(flight.stepFeet, std::abs(now.alt - last.alt));
}

FlightRecord* lf_flightOfObject(FlightLog& log, u32 object) {
    const auto found = log.byObject.find(object);
    if (found != log.byObject.end()) return &log.flights[found->second];
    const LiveAc* ac = findLiveByObject(object);
    if (ac == nullptr) return nullptr;
    const auto flight = log.byHexid.find(ac->hexid);
    if (flight == log.byHexid.end()) return nullptr;
    log.byObject[object] = flight->second;
    return &log.flights[flight->second];
}

void lf_onWrite(const SandboxObject& object, f64 seconds, void* context) {
    FlightLog& log = *static_cast<FlightLog*>(context);
    FlightRecord* flight = lf_flightOfObject(log, object.id);
    if (flight == nullptr) return;
    const FlownPoint now{seconds - log.sandboxShift, object.lat, object.lon, object.alt, object.heading, object.id};
    const bool sameObject = flight->last.object == object.id;
    if (sameObject) lf_compareWithLast(*flight, now);
    if (!sameObject || now.at >= flight->flown.back().at + kSampleSeconds) flight->flown.push_back(now);
    flight->last = now;
}

}  // namespace

FlightLog::FlightLog(SimulatedRun& simulatedRun)
    : watched(simulatedRun), sandboxShift(gf_sandboxSeconds() - simulatedRun.seconds()) {
    watched.onReport = [this](const TrafficReport& report) { lf_onReport(*this, report); };
    gf_setSandboxPositionHook(lf_onWrite, this);
}

FlightLog::~FlightLog() {
    watched.onReport = nullptr;
    gf_setSandboxPositionHook(nullptr, nullptr);
}

}  // namespace hcr
