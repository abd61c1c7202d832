#include "liveries/class_values.h"

#include "core/model/aircraft_class.h"
#include "liveries/dbase.h"
#include "shell/random.h"

namespace hcr {
namespace {

constexpr f64 kRotationSpread = 2.5, kClimbSpread = 5;  // percent: no two aircraft rotate alike

}  // namespace

void setClassValues(ParkedAc& ac) {
    const i32 acClass = gf_acClass(ac.model);
    ac.acClass = acClass;
    ac.rotationPitch = gf_jitter(classValue(kRotationPitch, acClass), kRotationSpread);
    ac.climbPitch = gf_jitter(classValue(kClimbPitch, acClass), kClimbSpread);
    ac.taxiTurnRate = ac.turnRate = classValue(kTaxiTurnRate, acClass);
    ac.maxClimbPerCs = classValue(kMaxClimbPerCs, acClass);
    ac.standTaxiSpeed = classValue(kStandTaxiSpeed, acClass);
    ac.flareTicks = classValue(kFlareTicks, acClass);
    ac.touchdownTicks = classValue(kTouchdownTicks, acClass);
    ac.rotationTicks = classValue(kRotationTicks, acClass);
    ac.climbPitchTicks = classValue(kClimbPitchTicks, acClass);
    ac.halfSpanNm = gf_halfSpanNm(ac.model);
}

}  // namespace hcr
