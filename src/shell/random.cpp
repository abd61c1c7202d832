#include "shell/random.h"

#include "shell/parameters.h"

namespace hcr {

std::mt19937& gf_randomGenerator() {
    thread_local std::mt19937 generator{std::random_device{}()};
    return generator;
}

void gf_seedRandom(u32 seed) {
    gf_randomGenerator().seed(seed);
}

u32 gf_randomBelow(u32 n) {
    if (!RANDOM.current || n < 2) return 0;
    return static_cast<u32>(gf_randomGenerator()() % n);
}

f64 gf_jitter(f64 value, f64 percent) {
    if (!(percent > 0)) return value;
    const f64 part = value * percent / 100;
    return (gf_randomGenerator()() & 1U) == 0 ? value + part : value - part;
}

}  // namespace hcr
