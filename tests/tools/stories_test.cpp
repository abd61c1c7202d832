#include "tools/tracks/stories.h"

#include <gtest/gtest.h>

#include "sim/definitions.h"
#include "support/temp_folder.h"

namespace hcr::test {
namespace {

/// One aircraft from its creation to a state, long before the end of the session.
std::string session(const std::string& object = "7", const std::string& gear = "1", const std::string& title = "A320") {
    return R"({"t":0,"call":"SimConnect_MapClientEventToSimEvent","event":219,"name":"GEAR_SET","packet":3}
{"t":31.5,"call":"SimConnect_AICreateNonATCAircraft","title":")" +
           title + R"(","tail":"KLM1","lat":52.31,"packet":41}
{"t":31.5,"event":"ObjectAdded","object":)" +
           object + R"(,"tail":"KLM1"}
{"t":31.6,"call":"SimConnect_RequestDataOnSimObject","request":102,"object":)" +
           object + R"(,"packet":42}
{"t":31.7,"call":"SimConnect_AIReleaseControl","object":)" +
           object + R"(,"request":103,"packet":43}
{"t":33.1,"call":"SimConnect_TransmitClientEvent","object":)" +
           object + R"(,"event":219,"data":)" + gear + R"(}
{"t":34,"object":)" +
           object + R"(,"tail":"KLM1","lat":52.3,"on_ground":0,"gear":)" + gear + R"(,"lights":{"nav":1}}
{"t":100,"event":"Sim","data":0}
)";
}

std::vector<std::string> differences(const std::string& one, const std::string& other) {
    const TempFolder folder;
    writeFile("one.jsonl", one);
    writeFile("other.jsonl", other);
    return compareStories(readStories("one.jsonl"), readStories("other.jsonl"));
}

using Lines = std::vector<std::string>;

TEST(Stories, TimesPlacesNumbersOfObjectsAndDataRequestsDontMatter) {
    std::string other = session("12");
    other.replace(other.find("52.31"), 5, "51.00");
    other.replace(other.find("\"t\":33.1"), 8, "\"t\":40.2");
    const std::size_t request = other.find(R"({"t":31.6)");
    other.erase(request, other.find('\n', request) - request);  // leaves an empty line, which is no JSON
    EXPECT_EQ(differences(session(), other), Lines{});
}

TEST(Stories, WhatDiffersInKindIsTold) {
    const std::string end = R"({"t":200,"event":"Sim","data":0})";
    EXPECT_EQ(differences(session(), session("7", "0")), (Lines{"KLM1: step 4 is 'GEAR_SET 1' and 'GEAR_SET 0'"}));
    EXPECT_EQ(differences(session(), session("7", "1", "B738")),
              (Lines{"KLM1: step 1 is 'create A320' and 'create B738'"}));
    EXPECT_EQ(differences(session(), ""), (Lines{"KLM1: step 1 is 'create A320' and 'nothing more'"}));
    EXPECT_EQ(differences("", session()), (Lines{"KLM1: step 1 is 'nothing more' and 'create A320'"}));
    const std::string later = R"({"t":35,"object":7,"tail":"KLM1","gear":0,"lights":{"nav":1}}
)";
    const Lines states = differences(session(), session() + later + end);
    ASSERT_EQ(states.size(), 1U);
    EXPECT_TRUE(states[0].starts_with("KLM1: the last state is 'on_ground 0,")) << states[0];
    const std::string refused = R"({"t":31.6,"event":"Exception","exception":22,"packet":41}
)";
    EXPECT_EQ(differences(session() + refused + end, session()),
              (Lines{"KLM1: step 5 is 'exception 22' and 'nothing more'"}));
    const std::string plan = R"({"t":36,"call":"SimConnect_AISetAircraftFlightPlan","object":7,"path":"7.pln"}
)";
    EXPECT_EQ(differences(session() + plan + end, session()), (Lines{"KLM1: 1 and 0 flight plans"}));
}

}  // namespace
}  // namespace hcr::test
