#include "core/model/labels.h"

#include <fmt/format.h>

#include "core/model/tables.h"

namespace hcr {

std::string flightLabel(const FlightTexts& ac) {
    if (ac.from.empty() && ac.to.empty()) return fmt::format("{:8} {:8} {:8}", ac.callsign, ac.registration, "");
    return fmt::format("{:8} {:8} {:3}->{:3}", ac.callsign, ac.registration, ac.from, ac.to);
}

std::string airlineModel(const FlightTexts& ac) {
    return fmt::format("{:3} {:4}", ac.airline, ac.model);
}

std::string liveAcLabel(const FlightTexts& ac) {
    return fmt::format("{} {}", flightLabel(ac), airlineModel(ac));
}

std::string standName(u32 standId) {
    if (standId == 0) return "sid==0?";
    const ParkPos* stand = findStand(standId);
    return stand != nullptr ? stand->id : "sid==?";
}

}  // namespace hcr
