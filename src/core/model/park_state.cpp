#include "core/model/park_state.h"

namespace hcr {

std::mutex gParkAirportsMutex;
std::vector<ParkAirportEntry> gParkAirports;
AirportEntry gParkAirport;
std::string gSelectedStand;

void gf_resetParkState() {
    {
        const std::lock_guard lock(gParkAirportsMutex);
        gParkAirports = {};
    }
    gParkAirport = {};
    gSelectedStand = {};
}

bool gf_hasParkAirport() {
    return !gParkAirport.code.empty();
}

f64 gf_parkAirportAlt(f64 without) {
    return gf_hasParkAirport() ? gParkAirport.alt : without;
}

std::string gf_standUnderUser(LatLon) {
    return {};
}

void gf_rememberUserStand() {}

}  // namespace hcr
