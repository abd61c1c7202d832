#include "tools/feed/fleet.h"

#include <fmt/format.h>

#include <algorithm>

namespace hcr {
namespace {

constexpr std::string_view kLetters = "ABCDEFGHIJKLMNOPQRSTUVWXYZ";
// Letters that end an alphanumeric callsign; I, O and Q are too like digits.
constexpr std::string_view kCallsignLetters = "ABCDEFGHJKLMNPRSTUVWXYZ";

struct TypePerformance {
    std::string_view type;
    FeedPerformance performance;
};

constexpr TypePerformance kPerformances[] = {
    {"A319", {128, 140, 440, 33000, 39000, "A3"}}, {"A320", {135, 147, 445, 33000, 39000, "A3"}},
    {"A20N", {134, 146, 445, 34000, 39000, "A3"}}, {"A321", {140, 152, 445, 32000, 37000, "A3"}},
    {"A21N", {140, 152, 445, 32000, 37000, "A3"}}, {"B738", {141, 152, 445, 34000, 40000, "A3"}},
    {"B38M", {142, 153, 448, 34000, 40000, "A3"}}, {"E190", {125, 140, 435, 33000, 39000, "A3"}},
    {"E75L", {122, 136, 430, 33000, 39000, "A3"}}, {"AT76", {112, 118, 270, 17000, 24000, "A2"}},
    {"DH8D", {118, 124, 340, 19000, 25000, "A2"}}, {"A332", {138, 155, 470, 36000, 41000, "A5"}},
    {"A333", {138, 155, 470, 36000, 41000, "A5"}}, {"A359", {141, 158, 485, 37000, 41000, "A5"}},
    {"A388", {138, 160, 485, 36000, 41000, "A5"}}, {"B77W", {149, 168, 485, 33000, 39000, "A5"}},
    {"B772", {140, 160, 485, 33000, 39000, "A5"}}, {"B789", {145, 162, 485, 36000, 41000, "A5"}},
    {"B744", {152, 170, 485, 32000, 38000, "A5"}}, {"C56X", {108, 112, 400, 36000, 43000, "A2"}},
    {"C25A", {105, 110, 380, 34000, 43000, "A2"}}, {"GLF5", {120, 130, 460, 39000, 45000, "A3"}},
    {"PC12", {85, 82, 250, 20000, 28000, "A1"}},   {"BE20", {100, 105, 260, 20000, 27000, "A1"}},
    {"C172", {65, 60, 105, 1200, 3000, "A1"}},     {"P28A", {66, 62, 110, 1200, 3000, "A1"}},
    {"DA40", {70, 64, 125, 1400, 3500, "A1"}},     {"SR22", {78, 76, 160, 2000, 6000, "A1"}},
    {"EC35", {45, 40, 120, 800, 1500, "A7"}},      {"A139", {45, 40, 135, 800, 2000, "A7"}},
};

constexpr std::string_view kAirports[] = {"LHR", "CDG", "FRA", "MUC", "MAD", "BCN", "FCO", "ZRH", "VIE", "CPH",
                                          "ARN", "OSL", "HEL", "WAW", "PRG", "BUD", "LIS", "DUB", "MAN", "EDI",
                                          "HAM", "BER", "DUS", "GVA", "MXP", "ATH", "IST", "AMS", "JFK", "DXB"};

std::string lf_letters(FeedRandom& random, std::size_t count) {
    std::string text;
    for (std::size_t i = 0; i < count; ++i) text += kLetters[static_cast<std::size_t>(random.below(26))];
    return text;
}

std::string lf_registration(FeedRandom& random, const std::string& prefix) {
    constexpr std::size_t kLength = 6;  // with the hyphen
    if (prefix.find('-') == std::string::npos) {
        return prefix + fmt::format("{}", 100 + random.below(900)) + lf_letters(random, 2);
    }
    return prefix + lf_letters(random, kLength - std::min(kLength, prefix.size()));
}

// "KLM1023", or "KLM47B" as crews use them to tell alike numbers apart.
std::string lf_flightTail(FeedRandom& random) {
    if (random.chance(0.6)) return fmt::format("{}", 100 + random.below(1900));
    const auto letter = static_cast<std::size_t>(random.below(static_cast<i32>(kCallsignLetters.size())));
    return fmt::format("{}{}", 1 + random.below(99), kCallsignLetters[letter]);
}

template <typename Set, typename Make>
auto lf_unused(Set& used, Make make) {
    auto value = make();
    while (!used.insert(value).second) value = make();
    return value;
}

}  // namespace

f64 FeedRandom::between(f64 low, f64 high) {
    constexpr f64 kWords = 4294967296.0;
    return low + (high - low) * (static_cast<f64>(generator()) / kWords);
}

i32 FeedRandom::below(i32 count) {
    return count < 2 ? 0 : static_cast<i32>(generator() % static_cast<u32>(count));
}

bool FeedRandom::chance(f64 share) {
    return between(0, 1) < share;
}

const FeedPerformance& feedPerformance(std::string_view type) {
    static constexpr FeedPerformance kUnknownType;
    const auto found = std::find_if(std::begin(kPerformances), std::end(kPerformances),
                                    [type](const TypePerformance& row) { return row.type == type; });
    return found == std::end(kPerformances) ? kUnknownType : found->performance;
}

const std::vector<FeedOperator>& usualOperators() {
    static const std::vector<FeedOperator> kOperators = {
        {"KLM", "KL", "AMS", "PH-", 0x484000, {"B738", "B738", "E190", "B77W", "A332", "B789"}},
        {"KLM", "KL", "AMS", "PH-", 0x484000, {"E190", "E75L", "B738"}},
        {"TRA", "HV", "AMS", "PH-", 0x485000, {"B738", "A21N"}},
        {"DLH", "LH", "FRA", "D-A", 0x3C6000, {"A320", "A20N", "A319", "A321"}},
        {"BAW", "BA", "LHR", "G-", 0x400000, {"A320", "A319", "A20N"}},
        {"AFR", "AF", "CDG", "F-", 0x390000, {"A320", "A319", "E190"}},
        {"EZY", "U2", "LTN", "G-", 0x406000, {"A319", "A320", "A20N"}},
        {"SAS", "SK", "CPH", "SE-", 0x4A8000, {"A20N", "A320"}},
        {"SWR", "LX", "ZRH", "HB-", 0x4B1000, {"A320", "A20N"}},
        {"VLG", "VY", "BCN", "EC-", 0x344000, {"A320", "A20N"}},
        {"FIN", "AY", "HEL", "OH-", 0x461000, {"A319", "E190"}},
        {"LOT", "LO", "WAW", "SP-", 0x48A000, {"E190", "B38M"}},
        {"TAP", "TP", "LIS", "CS-", 0x490000, {"A20N", "A321"}},
        {"UAL", "UA", "EWR", "N", 0xA10000, {"B772", "B789"}},
        {"DAL", "DL", "ATL", "N", 0xA80000, {"A333", "A359"}},
        {"UAE", "EK", "DXB", "A6-", 0x896000, {"A388", "B77W"}},
        {"NJE", "1I", "LIS", "CS-", 0x492000, {"C56X", "GLF5"}},
    };
    return kOperators;
}

const std::vector<FeedOperator>& privateOwners() {
    static const std::vector<FeedOperator> kOwners = {
        {"", "", "", "PH-", 0x486000, {"C172", "P28A", "DA40"}},
        {"", "", "", "D-E", 0x3DC000, {"C172", "SR22", "P28A"}},
        {"", "", "", "OO-", 0x44A000, {"DA40", "SR22"}},
    };
    return kOwners;
}

const std::vector<FeedOperator>& helicopterOwners() {
    static const std::vector<FeedOperator> kOwners = {
        {"", "", "", "PH-", 0x487000, {"EC35", "EC35", "A139"}},
    };
    return kOwners;
}

void nameAircraft(Fleet& fleet, FeedRandom& random, const std::vector<FeedOperator>& operators,
                  GeneratedAircraft& aircraft) {
    constexpr i32 kAddressesPerOperator = 0x1000;
    const FeedOperator& chosen = operators[static_cast<std::size_t>(random.below(static_cast<i32>(operators.size())))];
    aircraft.airline = chosen.icao;
    aircraft.type = chosen.types[static_cast<std::size_t>(random.below(static_cast<i32>(chosen.types.size())))];
    aircraft.hexid =
        lf_unused(fleet.hexids, [&] { return chosen.hexBase + static_cast<u32>(random.below(kAddressesPerOperator)); });
    aircraft.registration =
        lf_unused(fleet.registrations, [&] { return lf_registration(random, chosen.registrationPrefix); });
    if (chosen.icao.empty()) {
        aircraft.callsign = aircraft.registration;
        std::erase(aircraft.callsign, '-');
        fleet.callsigns.insert(aircraft.callsign);
        return;
    }
    aircraft.callsign = lf_unused(fleet.callsigns, [&] { return chosen.icao + lf_flightTail(random); });
    aircraft.iataFlight = chosen.iata + fmt::format("{}", 100 + random.below(1900));
}

std::string otherAirport(FeedRandom& random, std::string_view besides) {
    for (;;) {
        const std::string_view airport = kAirports[static_cast<std::size_t>(random.below(std::size(kAirports)))];
        if (airport != besides) return std::string(airport);
    }
}

}  // namespace hcr
