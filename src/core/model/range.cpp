#include "core/model/range.h"

#include <algorithm>

#include "shell/controls.h"
#include "shell/parameters.h"

namespace hcr {
namespace {

constexpr i32 kFirstRangeNm = 40;
constexpr u32 kMetresPerMile = 1852;

std::atomic<u32> lf_rangeMetres{kFirstRangeNm * kMetresPerMile};

}  // namespace

std::atomic<f64> gRangeNm{kFirstRangeNm};

void gf_setRange(i32 nm) {
    RANGE.current = std::clamp(nm, RANGE.lower, RANGE.upper);
    if (std::find(RANGE.values.begin(), RANGE.values.end(), RANGE.current) != RANGE.values.end()) {
        gf_showInControl(RANGE);
    }
    gRangeNm = nm;
    lf_rangeMetres = static_cast<u32>(std::max(nm, 0)) * kMetresPerMile;
}

void gf_resetRange() {
    gRangeNm = kFirstRangeNm;
    lf_rangeMetres = kFirstRangeNm * kMetresPerMile;
}

u32 gf_rangeMetres() {
    return lf_rangeMetres;
}

}  // namespace hcr
