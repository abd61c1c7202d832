#pragma once

#include <string>

#include "platform/types.h"

namespace hcr {

/// One timed point of a flight path.
struct PosSample {
    f64 lat = 0, lon = 0;     ///< degrees
    f64 alt = 0;              ///< feet; 0 means on the ground
    f64 speed = 0;            ///< ground speed, knots
    f64 track = 0;            ///< course, degrees
    f64 vs = 0;               ///< vertical speed, feet per minute
    f64 tas = 0;              ///< true airspeed, knots
    f64 roll = 0;             ///< bank, radians, sign of the simulator
    f64 trueHeading = 0;      ///< radians
    i32 time = 0;             ///< simTick at which the aircraft is to be here
    bool airborne = false;    ///< alt > 0
    bool stationary = false;  ///< equals the sample before it
    bool adsb = false;        ///< an ADS-B report that gave a true heading
    bool rollValid = false;
    bool trueHeadingValid = false;
};

/// The eight texts that reports and aircraft records have in common.
struct FlightTexts {
    std::string airline;                 ///< operator code, up to 3 letters
    std::string model;                   ///< ICAO aircraft type
    std::string from, to;                ///< origin and destination codes
    std::string callsign;                ///< ends in "_" for a ghost of the same name, in "*" for a static aircraft
    std::string coupledCs1, coupledCs2;  ///< inbound and outbound callsign of a stand's history
    std::string registration;            ///< up to 12 characters
    bool coupledSearched = false;        ///< the stand history was already searched for this aircraft
};

/// One decoded line of the feed.
struct TrafficReport : FlightTexts {
    PosSample sample;
    f64 timestamp = 0;  ///< the feed's time of the report, Unix seconds
    u32 hexid = 0;      ///< decimal form of the ICAO 24-bit address, above 10000
};

}  // namespace hcr
