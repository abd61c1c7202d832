#include "parking/adjacency.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "core/model/geo.h"

namespace hcr {
namespace {

constexpr f64 kOverlapFactor = 1.1;
constexpr f64 kDegreesPerNm = 1.0 / 60;
constexpr f64 kSlackDeg = 1e-6;  // more than rounding makes of a latitude

bool lf_overlap(const ParkPos& a, const ParkPos& b) {
    return a.radius + b.radius > kOverlapFactor * distanceNm(a.lat, a.lon, b.lat, b.lon);
}

f64 lf_largestRadius(const std::vector<ParkPos>& stands) {
    f64 largest = 0;
    for (const ParkPos& stand : stands) largest = std::max(largest, stand.radius);
    return largest;
}

}  // namespace

void gf_numberStands(std::vector<ParkPos>& stands) {
    constexpr std::size_t kUsualNeighbours = 8;
    for (std::size_t i = 0; i < stands.size(); ++i) {
        stands[i].number = static_cast<u32>(i + 1);
        stands[i].adjacent.clear();
        stands[i].adjacent.reserve(kUsualNeighbours);
    }
    // Walked from south to north, so that only stands within reach are compared: those of the largest airports would
    // make millions of pairs.
    std::vector<std::size_t> northwards(stands.size());
    std::iota(northwards.begin(), northwards.end(), std::size_t{0});
    std::sort(northwards.begin(), northwards.end(),
              [&stands](std::size_t a, std::size_t b) { return stands[a].lat < stands[b].lat; });
    const f64 largest = lf_largestRadius(stands);
    for (std::size_t i = 0; i < northwards.size(); ++i) {
        ParkPos& a = stands[northwards[i]];
        const f64 reach = (a.radius + largest) / kOverlapFactor * kDegreesPerNm + kSlackDeg;
        for (std::size_t k = i + 1; k < northwards.size() && stands[northwards[k]].lat - a.lat <= reach; ++k) {
            ParkPos& b = stands[northwards[k]];
            if (!lf_overlap(a, b)) continue;
            a.adjacent.push_back(b.number);
            b.adjacent.push_back(a.number);
        }
    }
    for (ParkPos& stand : stands) {
        std::sort(stand.adjacent.begin(), stand.adjacent.end());
        stand.adjacent.shrink_to_fit();
    }
}

}  // namespace hcr
