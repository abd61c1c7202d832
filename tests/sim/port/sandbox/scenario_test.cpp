#include "sim/port/sandbox/scenario.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace hcr {
namespace {

std::string lf_errorOf(const std::string& json) {
    try {
        gf_parseScenario(json, "s.json");
    } catch (const std::runtime_error& e) {
        return e.what();
    }
    return {};
}

TEST(Scenario, AnEmptyObjectIsTheDefaultOne) {
    const Scenario s = gf_parseScenario("{}", "s.json");
    const Scenario d = gf_defaultScenario();
    EXPECT_EQ(s.applicationName, "KittyHawk");
    EXPECT_EQ(s.elevation, d.elevation);
    ASSERT_EQ(s.user.size(), 1u);
    EXPECT_EQ(s.user[0].lat, d.user[0].lat);
    EXPECT_TRUE(s.allTitlesInstalled);
}

TEST(Scenario, EveryFieldIsRead) {
    const Scenario s = gf_parseScenario(R"({
        "applicationName": "SunRise", "versionMajor": 12, "versionMinor": 1, "buildMajor": 2, "buildMinor": 4294967295,
        "openAfter": 1.5, "flightAfter": 2.5, "frameRate": 60, "utcAtOpen": 1700000000, "elevation": 33,
        "ground": [{"lat": 1, "lon": 2, "radiusNm": 3, "elevation": 4}],
        "userTitle": "T", "userModel": "M",
        "user": [{"at": 0, "lat": -90, "lon": 180}, {"at": 0.5, "lat": 5, "lon": -180, "alt": 7, "heading": 360,
                  "groundSpeed": 9, "onGround": false}],
        "allTitlesInstalled": false, "titles": [{"title": "H", "staticCgFt": 4, "staticPitchDeg": -1,
                                                 "helicopter": true}],
        "installed": ["A", "B"], "refused": ["C"], "maxObjects": 12, "announceAfter": 2.5,
        "faults": [{"at": 1, "kind": "quit", "seconds": 3}, {"at": 2, "kind": "teleport", "lat": 1, "lon": 2},
                   {"at": 3, "kind": "failCall", "call": "SimConnect_Open", "count": 4},
                   {"at": 4, "kind": "slowFrames", "rate": 10, "seconds": 5},
                   {"at": 5, "kind": "exception", "number": 22}, {"at": 6, "kind": "removeObject", "text": "KLM1"},
                   {"at": 7, "kind": "pause"}, {"at": 8, "kind": "resume"}, {"at": 9, "kind": "flightLoaded"},
                   {"at": 10, "kind": "newFile"}, {"at": 11, "kind": "addTitle", "text": "C"},
                   {"at": 12, "kind": "refuseTitle", "text": "A"},
                   {"at": 13, "kind": "addObject", "text": "AS-GEN", "lat": 3, "lon": 4}]})",
                                        "s.json");
    EXPECT_EQ(s.applicationName, "SunRise");
    EXPECT_EQ(s.buildMinor, 4294967295u);
    EXPECT_EQ(s.openAfter, 1.5);
    EXPECT_EQ(s.frameRate, 60);
    EXPECT_EQ(s.elevation, 33);
    EXPECT_EQ(s.ground.at(0).radiusNm, 3);
    EXPECT_EQ(s.user.at(1).groundSpeed, 9);
    EXPECT_TRUE(s.user[0].onGround);
    EXPECT_FALSE(s.user[1].onGround);
    EXPECT_TRUE(s.titles.at(0).helicopter);
    EXPECT_EQ(s.installed.size() + s.refused.size(), 3u);
    EXPECT_EQ(s.maxObjects, 12);
    EXPECT_EQ(s.announceAfter, 2.5);
    ASSERT_EQ(s.faults.size(), 13u);
    EXPECT_EQ(s.faults[2].count, 4);
    EXPECT_EQ(s.faults[2].call, "SimConnect_Open");
    EXPECT_EQ(s.faults[3].rate, 10);
    EXPECT_EQ(s.faults[4].number, 22u);
    EXPECT_EQ(s.faults[12].kind, FaultKind::addObject);
    EXPECT_EQ(s.faults[12].lon, 4);
}

TEST(Scenario, WhatIsWrongIsToldWithFileAndField) {
    const struct {
        const char* json;
        const char* error;
    } rows[] = {
        {"[]", "s.json: the file must be an object"},
        {R"({"elevatoin": 3})", "s.json: elevatoin is not known here"},
        {R"({"elevation": "3"})", "s.json: elevation must be a number from -2000 to 30000"},
        {R"({"frameRate": 0})", "s.json: frameRate must be a number from 0.1 to 1000"},
        {R"({"maxObjects": 1.5})", "s.json: maxObjects must be a whole number"},
        {R"({"versionMajor": -1})", "s.json: versionMajor must be a number from 0 to 4294967295"},
        {R"({"userTitle": 3})", "s.json: userTitle must be a text"},
        {R"({"allTitlesInstalled": 1})", "s.json: allTitlesInstalled must be true or false"},
        {R"({"installed": "A"})", "s.json: installed must be a list"},
        {R"({"installed": ["A", 3]})", "s.json: installed[1] must be a text"},
        {R"({"user": []})", "s.json: user must hold at least one point"},
        {R"({"user": [3]})", "s.json: user[0] must be an object"},
        {R"({"user": [{"lat": 91, "lon": 0}]})", "s.json: user[0].lat must be a number from -90 to 90"},
        {R"({"user": [{"lat": 1}]})", "s.json: user[0].lon is missing"},
        {R"({"user": [{"lat": 1, "lon": 1, "speed": 3}]})", "s.json: user[0].speed is not known here"},
        {R"({"user": [{"lat": 1, "lon": 1}, {"lat": 2, "lon": 1}]})",
         "s.json: user[1].at must be above that of the point before"},
        {R"({"ground": [{"lat": 1, "lon": 1, "radiusNm": -1, "elevation": 0}]})",
         "s.json: ground[0].radiusNm must be a number from 0 to 10800"},
        {R"({"titles": [{"staticCgFt": 3}]})", "s.json: titles[0].title is missing"},
        {R"({"faults": [{"kind": "quit"}]})", "s.json: faults[0].at is missing"},
        {R"({"faults": [{"at": 1, "kind": "crash"}]})", R"(s.json: faults[0].kind: there is no fault "crash")"},
        {R"({"faults": [{"at": 1, "kind": "failCall", "call": "Open"}]})",
         R"(s.json: faults[0].call: there is no call "Open")"},
        {R"({"faults": [{"at": 1, "kind": "slowFrames"}]})", "s.json: faults[0].rate is missing"},
        {R"({"faults": [{"at": 1, "kind": "resume", "lat": 3}]})", "s.json: faults[0].lat is not known here"},
    };
    for (const auto& row : rows) EXPECT_EQ(lf_errorOf(row.json), row.error) << row.json;
    for (const char* broken : {"", "{", "{\"a\":1e999}", "\xff", "{} x"}) {
        EXPECT_EQ(lf_errorOf(broken).rfind("s.json: ", 0), 0u) << broken;
    }
}

}  // namespace
}  // namespace hcr
