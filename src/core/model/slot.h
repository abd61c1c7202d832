#pragma once

#include <compare>

#include "platform/types.h"

namespace hcr {

/// Half-hour slot of the week. Aligned so that an atomic one needs no lock on any compiler.
struct alignas(8) HalfHourSlot {
    i32 day = 1;       ///< Monday = 1 .. Sunday = 7
    i32 halfHour = 0;  ///< 0..47
    auto operator<=>(const HalfHourSlot&) const = default;
    /// Place on the week's scale.
    i32 weekScale() const { return day * 48 + halfHour - 48; }
};

/// The slot of a time in Unix seconds: floor((seconds of the day + 30) / 1800) modulo 48; the weekday isn't advanced.
HalfHourSlot slotOf(i64 unixSeconds);

}  // namespace hcr
