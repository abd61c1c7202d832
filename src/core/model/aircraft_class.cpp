#include "core/model/aircraft_class.h"

#include "core/model/geo.h"
#include "shell/parameters.h"

namespace hcr {
namespace {

constexpr ClassTable<f64> lf_radians(ClassTable<f64> degrees) {
    for (f64& value : degrees) value *= kDegToRad;
    return degrees;
}

}  // namespace

// Columns: Light, Buzjets, Large, Heavy, HighPerf, Rotorcraft.
constinit const ClassTable<const char*> kClassNames{"Light", "Buzjets", "Large", "Heavy", "HighPerf", "Rotorcraft"};
constinit const ClassTable<f64> kRotationPitch = lf_radians({-9, -8, -6, -5, -6, -20});
constinit const ClassTable<f64> kClimbPitch = lf_radians({-15, -18, -16.5, -12.5, -20, -30});
constinit const ClassTable<f64> kTaxiTurnRate = lf_radians({0.15, 0.10, 0.07, 0.05, 0.10, 0.20});
constinit const ClassTable<f64> kMaxClimbPerCs{0.5, 0.75, 0.6, 0.5, 1.0, 0.75};
constinit const ClassTable<f64> kStandTaxiSpeed{5, 4.5, 4, 3, 4.5, 5};
constinit const ClassTable<f64> kTakeOffMinSpeed{90, 110, 140, 150, 220, 0};
constinit const ClassTable<f64> kMaxBank = lf_radians({40, 35, 30, 20, 90, 75});
constinit const ClassTable<f64> kBankRate = lf_radians({0.035, 0.0275, 0.02, 0.015, 0.1, 0.06});
constinit const ClassTable<f64> kPitchRate = lf_radians({0.01, 0.0085, 0.0075, 0.005, 0.03, 0.03});
constinit const ClassTable<i32> kFlareTicks{250, 300, 400, 450, 150, 100};
constinit const ClassTable<i32> kTouchdownTicks{250, 300, 350, 450, 150, 100};
constinit const ClassTable<i32> kRotationTicks{100, 200, 200, 250, 100, 100};
constinit const ClassTable<i32> kClimbPitchTicks{200, 250, 300, 400, 200, 100};

bool classShown(i32 acClass) {
    switch (acClass) {
        case Light:
            return LIGHT_AIRCRAFT.current;
        case HighPerf:
            return HIGH_PERF_AIRCRAFT.current;
        case Rotorcraft:
            return HELICOPTERS.current;
        default:
            return acClass >= 0 && acClass < kClassCount;
    }
}

}  // namespace hcr
