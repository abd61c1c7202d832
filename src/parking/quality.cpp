#include "parking/quality.h"

#include <algorithm>
#include <bitset>
#include <cmath>

#include "core/model/tables.h"

namespace hcr {
namespace {

// A stand with anything known of it counts 10000, which one option more makes hardly better: many stands with a little
// each look livelier than a few of which all is known. The scale brings one option on each stand to about 63.
constexpr i64 kPointsOfStand = 10000, kPointsOfOption = 20, kMostOptionPoints = 4000, kPointsOfDay = 100;
constexpr i64 kPointsOfHalfHour = 2, kMostHalfHours = 600;
constexpr f64 kScale = 0.00625;
constexpr f64 kHighest = 100;

struct Known {
    i64 options = 0, halfHours = 0;
    std::bitset<8> days;

    i64 points() const {
        if (options == 0) return 0;
        return std::min(kPointsOfOption * options, kMostOptionPoints) + kPointsOfStand +
               kPointsOfDay * static_cast<i64>(days.count()) + kPointsOfHalfHour * std::min(halfHours, kMostHalfHours);
    }
};

i32 lf_factor(i64 points, std::size_t stands) {
    const f64 factor = std::round(static_cast<f64>(points) / static_cast<f64>(stands) * kScale);
    return static_cast<i32>(std::clamp(factor, 0.0, kHighest));
}

}  // namespace

std::pair<i32, i32> gf_qualityFactor(const std::vector<ParkPos>& stands) {
    i64 real = 0, soft = 0;
    bool any = false;
    for (const ParkPos& stand : stands) {
        Known known[2];
        for (const StandOption& option : stand.options) {
            any = true;
            if (option.index == 0) continue;
            Known& kind = known[option.hard != 0];
            ++kind.options;
            kind.halfHours += static_cast<i64>(option.hours.count());
            kind.days.set(option.day % kind.days.size());
        }
        soft += known[0].points();
        real += known[1].points();
    }
    if (!any) return {-1, -1};
    return {lf_factor(real, stands.size()), lf_factor(soft, stands.size())};
}

std::pair<i32, i32> gf_qualityFactor() {
    return gf_qualityFactor(gStands);
}

}  // namespace hcr
