#include "core/model/aircraft.h"

#include <array>

namespace hcr {
namespace {

constexpr std::array kLifeStateNames{"buffer", "adding2sim", "active", "liveryrespawn", "removingfromsim"};
constexpr std::array kFlightStateNames{"pushing_back", "pushed_back", "taxi",   "take_off",
                                       "flying",       "parking",     "parked", "birth"};

}  // namespace

const char* lifeStateName(LifeState state) {
    return kLifeStateNames.at(static_cast<std::size_t>(state));
}

const char* flightStateName(FlightState state) {
    return kFlightStateNames.at(static_cast<std::size_t>(state));
}

}  // namespace hcr
