#pragma once

#include <gtest/gtest.h>

#include <string>
#include <thread>

#include "core/model/range.h"
#include "core/model/run_state.h"
#include "core/model/tables.h"
#include "feed/qnh_reader.h"
#include "feed/readers.h"
#include "feed/traffic_reader.h"
#include "platform/clock.h"
#include "shell/parameters.h"
#include "shell/run_stop.h"
#include "shell/window_state.h"
#include "support/temp_folder.h"

namespace hcr {

/// A world in which the feed can be tested: globals at their start values, and a log of its own.
struct FeedWorld : testing::Test {
    FeedWorld() {
        reset();
        gAcceptReports = true;
    }
    ~FeedWorld() override { reset(); }
    FeedWorld(const FeedWorld&) = delete;
    FeedWorld& operator=(const FeedWorld&) = delete;

    std::string log() const { return folder.logged(); }
    bool logged(std::string_view text) const { return log().find(text) != std::string::npos; }

    /// Waits in real time until something is so; false after ten seconds.
    template <typename Condition>
    static bool soon(Condition condition) {
        const i64 end = gf_steadyUs() + 10'000'000;
        while (!condition()) {
            if (gf_steadyUs() > end) return false;
            gf_sleepMs(2);
        }
        return true;
    }

    test::LogFolder folder;

private:
    static void reset() {
        gf_releaseClock();
        gf_clearTables();
        gf_resetParameters();
        gf_resetWindowState();
        gStop = gUserStop = false;
        gExitReason = ExitReason::notYetSet;
        gRtOnThisPc = gFeedClock = gAcceptReports = false;
        gf_setFeedPorts(0, 0);
        gf_resetFeed();
        gf_collectCallsigns(false);
        TrafficReader& r = gTrafficReader;
        r.userLat = r.userLon = r.parkAirportLat = r.parkAirportLon = r.parkAirportAlt = 0;
        r.parkAirportAltValid = false;
        gRangeNm = 40;
        r.lastText.clear();
        r.packetCount = gTrafficReader.lastPacketCount = gQnhReader.lastPacketCount = 0;
        gQnhReader.lastText.clear();
        simTick = 0;
    }
};

}  // namespace hcr
