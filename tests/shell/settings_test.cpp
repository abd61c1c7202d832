#include "shell/settings.h"

#include <gmock/gmock.h>

#include "shell/command_line.h"
#include "shell/parameter_file.h"
#include "shell/parameters.h"
#include "shell/shell_world.h"

namespace hcr {
namespace {

using testing::ContainsRegex;
using testing::HasSubstr;
using testing::Not;

struct Settings : test::ShellWorld {};

TEST_F(Settings, AValueIsTakenByTheRulesOfItsKind) {
    const struct {
        const char* given;
        const char* fault;  ///< a piece of it, empty for a good one
    } rows[] = {
        {"RANGE=65", ""},
        {"range = 2", ""},
        {"RANGE=101", "RANGE takes a number from 2 to 100, not '101'"},
        {"RANGE=1", "not '1'"},
        {"RANGE=65nm", "not '65nm'"},
        {"RANGE=", "not ''"},
        {"CUSTOM_PARKING_PERCENTAGE=-1", ""},
        {"WEEK=on", ""},
        {"WEEK=False", ""},
        {"WEEK=maybe", "WEEK takes true or false, not 'maybe'"},
        {"SIM_CHOICE=MSFS 2024", ""},
        {"SIM_CHOICE=MSFS2024", "SIM_CHOICE takes \"MSFS 2020\" or \"MSFS 2024\", not 'MSFS2024'"},
        {"AI_PACKAGE_SELECTOR=JF, AIG", ""},
        {"AI_PACKAGE_SELECTOR=AIG,JF", "in any order, not 'AIG,JF'"},
        {"PORT_NUMBER=65535", ""},
        {"PORT_NUMBER=65536", "a number from 1 to 65535"},
        {"PORT_NUMBER=0", "a number from 1 to 65535"},
        {"DBASE_VERSION=", ""},
        {"DBASE_VERSION=1.2", "a version such as 11.10.5"},
        {"LFOLDER3=D:\\a=b", ""},
        {"MSFS_INSTALL_PATH=a\nb", "any text"},
        {"MSFS_INSTALL_PATH=\xFF", "any text"},
        {"NO_SUCH=1", "there is no setting 'NO_SUCH'"},
        {"parking_percentage=30", "there is no setting"},
        {"RANGE", "'RANGE' isn't NAME=VALUE"},
        {"=5", "isn't NAME=VALUE"},
        {"", "isn't NAME=VALUE"},
    };
    for (const auto& row : rows) {
        const std::string fault = gf_settingFault(row.given);
        EXPECT_EQ(fault.empty(), *row.fault == '\0') << row.given << fault;
        EXPECT_THAT(fault, HasSubstr(row.fault));
    }
}

TEST_F(Settings, GoodOnesAreStoredAndTheRestOfTheFileStays) {
    RANGE.current = 20;
    gf_saveParameters(false);
    EXPECT_TRUE(gf_storeSettings({"week=yes", "sim_choice=MSFS 2024", "MAX_FIT=3", "MAX_FIT=4", "lfolder0= D:\\x "}));
    gf_resetParameters();
    EXPECT_TRUE(gf_peekParameters());
    EXPECT_TRUE(WEEK.current && gf_sim2024Chosen());
    EXPECT_EQ(MAX_FIT.current, 4);
    EXPECT_EQ(lfolder0.current.get(), "D:\\x");
    EXPECT_EQ(RANGE.current, 20);
}

TEST_F(Settings, AllAreToldWithMeaningBoundsAndValue) {
    RANGE.current = 65;
    const std::string text = gf_settingsText();
    EXPECT_THAT(text, HasSubstr("parameters.xml\n"));
    EXPECT_THAT(text,
                HasSubstr("  RANGE = 65\n      radius of traffic around you, nautical miles; a number from 2 to 100"));
    EXPECT_THAT(text, HasSubstr("  SIM_CHOICE = \"MSFS 2020\"\n"));
    EXPECT_THAT(text, Not(ContainsRegex("\n      ;"))) << "a setting without a meaning";
}

TEST_F(Settings, TheCommandLineTakesAnyNumberOfGoodOnes) {
    const CommandLine good = gf_readCommandLine({"--set", "WEEK=true", "/set", "RANGE=5", "--settings"});
    EXPECT_EQ(good.error, "");
    EXPECT_EQ(good.settings, (std::vector<std::string>{"WEEK=true", "RANGE=5"}));
    EXPECT_TRUE(good.listSettings);
    EXPECT_EQ(gf_readCommandLine({"--set", "WEEK=true", "--set", "RANGE=x"}).error,
              "--set: RANGE takes a number from 2 to 100, not 'x'");
    EXPECT_EQ(gf_readCommandLine({"--set"}).error, "--set needs a value");
}

}  // namespace
}  // namespace hcr
