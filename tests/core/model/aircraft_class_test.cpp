#include "core/model/aircraft_class.h"

#include <gtest/gtest.h>

#include "core/model/geo.h"

namespace hcr {
namespace {

TEST(AircraftClass, TheTableHoldsWhatEachClassCanDo) {
    struct Row {
        const char* name;
        f64 rotation, climbPitch, taxiTurn;  // degrees; degrees a centisecond
        f64 climb, taxiSpeed, takeOffSpeed;  // feet a centisecond, knots
        f64 bank, bankRate, pitchRate;       // degrees; degrees a centisecond
        i32 flare, touchdown, rotationTicks, climbTicks;
    };
    const Row rows[] = {
        {"Light", -9, -15, 0.15, 0.5, 5, 90, 40, 0.035, 0.01, 250, 250, 100, 200},
        {"Buzjets", -8, -18, 0.10, 0.75, 4.5, 110, 35, 0.0275, 0.0085, 300, 300, 200, 250},
        {"Large", -6, -16.5, 0.07, 0.6, 4, 140, 30, 0.02, 0.0075, 400, 350, 200, 300},
        {"Heavy", -5, -12.5, 0.05, 0.5, 3, 150, 20, 0.015, 0.005, 450, 450, 250, 400},
        {"HighPerf", -6, -20, 0.10, 1.0, 4.5, 220, 90, 0.1, 0.03, 150, 150, 100, 200},
        {"Rotorcraft", -20, -30, 0.20, 0.75, 5, 0, 75, 0.06, 0.03, 100, 100, 100, 100},
    };
    for (i32 c = 0; c < kClassCount; ++c) {
        const Row& row = rows[c];
        SCOPED_TRACE(row.name);
        EXPECT_STREQ(classValue(kClassNames, c), row.name);
        EXPECT_DOUBLE_EQ(classValue(kRotationPitch, c), row.rotation * kDegToRad);
        EXPECT_DOUBLE_EQ(classValue(kClimbPitch, c), row.climbPitch * kDegToRad);
        EXPECT_DOUBLE_EQ(classValue(kTaxiTurnRate, c), row.taxiTurn * kDegToRad);
        EXPECT_EQ(classValue(kMaxClimbPerCs, c), row.climb);
        EXPECT_EQ(classValue(kStandTaxiSpeed, c), row.taxiSpeed);
        EXPECT_EQ(classValue(kTakeOffMinSpeed, c), row.takeOffSpeed);
        EXPECT_DOUBLE_EQ(classValue(kMaxBank, c), row.bank * kDegToRad);
        EXPECT_DOUBLE_EQ(classValue(kBankRate, c), row.bankRate * kDegToRad);
        EXPECT_DOUBLE_EQ(classValue(kPitchRate, c), row.pitchRate * kDegToRad);
        EXPECT_EQ(classValue(kFlareTicks, c), row.flare);
        EXPECT_EQ(classValue(kTouchdownTicks, c), row.touchdown);
        EXPECT_EQ(classValue(kRotationTicks, c), row.rotationTicks);
        EXPECT_EQ(classValue(kClimbPitchTicks, c), row.climbTicks);
    }
}

}  // namespace
}  // namespace hcr
