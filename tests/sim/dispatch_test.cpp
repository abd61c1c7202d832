#include "sim/dispatch.h"

#include <cmath>
#include <limits>

#include "core/model/geo.h"
#include "core/model/run_state.h"
#include "session_fixture.h"
#include "shell/messages.h"
#include "shell/parameters.h"
#include "shell/run_stop.h"
#include "shell/window_state.h"
#include "sim/drain.h"
#include "sim/object_data.h"
#include "sim/session.h"

namespace hcr::test {
namespace {

struct Dispatch : SessionTest {};

/// The latitude furthest north that is no more than 10.0 nm away from 50 degrees north.
f64 lf_tenMilesNorth() {
    f64 near = 50, far = 51;
    while (std::nextafter(near, far) < far) {
        const f64 middle = near + (far - near) / 2;
        (distanceNm(50, 8, middle, 8) > 10.0 ? far : near) = middle;
    }
    return near;
}

void lf_dispatchOpen(std::string_view name) {
    auto open = messageOf<SIMCONNECT_RECV_OPEN>(SIMCONNECT_RECV_ID_OPEN);
    std::memcpy(open.szApplicationName, name.data(), std::min(name.size(), sizeof(open.szApplicationName)));
    open.dwApplicationVersionMajor = 12;
    open.dwApplicationVersionMinor = 2;
    open.dwApplicationBuildMajor = 282174;
    open.dwApplicationBuildMinor = 999;
    dispatchRecord(open);
}

TEST_F(Dispatch, TenMilesBetweenTwoRepliesAreNoTeleport) {
    dispatchUser(userAt(50, 8));
    dispatchUser(userAt(lf_tenMilesNorth(), 8));
    dispatchUser(userAt(0, 0.0001));  // no place at all: neither from it nor to it
    dispatchUser(userAt(60, 8));
    EXPECT_FALSE(gStop);
    EXPECT_FALSE(logHas("Teleport"));
}

TEST_F(Dispatch, MoreThanTenMilesBetweenTwoRepliesAreOneTeleportHoweverManyRepliesFollow) {
    dispatchUser(userAt(50, 8));
    const f64 far = std::nextafter(lf_tenMilesNorth(), 51.0);
    for (int reply = 0; reply < 3; ++reply) dispatchUser(userAt(far, 8));
    EXPECT_EQ(logCount("Teleport"), 1U);
    EXPECT_EQ(gExitReason, ExitReason::newFlight);
    EXPECT_EQ(gRestartSeconds, 45);
}

TEST_F(Dispatch, GarbageInAUserPositionIsPassedOver) {
    dispatchUser(userAt(50, 8));
    dispatchUser(userAt(std::numeric_limits<f64>::quiet_NaN(), 8));
    dispatchUser(userAt(50, std::numeric_limits<f64>::infinity()));
    UserAircraftData clock = userAt(50, 8);
    clock.zuluYear = std::numeric_limits<i64>::max();
    dispatchUser(clock);
    EXPECT_EQ(gf_lastUserPosition().lon, 8);
    EXPECT_EQ(gSimTime, 1706745600 + 3600);
    EXPECT_FALSE(gStop);
}

TEST_F(Dispatch, SimulatorDaysCountLikeUnixDays) {
    struct Row {
        i64 year, day, time, unixSeconds;
    };
    for (const Row& row : {Row{1970, 1, 0, 0}, Row{1970, 365, 86399, 31535999}, Row{1972, 60, 0, 68169600},
                           Row{2000, 366, 0, 978220800}, Row{2001, 1, 5, 978307205}, Row{2100, 365, 0, 4133894400}}) {
        EXPECT_EQ(gf_simUnixSeconds(row.year, row.day, row.time), row.unixSeconds) << row.year << ' ' << row.day;
    }
}

TEST_F(Dispatch, OnGroundCountsOnlyOnceThePositionIsKnownButThePulseAlways) {
    const Bytes reply = objectData(SIMCONNECT_RECV_ID_SIMOBJECT_DATA, kReqOnGround, 1, i64{1});
    dispatchBytes(reply);
    EXPECT_FALSE(gUserOnGroundKnown);
    EXPECT_TRUE(gSecondPulse.exchange(false));
    dispatchUser(userAt(50, 8));
    dispatchBytes(reply);
    EXPECT_TRUE(gUserOnGroundKnown);
    EXPECT_TRUE(gUserOnGround);
    EXPECT_TRUE(gSecondPulse);
}

TEST_F(Dispatch, TheSimulatorMustBeTheChosenOne) {
    struct Row {
        const char* name;
        const char* choice;
        const char* error;  ///< null: accepted
    };
    for (const Row& row : {Row{"KittyHawk", "MSFS 2020", nullptr}, Row{"Sun-Rise!\x01", "MSFS 2024", nullptr},
                           Row{"KittyHawk", "MSFS 2024",
                               "71: MSFS 2020 is running ..., switch Simulator, or select the right sim in the "
                               "drop down list above"},
                           Row{"SunRise", "MSFS 2020",
                               "71: MSFS 2024 is running ..., switch Simulator, or select the right sim in the "
                               "drop down list above"},
                           Row{"Lockheed Martin", "MSFS 2020",
                               "77: 'Lockheed Martin' not being MSFS 2020 or MSFS 2024 connects ... ?"}}) {
        resetSessionGlobals();
        SIM_CHOICE.current.set(row.choice);
        std::string error;
        try {
            lf_dispatchOpen(row.name);
        } catch (const UserErrorException& exception) {
            error = exception.what();
        }
        EXPECT_EQ(error, row.error != nullptr ? row.error : "") << row.name;
        EXPECT_TRUE(gWindow.simConnected);
        EXPECT_EQ(gWindow.simulatorText.get().empty(), row.error != nullptr);
    }
    EXPECT_TRUE(logHas("KittyHawk (12.2.282174.999) connected"));
}

TEST_F(Dispatch, ExceptionsAreTold) {
    struct Row {
        u32 code;
        const char* line;
    };
    dispatchException(3);
    EXPECT_FALSE(logHas("UNRECOGNIZED_ID"));  // the user's position isn't known yet
    dispatchUser(userAt(50, 8));
    for (const Row& row :
         {Row{3, "\n==> SIMCONNECT_EXCEPTION_UNRECOGNIZED_ID\n"},
          Row{11, "\nSimConnect: too many objects (max 1000)\n"}, Row{19, "\nSIMCONNECT_EXCEPTION_INVALID_DATA_SIZE\n"},
          Row{23, "\n==> SimConnect exception: load flight plan failed\n"},
          Row{24, "\nSIMCONNECT_EXCEPTION_OPERATION_INVALID_FOR_OBJECT_TYPE\n"},
          Row{7, "\n==> SIMCONNECT_EXCEPTION #7\n"}, Row{4711, "\n==> SIMCONNECT_EXCEPTION #4711\n"}}) {
        dispatchException(row.code);
        EXPECT_EQ(logCount(row.line), 1U) << row.code;
    }
    for (int i = 0; i < 1000; ++i) {
        for (const u32 code : {3, 7, 11, 19, 23, 24}) dispatchException(code);
    }
    EXPECT_LE(logCount("\n"), 150U) << "a simulator can't fill the disk";
    const std::size_t unrecognized = logCount("UNRECOGNIZED_ID");
    gf_requestStop(ExitReason::newFlight, 45);
    dispatchException(3);
    EXPECT_EQ(logCount("UNRECOGNIZED_ID"), unrecognized);
    try {
        dispatchException(5, 0, 4);
        FAIL() << "a version mismatch was accepted";
    } catch (const UserErrorException& exception) {
        EXPECT_STREQ(exception.what(), "95: SimConnect Version Mismatch, dwIndex: 4");
    }
}

TEST_F(Dispatch, ARefusedCreationIsReportedOnceByItsPacket) {
    gPendingCreates = {{41, 4740001, "KLM1"}, {42, 17, "KLM2*"}, {0, 4740004, "KLM4"}, {43, 4740003, "KLM3"}};
    for (const u32 code : {22U, 11U}) {
        for (const u32 packet : {99U, 0U}) dispatchException(code, packet);
    }
    EXPECT_EQ(gPendingCreates.size(), 4U);
    EXPECT_TRUE(takeNews().empty());
    dispatchException(22, 41);
    dispatchException(22, 41);
    dispatchException(11, 42);
    const auto news = takeNews();
    ASSERT_EQ(news.size(), 2U);
    EXPECT_EQ(news[0].kind, SimKind::createRefused);
    EXPECT_EQ(news[0].id, 4740001U);
    EXPECT_EQ(news[1].kind, SimKind::noRoom);
    EXPECT_EQ(news[1].id, 17U);
    ASSERT_EQ(gPendingCreates.size(), 2U);
    EXPECT_EQ(gPendingCreates[0].callsign, "KLM3");
}

TEST_F(Dispatch, AnObjectOfSomebodyElseIsNeverMatchedAfterwards) {
    dispatchUser(userAt(50, 8), 5);
    dispatchAdded(7);
    dispatchStatus(7, "KLM1");
    EXPECT_TRUE(
        logHas("just spawned, but not by Halcyrane, oid: 7, callsign 'KLM1', altaboveGnd:1000 ft, onground:0, "
               "gnd_alt:12 ft"));
    gPendingCreates = {{41, 4740001, "KLM1"}, {42, 4740002, ""}};
    dispatchStatus(7, "KLM1");
    dispatchAdded(9);
    dispatchStatus(9, "");
    EXPECT_EQ(gPendingCreates.size(), 2U);
    const auto news = takeNews();
    ASSERT_EQ(news.size(), 1U);
    EXPECT_EQ(news[0].kind, SimKind::aiStatus);
}

TEST_F(Dispatch, StatusIsReportedForLowLiveAircraftOnly) {
    dispatchUser(userAt(50, 8), 5);
    struct Row {
        u32 object;
        const char* atcId;
        f64 agl;
        bool reported;
    };
    for (const Row& row : {Row{7, "KLM1", 2500, true}, Row{7, "KLM1", 2500.1, false}, Row{7, "", 10, false},
                           Row{7, "KLM1*", 10, false}, Row{5, "KLM1", 10, false}, Row{4, "KLM1", 10, false},
                           Row{7, "KLM1", std::nan(""), false}, Row{6, "*KLM", 10, true}}) {
        dispatchStatus(row.object, row.atcId, row.agl, 1);
        const auto news = takeNews();
        EXPECT_EQ(news.size(), row.reported ? 1U : 0U) << row.atcId << ' ' << row.agl;
        if (news.empty()) continue;
        EXPECT_EQ(news[0].id, 1U);
        EXPECT_EQ(news[0].a, 12);
        EXPECT_EQ(news[0].b, row.agl);
    }
}

TEST_F(Dispatch, OnlyAircraftOtherThanTheUsersAreAddedAndRemoved) {
    dispatchUser(userAt(50, 8), 5);
    gPendingCreates = {{41, 4740001, "KLM1"}};
    dispatchAdded(5);
    dispatchAdded(7, 5);  // a ground vehicle
    dispatchStatus(5, "KLM1");
    dispatchStatus(7, "KLM1", 3000);
    EXPECT_EQ(gPendingCreates.size(), 1U);

    auto removed = messageOf<SIMCONNECT_RECV_EVENT_OBJECT_ADDREMOVE>(SIMCONNECT_RECV_ID_EVENT_OBJECT_ADDREMOVE);
    removed.uEventID = kEventObjectRemoved;
    for (const auto& [object, type] : {std::pair<u32, u32>{5, 2}, {7, 5}, {8, 2}}) {
        removed.dwData = object;
        removed.eObjType = type;
        dispatchRecord(removed);
    }
    const auto news = takeNews();
    ASSERT_EQ(news.size(), 1U);
    EXPECT_EQ(news[0].kind, SimKind::objectGone);
    EXPECT_EQ(news[0].object, 8U);
}

}  // namespace
}  // namespace hcr::test
