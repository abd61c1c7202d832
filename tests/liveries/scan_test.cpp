#include "liveries/scan.h"

#include <fmt/format.h>
#include <gmock/gmock.h>

#include <algorithm>
#include <atomic>
#include <mutex>
#include <thread>

#include "liveries/cfg_content.h"
#include "liveries/livery_data.h"
#include "liveries/results.h"
#include "liveries/scan_fixture.h"
#include "liveries/scan_folders.h"
#include "liveries/scan_threads.h"
#include "liveries/scan_walk.h"
#include "liveries/scanned_file.h"
#include "platform/clock.h"
#include "shell/messages.h"
#include "shell/text.h"
#include "shell/window_state.h"
#include "support/environment.h"

namespace hcr {
namespace {

namespace fs = std::filesystem;
using test::gDrive;
using test::general;
using test::readWhole;
using test::Scan;
using test::section;
using test::writeWhole;
using testing::ElementsAre;

TEST_F(Scan, TheSelectorTellsWhichPackagesAreSearchedAndInWhichOrder) {
    for (const char* name :
         {"z-fsltl-traffic-base", "a-fsltl-traffic-base_CVT_", "aig-aitraffic-oci-beta", "aig-aitraffic-oci_CVT_x",
          "justflight-fstraffic-module", "my-user-aitraffic", "IVAO_MTL", "aig-aitraffic-oci2", "FSLTL-TRAFFIC-BASE"}) {
        fs::create_directories(community / name);
    }
    const struct {
        const char* selector;
        std::vector<std::string> names;
    } cases[] = {
        {"AIG, FSLTL, JF, MTL",
         {"aig-aitraffic-oci-beta", "z-fsltl-traffic-base", "justflight-fstraffic-module", "IVAO_MTL",
          "my-user-aitraffic"}},
        {"MTL, AIG", {"IVAO_MTL", "aig-aitraffic-oci-beta", "my-user-aitraffic"}},
        {"JF", {"justflight-fstraffic-module", "my-user-aitraffic"}},
    };
    for (const auto& one : cases) {
        AI_PACKAGE_SELECTOR.current.set(one.selector);
        FolderList found, wanted;
        lf_findAutoFolders(community, found);
        for (const std::string& name : one.names) wanted.push_back(community / name);
        EXPECT_EQ(found, wanted) << one.selector;
    }
    EXPECT_TRUE(folder.logged("Automatic IVAO_MTL scan found folder: '" + (community / "IVAO_MTL").string() + "'\n"));
    fs::create_directories(community / "a-justflight-aircraft-traffic-fleet");
    FolderList found;
    lf_findAutoFolders(community, found);
    EXPECT_EQ(found.front(), community / "a-justflight-aircraft-traffic-fleet");
}

TEST_F(Scan, OfAPairInTwoPackagesTheFirstPackageKeepsAllAndTheOtherPairsStay) {
    aircraft("aig-aitraffic-oci/B738", "B738", "aig 1", "KLM");
    aircraft("aig-aitraffic-oci/B738b", "B738", "aig 2", "KLM", "atc_parking_types=CARGO");
    aircraft("fsltl-traffic-base/B738", "B738", "fsltl 1", "KLM");
    aircraft("fsltl-traffic-base/A320", "A320", "fsltl 2", "KLM", "atc_id=PH-AAA");
    aircraft("fsltl-traffic-base/B738b", "B738", "fsltl 3", "DLH");
    aircraft("fsltl-traffic-base/B738c", "B738", "unused", "DLH");
    aircraft("user-aitraffic/B738", "B738", "own", "DLH");
    gWindow.liveryCount = 7;
    gf_scanLiveries();
    EXPECT_THAT(titles(), ElementsAre("fsltl 3", "fsltl 2", "aig 1", "aig 2"));
    EXPECT_NE(
        readWhole(gFiles().liveriesScanned).find("<liv airl=\"KLM\" type=\"B738\" cargo=\"true\" title=\"aig 2\" />"),
        std::string::npos);
    EXPECT_FALSE(SCAN_LIVERIES.current);
    EXPECT_NE(readWhole(gFiles().settings).find("name=\"SCAN_LIVERIES\" value=\"false\""), std::string::npos);
    EXPECT_TRUE(gScanList.empty());
    EXPECT_TRUE(seenTitles.empty());
    EXPECT_EQ(scanThreadsActive, 0);
    EXPECT_EQ(gf_currentMessage(), "");
    EXPECT_TRUE(folder.logged("liveries scan automatic starts ++"));
    EXPECT_TRUE(folder.logged("\n2 liveries found in " + (community / "aig-aitraffic-oci").string() + "\n"));
    EXPECT_TRUE(folder.logged("\n1 liverie found in " + (community / "user-aitraffic").string() + "\n6 in total\n"));
    EXPECT_TRUE(folder.logged("\nNo errors\n"));
    EXPECT_TRUE(folder.logged("\n++++++++++++++++++++++++ liveries scan ends ++++++++++++++++++++++++++++++++\n\n"));

    AI_PACKAGE_SELECTOR.current.set("FSLTL, AIG");
    gf_scanLiveries();
    EXPECT_THAT(titles(), ElementsAre("fsltl 3", "fsltl 2", "fsltl 1"));
    LIG_PRIORITIZE.current = false;
    gf_scanLiveries();
    EXPECT_THAT(titles(), ElementsAre("fsltl 3", "own", "fsltl 2", "aig 1", "aig 2", "fsltl 1"));
}

TEST_F(Scan, WhatTheRecordsSayCountsForThePriority) {
    folder.readDbase(R"(<dbase><db reg="PH-AAA" airl="DLH" type="A320" /></dbase>)");
    aircraft("aig-aitraffic-oci/B738", "B738", "painted anew", "KLM", "atc_id=PH-AAA");
    aircraft("fsltl-traffic-base/B738", "B738", "other", "KLM");
    gf_scanLiveries();
    EXPECT_THAT(titles(), ElementsAre("painted anew", "other"));
}

TEST_F(Scan, WithoutPackagesOrLiveriesItEndsInAMessageForTheUser) {
    writeWhole(gFiles().liveriesScanned, "old");
    AI_PACKAGE_SELECTOR.current.set("MTL");
    aircraft("fsltl-traffic-base/B738", "B738", "one", "KLM");
    expectFailure(
        "43: Automatic scan has not found any AI packages, choose a different selection (or go to Manual mode, see "
        "Manual 5.2)");
    EXPECT_EQ(readWhole(gFiles().liveriesScanned), "old");
    fs::create_directories(community / "user-aitraffic");
    gWindow.liveryCount = 7;
    expectFailure(
        "143: Automatic scan has not found any liveries, choose a different selection, or switch off automatic and set "
        "lfolder parameter(-s)");
    EXPECT_TRUE(folder.logged("No liveries found in " + (community / "user-aitraffic").string() + "\n"));
    EXPECT_EQ(gWindow.liveryCount, 0U);
    EXPECT_FALSE(fs::exists(gFiles().liveriesScanned));
    aircraft("user-aitraffic/unknown", "A399", "one", "KLM");
    EXPECT_THROW(gf_scanLiveries(), UserErrorException);
    EXPECT_EQ(
        test::slashed(readWhole(gFiles().invalidTypes)),
        "A399             in " + test::slashed((community / "user-aitraffic/unknown/aircraft.cfg").string()) + "\n")
        << "the reports tell why";
    AI_PACKAGE_SELECTOR.current.set("AIG,FSLTL");
    expectFailure("AI_PACKAGE_SELECTOR not set");
    AI_PACKAGE_SELECTOR.current.set("AIG");
    MSFS_INSTALL_PATH.current.set("");
    gNoWindow = true;
    expectFailure(
        "43: Automatic scan has not found any AI packages, choose a different selection (or go to Manual mode, see "
        "Manual 5.2). There is no window here: set AI_PACKAGE_SELECTOR in " +
        gf_shownPath(gFiles().settings) +
        ", or start with --set AI_PACKAGE_SELECTOR=FSLTL; for folders of your own set LIG_AUTOMATIC to false and "
        "lfolder0 to the first of them");
    gNoWindow = false;
}

TEST_F(Scan, ManualFoldersAreScannedInTheirOrder) {
    LIG_AUTOMATIC.current = false;
    expectFailure(
        "48: Exit Halcyrane first!   Then set one or more lfolder parameters to your liveries, see Manual 5.2");
    lfolder9.current.set((community / "second").string());
    expectFailure("243: the path pointed to by parameter 'lfolder9' does not exist, see Log.txt!");
    EXPECT_TRUE(folder.logged("==> lfolder9: '" + (community / "second").string() + "' does not exist\n"));
    fs::create_directories(community / "second");
    expectFailure("53: no liveries found");
    aircraft("second/B738", "B738", "from the second", "KLM");
    aircraft("first/B738", "B738", "from the first", "KLM");
    lfolder2.current.set(community.string() + "\\first\\");
    gf_scanLiveries();
    EXPECT_THAT(titles(), ElementsAre("from the first"));
    EXPECT_TRUE(folder.logged("liveries scan manual starts ++"));
}

TEST_F(Scan, FoldersThatAreNoneAreToldAndDoNotCount) {
    aircraft("a/B738", "B738", "a", "KLM");
    writeWhole(community / "file", "");
    EXPECT_TRUE(lf_scanFolders({"", community / "absent", community / "file", community / "a"}));
    EXPECT_TRUE(folder.logged((community / "absent").string() + " does not exist, skipped!\n" +
                              (community / "file").string() + " is not a folder name, skipped!\n"));
    EXPECT_THAT(titles(), ElementsAre("a"));
}

TEST_F(Scan, TheWalkEntersWhatHoldsAircraft) {
    const fs::path longName = community / "p" / std::string(100, 'n');
    const fs::path deep = longName / std::string(249 - longName.string().size() - 1, 'm');
    const fs::path deeper = deep.string() + "m";
    const auto put = [&](const fs::path& file, const std::string& title) {
        writeWhole(file, general("B738") + section(title, "KLM"));
    };
    put(community / "p/AIRCRAFT.CFG", "capitals");
    put(community / "p/aircraft.cfg.bak", "another extension");
    put(community / "p/aircraft.txt", "another extension 2");
    put(community / "p/my-aircraft.cfg", "another stem");
    for (const std::string package :
         {"airport", "lvfr", "mkstudios", "simwings", "fsdreamteam", "navigraph", "flytampa", "inibuilds", "_CVT_"}) {
        put(community / "p" / ("x-" + package + "-y/deep/aircraft.cfg"), package);
    }
    put(community / "p/Airport/aircraft.cfg", "no scenery");
    put(deep / "aircraft.cfg", "a path of more than 250 bytes");
    put(deeper / "aircraft.cfg", "a folder of 250 bytes");
    fs::create_directories(community / "p/folder/aircraft.cfg");
    EXPECT_TRUE(lf_scanFolders({community / "p"}));
    EXPECT_THAT(titles(), ElementsAre("a path of more than 250 bytes", "capitals", "no scenery"));
}

TEST_F(Scan, APackageBelowAPathOfASceneryIsToldToBeEmpty) {
    aircraft("x-airport-y/package/B738", "B738", "title", "KLM");
    lf_scanFolder(1, community / "x-airport-y/package");
    EXPECT_TRUE(gScanList.empty());
    EXPECT_TRUE(folder.logged("x-airport-y/package: the folders in it aren't entered"));
}

TEST_F(Scan, AnUnreadableFolderDoesNotEndTheWalk) {
    EXPECT_NO_THROW(lf_scanFolder(1, community / "gone"));
    EXPECT_TRUE(folder.logged("==> liveries search in " + (community / "gone").string() + " aborted, cause: "));
    EXPECT_TRUE(gScanList.empty());
}

TEST_F(Scan, FilesOfTheIvaoPackageHaveTheirOwnReader) {
    const fs::path aircraft = community / "IVAO_MTL/SimObjects/Airplanes/IVAO_B738";
    fs::create_directories(aircraft / "texture.KLM");
    writeWhole(aircraft / "aircraft.cfg", "[fltsim.0]\ntitle=B738 KLM\ntexture=KLM\n");
    gf_scanLiveries();
    EXPECT_NE(readWhole(gFiles().liveriesScanned).find("airl=\"KLM\" type=\"B738\" title=\"B738 KLM\""),
              std::string::npos);
}

/// The bytes of all files of the output folder, each behind its name.
std::string lf_output() {
    std::vector<fs::path> files;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator("output")) {
        if (entry.is_regular_file()) files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());
    std::string bytes;
    for (const fs::path& file : files) bytes += file.generic_string() + "\n" + readWhole(file);
    return bytes;
}

TEST_F(Scan, TwoScansOfOneTreeGiveTheSameBytesWhicheverWorkerIsFaster) {
    folder.readDbase(R"(<fixes><fx wro="A320NEO" cor="A320"/></fixes>)");
    constexpr int kFiles = 120, kTitles = 50;
    for (int i = 0; i < kFiles; ++i) {
        const char* package = i % 2 == 0 ? "aig-aitraffic-oci" : "fsltl-traffic-base";
        const char* types[] = {"B738", "A320NEO", "A320", "A399", "C172"};
        const std::string title = fmt::format("title {}", i * 7919 % kTitles);
        aircraft(fmt::format("{}/{}/{:03}", package, i % 7, i), types[i % 5], title, i % 4 == 3 ? "QQQ" : "KLM",
                 fmt::format("atc_id=PH-{:03}", i));
    }
    LIG_PRIORITIZE.current = false;
    scanThreadLimit = 16;
    // Every other file is late, another one in each scan.
    gCfgReaders.usual = [](i32 order, const fs::path& path) {
        static std::atomic<u32> files{0};
        if (files++ % 7 < 3) std::this_thread::sleep_for(std::chrono::microseconds(300));
        return lf_searchLiveriesinFile(order, path);
    };
    gf_scanLiveries();
    const std::string first = lf_output();
    EXPECT_THAT(titles(), testing::SizeIs(testing::Gt(20U)));
    for (const char* report : {"LiveriesScanned.xml", "InvalidAirlineCodes.txt", "Fixes.txt",
                               "InvalidAircraftCodes.txt", "IncompleFltsimSections.txt"}) {
        EXPECT_THAT(first, testing::HasSubstr(report));
    }
    EXPECT_THAT(first, testing::HasSubstr("already exists"));
    for (int scan = 0; scan < 20; ++scan) {
        gf_scanLiveries();
        ASSERT_EQ(lf_output(), first) << scan;
    }
}

TEST_F(Scan, AStopIsAnsweredAlthoughFilesAreBeingRead) {
    for (int i = 0; i < 100; ++i) {
        aircraft(fmt::format("aig-aitraffic-oci/slow{}", i), "B738", fmt::format("title {}", i), "KLM");
    }
    scanThreadLimit = 2;
    std::unique_lock slowFiles(gDrive);
    gCfgReaders.usual = readFromDrive;
    std::thread run(gf_scanLiveries);
    waitUntil([] { return scanThreadsActive == scanThreadLimit; });
    gf_requestStop(ExitReason::newSettings, 2);
    run.join();
    EXPECT_TRUE(SCAN_LIVERIES.current);
    EXPECT_TRUE(gScanList.empty());
    EXPECT_FALSE(fs::exists(gFiles().liveriesScanned));
    EXPECT_FALSE(gf_scanWorkersEnded());

    // The next run's scan begins with what these leave.
    forgetStop();
    std::thread next(gf_scanLiveries);
    slowFiles.unlock();
    next.join();
    EXPECT_EQ(titles().size(), 100U);
    EXPECT_TRUE(folder.logged("\nNo errors\n"));
}

TEST_F(Scan, AStopBeforeItsStartLeavesTheOldResults) {
    aircraft("aig-aitraffic-oci/a", "B738", "title", "KLM");
    writeWhole(gFiles().liveriesScanned, "old");
    gf_requestStop(ExitReason::newSettings, 2);
    gf_scanLiveries();
    EXPECT_EQ(readWhole(gFiles().liveriesScanned), "old");
    EXPECT_TRUE(SCAN_LIVERIES.current);
}

TEST_F(Scan, AFileOfMoreThanTenSecondsIsLeftOutAndTheRestIsWritten) {
    aircraft("aig-aitraffic-oci/slow", "B738", "slow", "KLM");
    writeWhole(community / "aig-aitraffic-oci/b/aircraft.cfg", "[GENERAL]\n");
    aircraft("fsltl-traffic-base/c", "B738", "fast", "DLH");
    scanThreadLimit = 2;
    gf_speedClock(50);
    const i64 begun = gf_steadyUs();
    std::unique_lock slowFile(gDrive);
    gCfgReaders.usual = readFromDrive;
    std::thread run(gf_scanLiveries);
    waitUntil([&] {
        return folder.logged("==> liveries search aborted, futs outer, Future wait timed out after 10 seconds\n");
    });
    EXPECT_GE(gf_steadyUs() - begun, 10'000'000);
    slowFile.unlock();
    run.join();
    gf_releaseClock();
    EXPECT_TRUE(folder.logged((community / "aig-aitraffic-oci/slow/aircraft.cfg").string() + " takes too long\n"));
    EXPECT_THAT(titles(), ElementsAre("fast"));
}

TEST_F(Scan, AFileThatIsNeverReadHoldsNobodyUp) {
    const ScanReader hangs = [](i32, const fs::path&) -> CfgContent {
        const std::lock_guard lock(gDrive);
        return {};
    };
    std::unique_lock asleep(gDrive);
    {
        ScanPool pool(1);
        const ScanFuture never = gf_startReading(pool, hangs, 1, "file");
        waitUntil([&] { return never.job->begun.load(); });
        EXPECT_FALSE(gf_endScanPool(pool));
    }
    EXPECT_FALSE(gf_awaitScanWorkers());
    asleep.unlock();
    waitUntil([] { return gf_awaitScanWorkers(); });
}

TEST_F(Scan, TheNextRunWearsWhatItsOwnScanFound) {
    aircraft("aig-aitraffic-oci/a", "B738", "old", "KLM");
    gf_scanLiveries();
    gf_loadScanResults();
    EXPECT_EQ(loadedTitles(), std::vector<std::string>{"old"});
    fs::remove_all(community / "aig-aitraffic-oci/a");
    aircraft("aig-aitraffic-oci/b", "B738", "new", "KLM");
    gf_scanLiveries();
    gf_loadScanResults();
    EXPECT_EQ(loadedTitles(), std::vector<std::string>{"new"});
}

TEST_F(Scan, AResultThatCannotBeWrittenIsToldAndTheNextStartScansAgain) {
    aircraft("aig-aitraffic-oci/a", "B738", "title", "KLM");
    SCAN_LIVERIES.current = true;
    fs::create_directories("output/LiveriesScanned.xml.part");
    gf_scanLiveries();
    EXPECT_TRUE(folder.logged("==> output/LiveriesScanned.xml could not be written: "));
    EXPECT_TRUE(SCAN_LIVERIES.current);
}

TEST_F(Scan, AReaderThatThrowsCostsItsFileOnly) {
    ScanPool pool(1);
    const ScanReader throws = [](i32, const fs::path&) -> CfgContent { throw std::runtime_error("no memory"); };
    const ScanReader reads = [](i32 order, const fs::path& path) {
        return CfgContent{{{{"KLM", "B738", path.string(), "", order, false}, ""}}, {}};
    };
    ScanFuture bad = gf_startReading(pool, throws, 1, "bad"), good = gf_startReading(pool, reads, 3, "good");
    EXPECT_THROW(bad.content.get(), std::runtime_error);
    const LiveryData livery = good.content.get().liveries.at(0).livery;
    EXPECT_EQ(livery.title, "good");
    EXPECT_EQ(livery.folderOrder, 3);
    EXPECT_TRUE(gf_endScanPool(pool));
}

}  // namespace
}  // namespace hcr
