#include "core/model/labels.h"

#include <fmt/format.h>

#include <algorithm>
#include <string_view>

#include "core/model/tables.h"
#include "shell/text.h"

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

std::string gf_airlineOfCallsign(const std::string& callsign) {
    const auto letter = [](char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); };
    if (callsign.size() < 4 || !std::all_of(callsign.begin(), callsign.begin() + 3, letter)) return {};
    if (callsign[3] < '0' || callsign[3] > '9') return {};
    return gf_upper(std::string_view(callsign).substr(0, 3));
}

}  // namespace hcr
