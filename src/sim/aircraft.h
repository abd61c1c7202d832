#pragma once

#include <atomic>
#include <string_view>

#include "core/model/aircraft.h"

namespace hcr {

// Everything that the program does to an aircraft inside the simulator. Worker thread; each call takes gSimMutex for
// the time of its push, but for gf_setFreeze.

void removeAircraftFromSim(ParkedAc& ac);
/// Starts or stops all engines.
void gf_engineStart(u32 objectId);
void gf_engineStop(u32 objectId);

/// On = 1, off = 0.
struct Lights {
    u32 nav = 0, beacon = 0, landing = 0, taxi = 0, strobes = 0, logo = 0, cabin = 0;
};
/// All seven at once; the two below one alone.
void gf_setLights(u32 objectId, const Lights& lights);
void gf_setNavLight(u32 objectId, bool on);
void gf_setCabinLight(u32 objectId, bool on);
/// Gear and spoilers; a helicopter has neither.
void gf_setGear(const ParkedAc& ac, bool down);
void gf_setSpoilers(const ParkedAc& ac, bool on);
/// One of the settings 0..3, up to full; sent when it changes.
void gf_setFlaps(ParkedAc& ac, i32 index);
/// One of the settings 0..4, idle to take-off; sent when it changes.
void gf_setThrottle(ParkedAc& ac, i32 index);
/// What an aircraft on a stand looks like: lights, engines, flaps, spoilers.
void gf_applyParkedState(ParkedAc& ac);
/// Queues the three freeze events. SimClient, with gSimMutex held by the caller.
void gf_setFreeze(u32 objectId);
/// At once, not queued.
void gf_allLightsToggle(u32 objectId);
/// Writes definition 401 at once: spoilers handle and both thrust levers in percent.
void gf_writeThrottleSpoilers(u32 objectId, f64 spoilers, f64 lever1, f64 lever2);

/// A title was refused by the simulator: remembers it; throws UserErrorException 81 at the twentieth.
void gf_onCreateFailed(const ParkedAc& ac);
/// The title that a line of the log, written by gf_onCreateFailed, tells to have been refused; empty for other lines.
std::string_view gf_refusedTitle(std::string_view logLine);

/// The object selected in the window; 0 = none.
extern std::atomic<u32> gSelectedObject;
/// None is selected. Worker.
void gf_resetSelection();

}  // namespace hcr
