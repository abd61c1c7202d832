#include "parking/airport_parameters.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "core/model/range.h"
#include "shell/controls.h"
#include "shell/parameter_file.h"
#include "shell/parameters.h"

namespace hcr {
namespace {

struct AirportParameters {
    i32 maxLive = 0, maxFit = 0, percentage = 0, range = 0;
    bool autoRange = false, initialLoadOnly = false, parkSoft = false, week = false;
};

std::optional<AirportParameters> lf_kept;  // the user's own, while an airport has its own in their place

template <typename IntControl>
void lf_putBack(IntControl& parameter, i32 value) {
    parameter.current = std::clamp(value, parameter.lower, parameter.upper);
    gf_showInControl(parameter);
    gf_storeParameter(parameter);
}

void lf_putBack(CheckBox& box, bool value) {
    box.current = value;
    gf_showInControl(box);
    gf_storeParameter(box);
}

}  // namespace

void gf_rememberAirportParameters() {
    if (lf_kept) return;
    lf_kept =
        AirportParameters{MAX_LIVE_SEL.current, MAX_FIT.current,           parking_percentage.current, RANGE.current,
                          AUTO_RANGE.current,   INITIAL_LOAD_ONLY.current, PARK_SOFT.current,          WEEK.current};
}

void gf_restoreAirportParameters() {
    if (!lf_kept) return;
    const AirportParameters kept = *lf_kept;
    lf_kept.reset();
    lf_putBack(MAX_LIVE_SEL, kept.maxLive);
    MAX_FIT.current = std::clamp(kept.maxFit, MAX_FIT.lower, MAX_FIT.upper);
    gf_storeParameter(MAX_FIT);
    gf_hoursFromMaxFit();
    parking_percentage.current = std::clamp(kept.percentage, parking_percentage.lower, parking_percentage.upper);
    gf_showInControl(parking_percentage);
    lf_putBack(AUTO_RANGE, kept.autoRange);
    gf_setRange(kept.range);
    gf_storeParameter(RANGE);
    lf_putBack(INITIAL_LOAD_ONLY, kept.initialLoadOnly);
    lf_putBack(PARK_SOFT, kept.parkSoft);
    lf_putBack(WEEK, kept.week);
}

void gf_forgetAirportParameters() {
    lf_kept.reset();
}

void gf_maxFitFromHours() {
    const i32 halfHours = static_cast<i32>(std::lround(2 * MAX_FIT_FL.current)) - 1;
    MAX_FIT.current = std::clamp(halfHours, MAX_FIT.lower, MAX_FIT.upper);
}

void gf_hoursFromMaxFit() {
    MAX_FIT_FL.current = static_cast<f32>(MAX_FIT.current + 1) / 2;
    gf_showInControl(MAX_FIT_FL);
}

}  // namespace hcr
