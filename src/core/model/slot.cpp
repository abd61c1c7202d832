#include "core/model/slot.h"

namespace hcr {
namespace {

constexpr i64 kSecondsPerDay = 86400;
constexpr i64 kSecondsPerSlot = 1800;
constexpr i64 kEarlySeconds = 30;  // a slot begins half a minute before the hour and the half hour
constexpr i64 kEpochWeekday = 3;   // 1970-01-01 was a Thursday; Monday = 0

}  // namespace

HalfHourSlot slotOf(i64 unixSeconds) {
    const i64 inDay = ((unixSeconds % kSecondsPerDay) + kSecondsPerDay) % kSecondsPerDay;
    const i64 days = (unixSeconds - inDay) / kSecondsPerDay;
    const i64 weekday = (((days + kEpochWeekday) % 7) + 7) % 7;
    return {static_cast<i32>(weekday) + 1, static_cast<i32>((inDay + kEarlySeconds) / kSecondsPerSlot % 48)};
}

}  // namespace hcr
