#pragma once

#include <atomic>
#include <string>

#include "platform/types.h"

namespace hcr {

extern std::atomic<f64> userHalfWingSpan;     ///< nautical miles
extern std::atomic<bool> gUserHalfSpanKnown;  ///< a model reply was handled
extern std::atomic<i32> userCategory;         ///< AircraftCategory; goes to the log only

/// Replies of requests 106 and 107. SimClient thread; the texts may hold anything up to their length.
void gf_onUserTitle(const std::string& title);
void gf_onUserModel(const std::string& model);
/// Back to a user of whom nothing is known. Run thread, between two sessions.
void gf_resetUserAircraft();

}  // namespace hcr
