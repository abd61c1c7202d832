#include "tests/support/flight_script.h"

#include <algorithm>

#include "core/model/geo.h"

namespace hcr::test {
namespace {

constexpr f64 kStep = 0.5;  // seconds

/// Moves the line's aircraft through one step of the leg, of which so many seconds are left.
void lf_step(FeedLine& line, const FlightLeg& leg, f64 left) {
    const f64 part = kStep / left, before = line.speed;
    line.speed += (leg.speed - line.speed) * part;
    line.vs = (leg.alt - line.alt) / left * 60;
    line.alt += (leg.alt - line.alt) * part;
    line.track = std::fmod(line.track + leg.turn * kStep / leg.seconds + 360, 360);
    const f64 feet = (before + line.speed) / 2 * kStep / 3600 * kFeetPerNm;
    const LatLon place = destinationPoint(line.lat, line.lon, line.track * kDegToRad, feet);
    line.lat = place.lat;
    line.lon = place.lon;
    line.tas = line.speed;
    line.timestamp += kStep;
}

}  // namespace

std::vector<TimedLine> flyLegs(FeedLine line, const std::vector<FlightLeg>& legs, f64 every, f64 from) {
    std::vector<TimedLine> lines;
    f64 at = 0, next = 0;
    line.timestamp += from;
    for (const FlightLeg& leg : legs) {
        for (f64 left = leg.seconds; left > 0; left -= kStep, at += kStep) {
            if (at >= next) {
                lines.push_back({from + at, line.text()});
                next += every;
            }
            lf_step(line, leg, left);
        }
    }
    lines.push_back({from + at, line.text()});
    return lines;
}

FeedLine endOf(FeedLine line, const std::vector<FlightLeg>& legs) {
    for (const FlightLeg& leg : legs) {
        for (f64 left = leg.seconds; left > 0; left -= kStep) lf_step(line, leg, left);
    }
    return line;
}

FeedLine beginFor(FeedLine line, const std::vector<FlightLeg>& legs, LatLon end) {
    line.lat = end.lat;
    line.lon = end.lon;
    for (int round = 0; round < 3; ++round) {  // each round takes out what the last one was off by
        const FeedLine flown = endOf(line, legs);
        line.lat += end.lat - flown.lat;
        line.lon += end.lon - flown.lon;
    }
    return line;
}

std::vector<TimedLine> inOrder(std::vector<std::vector<TimedLine>> flights) {
    std::vector<TimedLine> lines;
    for (const std::vector<TimedLine>& flight : flights) lines.insert(lines.end(), flight.begin(), flight.end());
    std::stable_sort(lines.begin(), lines.end(),
                     [](const TimedLine& a, const TimedLine& b) { return a.time < b.time; });
    return lines;
}

}  // namespace hcr::test
