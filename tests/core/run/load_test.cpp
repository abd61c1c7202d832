#include "core/run/load.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <thread>

#include "core/model/run_state.h"
#include "core/run/outcome.h"
#include "core/run/reset.h"
#include "core/run/window_messages.h"
#include "liveries/dbase.h"
#include "platform/user_folders.h"
#include "shell/file_names.h"
#include "shell/messages.h"
#include "shell/parameter_file.h"
#include "shell/parameters.h"
#include "shell/run_stop.h"
#include "shell/text.h"
#include "shell/version.h"
#include "support/data_folder.h"
#include "support/environment.h"
#include "support/world.h"

namespace hcr {
namespace {

namespace fs = std::filesystem;

/// The folder of a restarted run, which doesn't ask for newer data files, with settings, reference data and airports.
struct StartLoad : testing::Test {
    test::DataFolder folder;

    StartLoad() {
        test::resetProgram();
        gRestart = true;
        folder.encipher(gFiles().dbaseEnc, std::string("<root>") + test::kNeededSections + "</root>");
        folder.encipher(gFiles().airportsEnc, R"(<root><airports><airport code="EHAM" iata="AMS" lat="52.3" lon="4.8"
            alt="-11" stands="0"/></airports></root>)");
        saveInstallPath("packages");
    }

    ~StartLoad() override { test::resetProgram(); }

    static void saveInstallPath(const std::string& path) {
        PROGRAM_VERSION.current.set(gf_programVersion().text());
        MSFS_INSTALL_PATH.current.set(path);
        gf_saveParameters(false);
    }

