#pragma once

#include <random>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "tools/feed/generator.h"

namespace hcr {

/// Source of chance of one plan. The library's distributions differ between compilers; these don't.
struct FeedRandom {
    explicit FeedRandom(u32 seed) : generator(seed) {}
    std::mt19937 generator;

    f64 between(f64 low, f64 high);
    i32 below(i32 count);
    bool chance(f64 share);
};

/// How a type flies, as far as the paths need it.
struct FeedPerformance {
    f64 approachKt = 137;  ///< over the threshold
    f64 liftOffKt = 150;
    f64 cruiseKt = 440;  ///< over the ground, high up
    f64 lowestCruiseFt = 30000, highestCruiseFt = 40000;
    const char* category = "A3";
};
const FeedPerformance& feedPerformance(std::string_view type);

const std::vector<FeedOperator>& usualOperators();
const std::vector<FeedOperator>& privateOwners();
const std::vector<FeedOperator>& helicopterOwners();

/// Gives out identities, none twice within one fleet.
struct Fleet {
    std::set<u32> hexids;
    std::set<std::string> callsigns, registrations;
};
/// Sets hexid, callsign, iataFlight, type, registration and airline.
void nameAircraft(Fleet& fleet, FeedRandom& random, const std::vector<FeedOperator>& operators,
                  GeneratedAircraft& aircraft);
/// An airport other than `besides`.
std::string otherAirport(FeedRandom& random, std::string_view besides);

}  // namespace hcr
