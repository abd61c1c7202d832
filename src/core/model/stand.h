#pragma once

#include <string>
#include <vector>

#include "platform/types.h"
#include "shell/half_hours.h"

namespace hcr {

/// An aircraft that stood on a stand, on one weekday, over a set of half hours.
struct StandOption {
    std::string airline;   ///< operator code
    std::string type;      ///< ICAO designator
    std::string reg;       ///< registration, the key of the reference data
    std::string cs1;       ///< callsign of the flight; of a pair the inbound one
    std::string cs2;       ///< of a pair the outbound callsign
    HalfHours hours;       ///< of the day
    u32 index = 0;         ///< from 1 within the stand; 0 marks one that is struck out, which every loop passes over
    u32 day = 0;           ///< Monday = 1 .. Sunday = 7
    u32 origin = 0;        ///< 1 from the archived or generated file, 0 learned
    u32 hard = 0;          ///< 1 really seen, 0 a soft one, deduced by whoever made the file
    bool coupled = false;  ///< the aircraft left under another callsign: cs1 and cs2 are an arrival and its departure
};

/// One stand of the park airport. Run thread.
struct ParkPos {
    std::vector<StandOption> options;
    std::string id;                                    ///< the stand's name, the key within the airport
    std::vector<u32> adjacent;                         ///< numbers of the stands that overlap this one
    f64 lat = 0, lon = 0;                              ///< degrees
    f64 heading = 0;                                   ///< radians
    f64 radius = 0;                                    ///< nautical miles
    u32 number = 0;                                    ///< from 1 within gStands; the standId of the aircraft on it
    bool manual = false;                               ///< made by hand in a learned file, in which it stands in full
    bool radiusChanged = false, cargoChanged = false;  ///< learned
    bool planned = false;                              ///< taken by the plan that is being made
    bool takenByLive = false;                          ///< a live aircraft is parked on it or heads for it
    bool reserved = false;                             ///< kept free for the user
    bool blockedByNeighbour = false;                   ///< an adjacent stand is planned
    bool cargo = false;                                ///< for cargo aircraft
    bool ramp = false;                                 ///< no gate
    bool heli = false;                                 ///< helipad
};

/// A static aircraft that is planned for a stand and not yet created.
struct ParkPlanEntry {
    u32 standNumber = 0;  ///< ParkPos::number
    i32 fit = 0;          ///< half hours before the wanted slot in which the option matched; 0 = exactly
    std::string airline, type, cs1, cs2, reg;  ///< of the option
    bool stay = false;                         ///< still there in the next half hour, or without an outbound callsign
};

}  // namespace hcr