    /// The text of what was thrown, empty when all went well.
    static std::string load() {
        try {
            gf_loadAtStart();
        } catch (const std::runtime_error& fault) {
            return fault.what();
        }
        return {};
    }
};

TEST_F(StartLoad, TheInstallPathLosesTheCommunityFolderThatTheUserTypedWithIt) {
    struct Row {
        const char* typed;
        const char* kept;
    };
    const Row rows[] = {
        {R"(D:\MSFS\Community)", R"(D:\MSFS)"},
        {"/opt/msfs/Community", "/opt/msfs"},
        {R"(D:\MSFS)", R"(D:\MSFS)"},
        {R"(D:\MSFS\community)", R"(D:\MSFS\community)"},
        {R"(D:\MSFS\Community\)", R"(D:\MSFS\Community\)"},
        {R"(D:\MyCommunity)", R"(D:\MyCommunity)"},
        {"Community", "Community"},
    };
    for (const Row& row : rows) {
        saveInstallPath(row.typed);
        EXPECT_EQ(load(), "") << row.typed;
        EXPECT_EQ(MSFS_INSTALL_PATH.current.get(), row.kept);
        EXPECT_EQ(ALL_INSTALL_PATH.current.get(), row.kept) << "what the window shows";
        MSFS_INSTALL_PATH.current.set("");
        gf_loadParameters();
        EXPECT_EQ(MSFS_INSTALL_PATH.current.get(), row.kept) << "stored";
    }
}

TEST_F(StartLoad, OnlyThePathOfTheChosenSimulatorCounts) {
    MSFS_2024_INSTALL_PATH.current.set(R"(E:\2024\Community)");
    SIM_CHOICE.current.set("MSFS 2024");
    saveInstallPath(R"(D:\2020\Community)");
    EXPECT_EQ(load(), "");
    EXPECT_EQ(MSFS_2024_INSTALL_PATH.current.get(), R"(E:\2024)");
    EXPECT_EQ(MSFS_INSTALL_PATH.current.get(), R"(D:\2020\Community)");
    EXPECT_EQ(ALL_INSTALL_PATH.current.get(), R"(E:\2024)");
}

TEST_F(StartLoad, MakesTheFoldersAndTakesStaleFilesAway) {
    test::writeWhole(gFiles().input / "AIG-regcodes0.xml", "old");
    test::writeWhole(gFiles().input / "AIG-regcodes00.xml", "older");
    EXPECT_EQ(load(), "");
    EXPECT_TRUE(fs::is_directory(gFiles().learnedThirdparty));
    EXPECT_TRUE(fs::is_directory(gFiles().tblo));
    EXPECT_FALSE(fs::exists(gFiles().input / "AIG-regcodes0.xml"));
    EXPECT_FALSE(fs::exists(gFiles().input / "AIG-regcodes00.xml"));
    EXPECT_TRUE(gf_isValidType("B738"));
    EXPECT_TRUE(folder.logged("RealTraffic not detected at this PC"));
    EXPECT_FALSE(gf_stopAsked());
}

TEST_F(StartLoad, WhatIsMissingIsTold) {
    saveInstallPath("");
    EXPECT_EQ(load(),
              "150: No install path detected. Type the full path to your Community folder above, then press "
              "Enter");
    gNoWindow = true;
    EXPECT_NE(load().find("set MSFS_INSTALL_PATH in " + gf_shownPath(gFiles().settings)), std::string::npos);
    gNoWindow = false;
    gf_forgetDbase();
    folder.encipher(gFiles().dbaseEnc, "<root><");
    EXPECT_EQ(load(), "reading data files failed!");
    fs::remove(gFiles().dbaseEnc);
    EXPECT_EQ(test::slashed(load()), "input/dbase.enc not available");
}

TEST_F(StartLoad, AnUpdateThatAStopCutShortIsMadeUpForByTheRestartedRun) {
    fs::create_directories("server");
    test::writeWhole("server/versions.json", "{}");
    const test::Variable server("HALCYRANE_DATA_BASE", test::fileUrl(folder.path / "server").c_str());
    const std::string asked = "msfs version not found";
    gRestart = false;
    gf_requestStop(ExitReason::newSettings, 2);
    EXPECT_EQ(load(), "");
    EXPECT_FALSE(gf_isValidType("B738")) << "nothing is loaded behind a stop";
    EXPECT_FALSE(folder.logged(asked));
    gf_resetRun();
    gRestart = true;
    EXPECT_EQ(load(), "");
    EXPECT_EQ(test::countOf(folder.log(), asked), 1U);
    EXPECT_EQ(load(), "");
    EXPECT_EQ(test::countOf(folder.log(), asked), 1U) << "once done it is done";
}

TEST_F(StartLoad, AVeryFirstStartRunsForTheSimulatorThatIsThere) {
    const fs::path packages = gf_roamingFolder() / "Microsoft Flight Simulator 2024/Packages";
    for (const char* child : {"Community", "Official2024"}) fs::create_directories(packages / child);
    saveInstallPath("");
    EXPECT_TRUE(load().starts_with("150: ")) << "the choice of the user stands";
    fs::remove(gFiles().settings);
    EXPECT_EQ(load(), "");
    EXPECT_EQ(test::slashed(MSFS_2024_INSTALL_PATH.current.get()), test::slashed(gf_pathToUtf8(packages)));
    EXPECT_TRUE(SCAN_LIVERIES.current);
}

TEST_F(StartLoad, ProductionEndsBehindTheLoad) {
    gProduction = true;
    gExitCode = 5;
    EXPECT_EQ(load(), "");
    gProduction = false;
    EXPECT_TRUE(gUserStop);
    EXPECT_EQ(gExitReason, ExitReason::userClosed);
    EXPECT_EQ(gExitCode, 0);
    EXPECT_FALSE(folder.logged("RealTraffic")) << "nobody will connect";
}

TEST(WindowMessages, AreTakenInTheOrderOfTheirPosting) {
    test::resetProgram();
    EXPECT_EQ(gf_takeWindowMessage(0), WindowMessage::none);
    std::thread other([] {
        gf_postToWindow(WindowMessage::startRun);
        gf_postToWindow(WindowMessage::endProgram);
    });
    constexpr i64 kLongMs = 60'000;  // a message ends the waiting at once
    EXPECT_EQ(gf_takeWindowMessage(kLongMs), WindowMessage::startRun);
    EXPECT_EQ(gf_takeWindowMessage(kLongMs), WindowMessage::endProgram);
    other.join();
    EXPECT_EQ(gf_takeWindowMessage(0), WindowMessage::none);
}

}  // namespace
}  // namespace hcr
