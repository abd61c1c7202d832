#pragma once

#include <string>

#include "platform/types.h"

namespace hcr {

/// "Sun Nov 22 21:15:03 2026" in UTC; "Invalid time" when it can't be turned into a date.
std::string gf_utcTimeText(i64 unixSeconds);
/// gf_utcTimeText of now.
std::string gf_utcTimeText();
/// "Nov 22, 2026": today in UTC.
std::string gf_dateText();
/// The time of day of a log line: "21:15:03" in UTC, now.
std::string gf_timeOfDay();

}  // namespace hcr
