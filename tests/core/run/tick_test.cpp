#include "core/run/tick.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/model/run_state.h"
#include "core/run/reset.h"
#include "feed/traffic_reader.h"
#include "parking/plan.h"
#include "shell/parameters.h"
#include "shell/window_state.h"
#include "support/data_folder.h"
#include "support/world.h"

namespace hcr {
namespace {

TEST(Renewal, CollectsCallsignsForFifteenSecondsAlsoWhenNothingIsToBeRenewed) {
    const test::DataFolder folder;
    test::resetProgram();
    gTrafficReader.realCallsigns = {"OLD1"};
    gRenewStatics = true;
    gf_every15Seconds();
    EXPECT_TRUE(gTrafficReader.collectCallsigns);
    EXPECT_TRUE(gTrafficReader.realCallsigns.empty());
    EXPECT_TRUE(gRenewPhase);
    gTrafficReader.realCallsigns = {"KLM1"};
    gf_every15Seconds();
    EXPECT_FALSE(gTrafficReader.collectCallsigns);
    EXPECT_THAT(gTrafficReader.realCallsigns, testing::ElementsAre("KLM1"));
    EXPECT_FALSE(gRenewStatics);
    gf_every15Seconds();
    EXPECT_FALSE(gTrafficReader.collectCallsigns);
    test::resetProgram();
}

TEST(Renewal, TheMinutesLeftAreShownAsTheyPass) {
    const test::DataFolder folder;
    test::resetProgram();
    AUTO_RANGE.current = false;
    gSeconds = 60;
    const u64 repaints = gf_repaintCount();
    gf_every15Seconds();
    EXPECT_EQ(gWindow.minutesToRenewal, kMinutesBetweenRenewals - 1);
    EXPECT_GT(gf_repaintCount(), repaints);
    test::resetProgram();
}

TEST(Renewal, OfARunThatEndsMeanwhileIsForgotten) {
    const test::DataFolder folder;
    test::resetProgram();
    gRenewStatics = true;
    gf_every15Seconds();
    test::resetProgram();
    EXPECT_FALSE(gTrafficReader.collectCallsigns);
    gRenewStatics = true;
    gf_every15Seconds();
    EXPECT_TRUE(gRenewStatics) << "the next run begins with the collecting";
    EXPECT_TRUE(gTrafficReader.collectCallsigns);
    test::resetProgram();
}

}  // namespace
}  // namespace hcr
