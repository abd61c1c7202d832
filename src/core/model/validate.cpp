#include "core/model/validate.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "core/model/aircraft_class.h"
#include "core/model/geo.h"
#include "core/model/tables.h"

namespace hcr {
namespace {

constexpr f64 kAngleSlack = 1e-9;  // radians; what rounding may add to an angle that was brought into its range
constexpr f64 kLargestCurveT = 0.999999;

bool lf_allFinite(const LiveAc& ac) {
    for (const f64 value : {ac.lat, ac.lon, ac.pitch, ac.bank, ac.heading, ac.alt, ac.vsFtPerSec, ac.tas}) {
        if (!std::isfinite(value)) return false;
    }
    return true;
}

/// The front has the time at which the aircraft gets there, which may be behind the time of the next sample.
bool lf_timesRise(const SampleStream& stream) {
    if (stream.size() < 3) return true;
    const auto notRising = [](const PosSample& a, const PosSample& b) { return b.time <= a.time; };
    return std::adjacent_find(stream.begin() + 1, stream.end(), notRising) == stream.end();
}

/// What is wrong with one record, empty when nothing is.
const char* lf_faultOf(const LiveAc& ac) {
    if (ac.hexid <= kLastStaticId) return "hexid of a static aircraft";
    if (ac.acClass < 0 || ac.acClass >= kClassCount) return "unknown class";
    if (ac.lifeState == LifeState::active && ac.objectId == 0) return "active without an object";
    if (ac.lifeState == LifeState::active && ac.stream.empty()) return "active with an empty stream";
    if (!lf_timesRise(ac.stream)) return "times of the stream don't rise";
    if (!lf_allFinite(ac)) return "position that is no number";
    if (ac.heading < -kAngleSlack || ac.heading > 2 * kPi + kAngleSlack) return "heading outside 0..2 pi";
    if (std::fabs(ac.bank) > kPi + kAngleSlack) return "bank outside +-pi";
    if (ac.curveT < 0 || ac.curveT > kLargestCurveT) return "curve parameter outside its range";
    if (ac.flarePhase < 0 || ac.flarePhase > 4) return "unknown flare phase";
    if (ac.pushbackPhase < 0 || ac.pushbackPhase > 2) return "unknown push-back phase";
    return "";
}

/// The first value but 0 that stands twice, else 0.
u32 lf_twice(std::vector<u32> values) {
    std::sort(values.begin(), values.end());
    const auto equal = [](u32 a, u32 b) { return a == b && a != 0; };
    const auto found = std::adjacent_find(values.begin(), values.end(), equal);
    return found == values.end() ? 0 : *found;
}

}  // namespace

std::string validateLiveTable() {
    std::vector<u32> hexids;
    std::vector<u32> objects;
    for (const LiveAc& ac : gLiveAcs) {
        const char* fault = lf_faultOf(ac);
        if (*fault != '\0') return fmt::format("{} ({}): {}", ac.callsign, ac.hexid, fault);
        hexids.push_back(ac.hexid);
        objects.push_back(ac.objectId);
    }
    if (const u32 hexid = lf_twice(std::move(hexids))) return fmt::format("hexid {} stands twice", hexid);
    if (const u32 object = lf_twice(std::move(objects))) return fmt::format("object {} stands twice", object);
    return {};
}

}  // namespace hcr
