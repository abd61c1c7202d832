#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>

#include "client.h"
#include "support/temp_folder.h"

namespace hcr {
namespace {

struct SandboxUser : SandboxClient {};

TEST_F(SandboxUser, FollowsItsPathEvenlyAcrossTheDateLineAndNorth) {
    // Flies east over the date line while it turns right through north and climbs.
    Scenario s;
    s.flightAfter = 0;
    s.user = {{10, -10, 179, 1000, 350, 200, false}, {110, -12, -179, 3000, 10, 300, false}};
    start(s);
    open();
    run(0.1);
    const struct {
        f64 at, lat, lon, alt, heading, speed, climbFtPerMin;
    } rows[] = {
        {5, -10, 179, 1000, 350, 200, 0},   {35, -10.5, 179.5, 1500, 355, 225, 1200},
        {60, -11, 180, 2000, 0, 250, 1200}, {85, -11.5, -179.5, 2500, 5, 275, 1200},
        {200, -12, -179, 3000, 10, 300, 0},
    };
    for (const auto& row : rows) {
        run(row.at - gf_sandboxSeconds());
        EXPECT_NEAR(read(0, "Plane Latitude", "degrees"), row.lat, 1e-9) << row.at;
        const f64 lon = read(0, "Plane Longitude", "degrees");
        EXPECT_NEAR(std::remainder(lon - row.lon, 360), 0, 1e-9) << row.at;
        EXPECT_LE(std::abs(lon), 180) << row.at;
        EXPECT_NEAR(read(0, "Plane Altitude", "feet"), row.alt, 1e-6) << row.at;
        EXPECT_NEAR(read(0, "Plane Heading degrees true", "degrees"), row.heading, 1e-6) << row.at;
        EXPECT_NEAR(read(0, "Ground Velocity", "knots"), row.speed, 1e-6) << row.at;
        EXPECT_NEAR(read(0, "Vertical Speed", "feet per minute"), row.climbFtPerMin, 1e-6) << row.at;
        EXPECT_EQ(read(0, "SIM ON GROUND", "Bool"), 0) << row.at;
    }
}

TEST_F(SandboxUser, IsNowhereInTheMenusAndThenStandsOnTheGround) {
    start(gf_defaultScenario());
    open();
    dispatch();
    EXPECT_EQ(read(0, "Plane Latitude", "degrees"), 0);
    run(1.1);
    EXPECT_DOUBLE_EQ(read(0, "Plane Latitude", "degrees"), 52.3086);
    EXPECT_DOUBLE_EQ(read(0, "Plane Alt Above Ground", "feet"), 9);
    EXPECT_DOUBLE_EQ(read(0, "Plane Altitude", "feet"), -2);
    EXPECT_EQ(read(0, "SIM ON GROUND", "Bool"), 1);
    gf_placeSandboxUser(40, -70, 2500, 90, 110, false);
    EXPECT_DOUBLE_EQ(read(0, "Plane Altitude", "feet"), 2500);
    EXPECT_DOUBLE_EQ(read(0, "Plane Longitude", "degrees"), -70);
    EXPECT_EQ(read(0, "SIM ON GROUND", "Bool"), 0);
}

TEST_F(SandboxUser, TheClockTellsZuluTimeDayAndYear) {
    Scenario s = gf_defaultScenario();
    s.utcAtOpen = 1709251195;  // Thu Feb 29 2024 23:59:55
    start(s);
    open();
    const auto expect = [this](f64 seconds, f64 day, f64 year) {
        EXPECT_NEAR(read(0, "ZULU TIME", "Seconds"), seconds, 1e-3);
        EXPECT_EQ(read(0, "ZULU DAY OF YEAR", "Number"), day);
        EXPECT_EQ(read(0, "ZULU YEAR", "Number"), year);
    };
    run(2);
    expect(86397, 60, 2024);
    run(4);
    expect(1, 61, 2024);
    gf_setSandboxUtc(1735689599);  // Tue Dec 31 2024 23:59:59
    expect(86399, 366, 2024);
    run(1);
    expect(0, 1, 2025);
    EXPECT_EQ(read(0, "LIGHT STATES", "Mask"), 3);
}

struct SandboxFiles : SandboxClient {
    test::TempFolder temp;
    const std::filesystem::path& folder = temp.path;

    std::filesystem::path file(const char* name, const std::string& text) {
        test::writeFile(folder / name, text);
        return folder / name;
    }
};

TEST_F(SandboxFiles, TheTraceTellsCallsEventsAndStatesInOrder) {
    start(gf_defaultScenario(), folder / "trace.jsonl");
    open();
    subscribeAll();
    definePosition();
    mapFreezes();
    run(1.5);
    const u32 id = create("A320 \"KLM\"\xff", "KLM1023", 52.31, 4.76, 3500);
    gSimPort.SimConnect_AIReleaseControl(handle, id, 103);
    freeze(id, true, true, true);
    for (int i = 0; i < 7; ++i) write(id, 52.3, 4.75, 3100);
    create("A320", "MUCHTOOLONGTAIL");
    run(1);
    gf_stopSandbox();
    std::ifstream in(folder / "trace.jsonl");
    std::vector<std::string> lines;
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    const auto has = [&lines](const std::string& text) {
        return std::any_of(lines.begin(), lines.end(),
                           [&text](const std::string& line) { return line.find(text) != std::string::npos; });
    };
    EXPECT_TRUE(has(R"("call":"SimConnect_Open","name":"test")"));
    EXPECT_TRUE(
        has("\"call\":\"SimConnect_AICreateNonATCAircraft\",\"title\":\"A320 \\\"KLM\\\"\xef\xbf\xbd\","
            "\"tail\":\"KLM1023\",\"lat\":52.31,\"lon\":4.76,\"alt\":3500,\"pitch\":-3,\"bank\":0,"
            "\"heading\":90,\"on_ground\":0,\"airspeed\":180,\"packet\":"));
    EXPECT_TRUE(has(R"({"t":1.500,"event":"ObjectAdded","object":7,"tail":"KLM1023"})"));
    EXPECT_TRUE(has(R"("event":"Exception","exception":22)"));
    EXPECT_TRUE(has(R"({"t":2.000,"object":7,"tail":"KLM1023")"));
    EXPECT_TRUE(has(R"("lat":52.3,"lon":4.75,"alt":3100,"agl":3111)"));
    EXPECT_TRUE(has(R"("frozen":1,"writes":7,"lights":{"nav":1,"beacon":0)"));
    EXPECT_FALSE(has("SimConnect_SetDataOnSimObject")) << "position writes are only counted";
}

}  // namespace
}  // namespace hcr
