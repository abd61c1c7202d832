#pragma once

#include <random>

#include "platform/types.h"

namespace hcr {

/// The calling thread's Mersenne Twister, seeded once from the platform's random device.
std::mt19937& gf_randomGenerator();
/// Gives the calling thread's generator a known seed; for tests.
void gf_seedRandom(u32 seed);
/// 0 when RANDOM is off or n is below 2, else the next word modulo n.
u32 gf_randomBelow(u32 n);
/// value plus or minus percent of it, the sign from the next word; percent 0 or below gives the value.
f64 gf_jitter(f64 value, f64 percent);

}  // namespace hcr
