#include <gtest/gtest.h>

#include <algorithm>

#include "scenery/install_fixture.h"
#include "shell/log.h"
#include "shell/log_start.h"
#include "support/environment.h"

namespace hcr {
namespace {

namespace fs = std::filesystem;
using test::Install;
using test::writeWhole;

TEST_F(Install, SteamsFolderWinsOverUserCfgWhenItHoldsThePackages) {
    const fs::path named = packages("named", {"Community", "Official"});
    writeWhole(storeCfg(), "InstalledPackagesPath \"" + named.string() + "\"\n");
    const fs::path steam = roaming / "Microsoft Flight Simulator/Packages";
    fs::create_directories(steam / "Community");
    EXPECT_EQ(gf_detectInstallPath(), named) << "without the official packages";
    fs::create_directories(steam / "Official");
    EXPECT_EQ(gf_detectInstallPath(), steam);
    SIM_CHOICE.current.set("MSFS 2024");
    EXPECT_EQ(gf_detectInstallPath(), "") << "these are the other simulator's";
    EXPECT_TRUE(folder.logged("Steam packages:" + (roaming / "Microsoft Flight Simulator 2024/Packages").string()));
}

TEST_F(Install, TheFirstUserCfgInTheOrderOfTheCandidatesCounts) {
    for (const char* simulator : {"MSFS 2020", "MSFS 2024"}) {
        SIM_CHOICE.current.set(simulator);
        const bool is2024 = gf_sim2024Chosen();
        const fs::path store =
            is2024 ? local / "Packages/Microsoft.Limitless_8wekyb3d8bbwe/LocalCache/UserCfg.opt" : storeCfg();
        const fs::path steam1 =
            roaming / (is2024 ? "Microsoft Flight Simulator 2024" : "Microsoft Flight Simulator") / "UserCfg.opt";
        const fs::path steam2 = local / "Packages/Microsoft.FlightDashboard_8wekyb3d8bbwe/LocalCache/UserCfg.opt";
        const fs::path boxed = local / "MSFSPackages/UserCfg.opt";
        EXPECT_EQ(gf_findUserCfg(), boxed);
        EXPECT_EQ(gf_installedPackagesPath(), "");
        EXPECT_TRUE(folder.logged("MSFS detection, no Store:" + store.string() + "\nMSFS detection, no Steam1:" +
                                  steam1.string() + "\nMSFS detection, no Steam2:" + steam2.string() +
                                  "\nMSFS detection, no Boxed:" + boxed.string() + "\nNo UserCfg.opt found?\n"));
        for (const fs::path& candidate : {boxed, steam2, steam1, store}) {
            writeWhole(candidate, "");
            EXPECT_EQ(gf_findUserCfg(), candidate);
        }
        for (const fs::path& candidate : {boxed, steam2, steam1, store}) fs::remove(candidate);
    }
}

TEST_F(Install, AFirstStartChoosesTheOnlySimulatorThatIsFound) {
    const fs::path steam2024 = roaming / "Microsoft Flight Simulator 2024/Packages";
    const auto chosen = [] {
        gf_chooseFoundSimulator();
        EXPECT_EQ(stored(SIM_CHOICE), SIM_CHOICE.current.get());
        return SIM_CHOICE.current.get();
    };
    EXPECT_EQ(chosen(), "MSFS 2020") << "none is found";
    for (const char* child : {"Community", "Official2024"}) fs::create_directories(steam2024 / child);
    EXPECT_EQ(chosen(), "MSFS 2024");
    EXPECT_EQ(chosen(), "MSFS 2024");
    SIM_CHOICE.current.set("MSFS 2020");
    gf_storeParameter(SIM_CHOICE);
    writeWhole(storeCfg(), "InstalledPackagesPath \"" + packages("named", {"Community", "Official"}).string() + "\"\n");
    EXPECT_EQ(chosen(), "MSFS 2020") << "both are found";
    SIM_CHOICE.current.set("MSFS 2024");
    gf_storeParameter(SIM_CHOICE);
    EXPECT_EQ(chosen(), "MSFS 2024");
}

TEST_F(Install, TheFirstLineWithTheKeyNamesThePackages) {
    const std::string good = packages("with blank", {"Community", "Official2024"}).string();
    std::string withBackslashes = good;
    std::replace(withBackslashes.begin(), withBackslashes.end(), '/', '\\');
    const struct {
        const char* name;
        std::string content;
        bool found;
    } cases[] = {
        {"between the quotes", "{Video\r\n}\r\nInstalledPackagesPath \"" + good + "\" // mine\r\n", true},
        {"backslashes", "InstalledPackagesPath \"" + withBackslashes + "\"\n", true},
        {"no last line feed", "InstalledPackagesPath \"" + good + "\"", true},
        {"no quotes", "InstalledPackagesPath " + good + "\n", false},
        {"one quote", "InstalledPackagesPath \"" + good + "\n", false},
        {"nothing between", "InstalledPackagesPath \"\" \"" + good + "\"\n", false},
        {"not there", "InstalledPackagesPath \"" + good + "x\"\n", false},
        {"the first counts", "InstalledPackagesPath \"\"\nInstalledPackagesPath \"" + good + "\"\n", false},
        {"no such key", "Packages \"" + good + "\"\n", false},
        {"a NUL byte", "InstalledPackagesPath \"" + good + std::string(1, '\0') + "\"\n", false},
        {"bytes of a code page", "InstalledPackagesPath \"/Spiele/M\xFCller\"\n", false},
        {"an endless line", "InstalledPackagesPath " + std::string(10'000'000, 'x'), false},
    };
    for (const auto& one : cases) {
        SCOPED_TRACE(one.name);
        writeWhole(storeCfg(), one.content);
        gf_closeLog();
        fs::remove("Log.txt");
        gf_openLog();
        EXPECT_EQ(gf_installedPackagesPath(), one.found ? good : "");
        EXPECT_TRUE(folder.logged("UserCfg.opt: InstalledPackagesPath=" + (one.found ? good : "???") + "\n"));
    }
}

TEST_F(Install, TheUserMayTypeThePackageFolderOrItsCommunityFolder) {
    const std::string both = packages("sim", {"Community", "Community/Community"}).string();
    const std::string found = "Community path found, Halcyrane will restart ...";
    packages("sim", {"Official", "other"});
    const struct {
        std::string typed, stored, message;
    } cases[] = {
        {both, both, found},
        {both + "/", both + "/", found},
        {both + "/Community", both, found},
        {both + "//Community//", both, found},
        {both + "\\Community\\", both, found},
        {both + "/Community/Community", both + "/Community", found},
        {both + "/other", "", "This path exists but is not a path to Community ..."},
        {both + "/absent", "", "This install path does not exist: " + both + "/absent"},
        {std::string(5000, 'x'), "", "This install path does not exist: " + std::string(5000, 'x')},
        {"/", "", "This path exists but is not a path to Community ..."},
        {"\xFF", "", "Cannot access install path '\xFF': utf8_to_wide: invalid UTF-8"},
    };
    for (const bool is2024 : {false, true}) {
        SIM_CHOICE.current.set(is2024 ? "MSFS 2024" : "MSFS 2020");
        for (const auto& one : cases) {
            SCOPED_TRACE(one.typed);
            forgetStop();
            gf_installParameter().current.set("");
            gf_storeParameter(gf_installParameter());
            gf_showError("No install path detected.");
            enter(one.typed);
            EXPECT_EQ(test::slashed(gf_installParameter().current.get()), test::slashed(one.stored));
            EXPECT_EQ(test::slashed(stored(gf_installParameter())), test::slashed(one.stored));
            EXPECT_EQ(gf_currentMessage(), one.message);
            EXPECT_EQ(gStop, !one.stored.empty());
            if (gStop) {
                EXPECT_EQ(gExitReason, ExitReason::newSettings);
                EXPECT_EQ(gRestartSeconds, 3);
            }
        }
    }
    EXPECT_EQ(stored(MSFS_INSTALL_PATH), "");
}

TEST_F(Install, ACommunityFolderWithoutParentIsRefused) {
    fs::create_directories("Community");
    enter("Community");
    EXPECT_EQ(gf_currentMessage(), "This path does not contain a valid Community folder (unexpected).");
    EXPECT_FALSE(gStop);
}

TEST_F(Install, AnEmptyEntryForgetsThePathAndDoesNotRestart) {
    MSFS_INSTALL_PATH.current.set("/sim2020");
    MSFS_2024_INSTALL_PATH.current.set("/sim2024");
    gf_saveParameters(false);
    EXPECT_EQ(gf_simulatorPath("Community"), "/sim2020/Community");
    SIM_CHOICE.current.set("MSFS 2024");
    gf_showError("some error");
    enter("");
    EXPECT_EQ(stored(MSFS_2024_INSTALL_PATH), "");
    EXPECT_EQ(stored(MSFS_INSTALL_PATH), "/sim2020");
    EXPECT_EQ(gf_simulatorPath("Community"), "");
    EXPECT_EQ(gf_currentMessage(), "");
    EXPECT_FALSE(gStop);
}

}  // namespace
}  // namespace hcr
