#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "platform/types.h"

namespace hcr {

/// A fault of the sandbox, played at a moment. Its name in the file is the kind's name.
enum class FaultKind : i32 {
    quit,          ///< the simulator ends: quit message, then every Open fails for `seconds` (0 = for ever)
    flightLoaded,  ///< event 205
    newFile,       ///< file-name event
    teleport,      ///< the user jumps to lat, lon
    pause,         ///< event Sim with 0; after `seconds`, when above 0, it resumes by itself
    resume,        ///< event Sim with 1
    failCall,      ///< the next `count` calls of the function `call` give a negative result
    slowFrames,    ///< frame rate `rate` for `seconds`
    exception,     ///< an exception message with number `number`
    removeObject,  ///< the simulator takes an AI object away by itself: the one with tail number `text`
    addTitle,      ///< the title `text` becomes installed
    refuseTitle,   ///< the title `text` is refused from now on
    addObject,     ///< somebody else's aircraft with tail number `text` appears, standing at lat, lon
};

struct ScenarioFault {
    f64 at = 0;  ///< seconds since the first session opened
    FaultKind kind = FaultKind::quit;
    f64 seconds = 0;
    f64 lat = 0, lon = 0;
    i32 count = 1;
    f64 rate = 0;
    u32 number = 0;
    std::string call, text;
};

/// One point of the user's path; between two points position, altitude and heading move evenly.
struct UserPoint {
    f64 at = 0;            ///< seconds since the first session opened, pauses not counted; each above the last
    f64 lat = 0, lon = 0;  ///< degrees
    f64 alt = 0;           ///< feet; on the ground the aircraft stands on the terrain whatever is told here
    f64 heading = 0;       ///< degrees
    f64 groundSpeed = 0;   ///< knots
    bool onGround = true;  ///< holds until the next point
};

/// Terrain: a flat plate at `elevation`, and discs with their own elevation, the first that fits counts.
struct GroundDisc {
    f64 lat = 0, lon = 0, radiusNm = 0, elevation = 0;
};

/// What the simulator knows of a title; titles without an entry have the default one.
struct TitleFacts {
    std::string title;
    f64 staticCgFt = 9.0;
    f64 staticPitchDeg = 0.5;
    bool helicopter = false;
};

struct Scenario {
    std::string applicationName = "KittyHawk";  ///< "KittyHawk" = MSFS 2020, "SunRise" = MSFS 2024
    u32 versionMajor = 11, versionMinor = 0, buildMajor = 282174, buildMinor = 999;
    f64 openAfter = 0;    ///< seconds from the sandbox's start until Open succeeds
    f64 flightAfter = 1;  ///< seconds after the open until the event Sim with 1
    f64 frameRate = 30;   ///< frames per second
    f64 utcAtOpen = 0;    ///< the simulator's clock at the open, Unix seconds; 0 = the time of day
    f64 elevation = 0;    ///< feet
    std::vector<GroundDisc> ground;
    std::string userTitle = "Halcyrane Trainer Asobo", userModel = "C172";
    std::vector<UserPoint> user;     ///< at least one point
    bool allTitlesInstalled = true;  ///< false: only those of `titles` and `installed`
    std::vector<TitleFacts> titles;
    std::vector<std::string> installed;  ///< without facts of their own
    std::vector<std::string> refused;    ///< refused by exception 22, installed or not
    i32 maxObjects = 1000;
    f64 announceAfter = 0;  ///< seconds from a create call until its object shows itself; models take that long to load
    std::vector<ScenarioFault> faults;
};

/// Bounds of a frame rate.
inline constexpr f64 kMinFrameRate = 0.1, kMaxFrameRate = 1000;

/// The scenario that is used when none is named: a parked user at Amsterdam.
Scenario gf_defaultScenario();
/// Reads a scenario file: one JSON object whose keys are the fields above; what it leaves out stays as it is here, and
/// without a user's path the user is parked as in the default scenario. Throws std::runtime_error with the path and
/// what is wrong with it: the field, as in "user[2].lat", and what it must be. Unknown keys are errors too.
Scenario gf_readScenario(const std::filesystem::path& path);
/// From text; `name` stands for the path in the messages.
Scenario gf_parseScenario(const std::string& json, const std::string& name);

}  // namespace hcr
