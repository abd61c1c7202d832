#pragma once

#include <array>

#include "platform/types.h"

namespace hcr {

/// Category of an aircraft; the value of acClass.
enum AircraftCategory : i32 { Light = 0, Buzjets = 1, Large = 2, Heavy = 3, HighPerf = 4, Rotorcraft = 5 };

/// Categories, 0..5.
inline constexpr i32 kClassCount = 6;

/// One column of the class table: a value per class.
template <typename T>
using ClassTable = std::array<T, kClassCount>;

/// Lookup in a class table; std::out_of_range for a class outside 0..5, which is the caller's error.
template <typename T>
const T& classValue(const ClassTable<T>& table, i32 acClass) {
    return table.at(static_cast<std::size_t>(acClass));
}

/// By class, as the log names them.
extern const ClassTable<const char*> kClassNames;
// Pitches in radians (negative = nose up), rates in radians or feet per centisecond, speeds in knots.
extern const ClassTable<f64> kRotationPitch, kClimbPitch, kTaxiTurnRate, kMaxClimbPerCs, kStandTaxiSpeed,
    kTakeOffMinSpeed, kMaxBank, kBankRate, kPitchRate;
// Centiseconds.
extern const ClassTable<i32> kFlareTicks, kTouchdownTicks, kRotationTicks, kClimbPitchTicks;

/// True when the settings let aircraft of this class be shown; false for what is no class. Any thread.
bool classShown(i32 acClass);

}  // namespace hcr
