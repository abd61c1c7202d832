#include <gtest/gtest.h>

#include <cmath>

#include "core/model/geo.h"
#include "tests/support/temp_folder.h"
#include "tools/replay/flight_log.h"
#include "tools/replay/measures.h"
#include "tools/replay/options.h"

namespace hcr::test {
namespace {

constexpr f64 kDegreesPerSecond = 200.0 / 3600 / 60;  // at 200 kt along a meridian

/// Level to the north at 200 kt for two minutes, a report every ten seconds, flown exactly so.
FlightRecord lf_straight() {
    FlightRecord flight;
    flight.hexid = 4740000;
    for (i32 i = 0; i <= 12; ++i) {
        flight.reports.push_back({30.0 + i * 10, 52 + i * 10 * kDegreesPerSecond, 4, 2000, 200});
    }
    for (i32 i = 0; i <= 240; ++i) {
        flight.flown.push_back({30 + i * 0.5, 52 + i * 0.5 * kDegreesPerSecond, 4, 2000, 0, 7});
    }
    flight.lastReportAt = 150;
    return flight;
}

std::string lf_failure(const std::vector<std::string>& arguments) {
    try {
        parseReplayOptions(arguments);
    } catch (const std::runtime_error& e) {
        return e.what();
    }
    return {};
}

}  // namespace

TEST(ReplayMeasures, AFlightAsReportedHasNoFault) {
    Measures m = measure(lf_straight());
    EXPECT_LT(spreadOf(m.pathMetres).worst, 0.01);
    EXPECT_LT(spreadOf(m.crossMetres).worst, 0.01);
    EXPECT_LT(spreadOf(m.timeErrors).worst, 0.01);
    EXPECT_NEAR(spreadOf(m.speedErrors).worst, 0, 0.3);
    EXPECT_NEAR(m.seconds, 119.5, 0.6);
    EXPECT_EQ(m.teeth + m.deaf + m.jumps + m.steps + m.flicker + m.removedEarly, 0);
    EXPECT_EQ(m.sidewaysSeconds + m.diveSeconds, 0);
}

TEST(ReplayMeasures, EachFaultIsSeenAndNothingElse) {
    FlightRecord flight = lf_straight();
    for (std::size_t i = 100; i < 120; ++i) flight.flown[i].alt += 25.0 * static_cast<f64>(i - 99);
    for (std::size_t i = 120; i < 140; ++i) flight.flown[i].alt += 25.0 * static_cast<f64>(140 - i);
    EXPECT_EQ(measure(flight).teeth, 1) << "up by 500 ft and down again";
    EXPECT_EQ(measure(flight).diveSeconds, 0);

    flight = lf_straight();
    for (std::size_t i = 100; i < 110; ++i) flight.flown[i].heading = 61;
    EXPECT_NEAR(measure(flight).sidewaysSeconds, 5, 0.01);

    flight = lf_straight();
    for (std::size_t i = 0; i < 10; ++i) flight.flown[100 + i].alt -= 60.0 * static_cast<f64>(i);
    EXPECT_NEAR(measure(flight).diveSeconds, 4.5, 0.01);

    flight = lf_straight();
    for (std::size_t i = 60; i < 200; ++i) flight.flown[i].lat = flight.flown[60].lat;
    EXPECT_EQ(measure(flight).deaf, 1);

    flight = lf_straight();
    for (FlownPoint& p : flight.flown) p.lon += 100 / (std::cos(52 * kDegToRad) * 60 * kMetresPerNm);
    Measures beside = measure(flight);
    EXPECT_NEAR(spreadOf(beside.pathMetres).median, 100, 1);
    EXPECT_NEAR(spreadOf(beside.crossMetres).median, 100, 1);

    flight = lf_straight();
    for (FlownPoint& p : flight.flown) p.lat -= 4 * kDegreesPerSecond;
    Measures late = measure(flight);
    EXPECT_NEAR(spreadOf(late.timeErrors).median, 4, 0.01);

    flight = lf_straight();
    for (std::size_t i = 150; i < flight.flown.size(); ++i) flight.flown[i].object = 8;
    EXPECT_EQ(measure(flight).flicker, 1);
    flight.flown.resize(200);
    EXPECT_EQ(measure(flight).removedEarly, 1);
}

TEST(ReplayOptions, TellWhatIsWrongWithThem) {
    EXPECT_EQ(lf_failure({"x.tsv", "--airport", "52.3,4.76,-11", "--user", "52,4", "--range", "60", "--measure"}), "");
    EXPECT_EQ(lf_failure({"--help"}), "");
    for (const std::vector<std::string>& wrong : std::vector<std::vector<std::string>>{{},
                                                                                       {"a", "b"},
                                                                                       {"a", "--what", "1"},
                                                                                       {"a", "--user", "52"},
                                                                                       {"a", "--user", "91,4"},
                                                                                       {"a", "--range", "0"},
                                                                                       {"a", "--minutes"},
                                                                                       {"a", "--minutes", "nan"}}) {
        EXPECT_NE(lf_failure(wrong), "");
    }
}

TEST(ReplayOptions, TheParkAirportComesFromNumbersOrFromAFile) {
    const AirportEntry place = readReplayAirport("52.3,4.76,-11");
    EXPECT_TRUE(place.lat == 52.3 && place.lon == 4.76 && place.alt == -11 && !place.code.empty());
    const TempFolder folder;
    writeFile("EHAM.xml",
              "<root><parameters><parameter name=\"altitude\" value=\"-11\"/></parameters><parkpositions>"
              "<parkpos latitude=\"52.2\" longitude=\"4.7\"/><parkpos latitude=\"52.4\" longitude=\"4.8\"/>"
              "</parkpositions></root>");
    const AirportEntry file = readReplayAirport("EHAM.xml");
    EXPECT_EQ(file.code, "EHAM");
    EXPECT_NEAR(file.lat, 52.3, 1e-9);
    EXPECT_NEAR(file.lon, 4.75, 1e-9);
    EXPECT_EQ(file.alt, -11);
    writeFile("broken.xml", "<root><parameters>");
    writeFile("empty.xml", "<root/>");
    for (const char* wrong : {"broken.xml", "empty.xml", "none.xml", "52,4", "52,4,x", "99,4,0"}) {
        EXPECT_THROW(readReplayAirport(wrong), std::runtime_error) << wrong;
    }
}

}  // namespace hcr::test
