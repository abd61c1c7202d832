#include "shell/log.h"

#include <gmock/gmock.h>

#include <thread>

#include "platform/clock.h"
#include "shell/generations.h"
#include "shell/log_start.h"
#include "shell/messages.h"
#include "shell/parameters.h"
#include "shell/random.h"
#include "shell/run_stop.h"
#include "shell/text.h"
#include "shell/time_text.h"
#include "shell/version.h"
#include "shell/window_state.h"
#include "support/temp_folder.h"

using namespace hcr;
using test::readFile;
using test::writeFile;

namespace fs = std::filesystem;

namespace {

/// The stop flags and the window as at the start of the process, before and behind a test.
struct CleanRun {
    CleanRun() { reset(); }
    ~CleanRun() { reset(); }
    CleanRun(const CleanRun&) = delete;
    CleanRun& operator=(const CleanRun&) = delete;
    static void reset() {
        gStop = false;
        gUserStop = false;
        gExitReason = ExitReason::notYetSet;
        gRestartSeconds = 0;
        gf_resetWindowState();
    }
};

}  // namespace

TEST(Log, FirstLineTellsTimeAndVersion) {
    const test::TempFolder folder;
    gf_holdClock(1795382103);  // Sun Nov 22 2026
    gf_openLog();
    gf_closeLog();
    gf_releaseClock();
    EXPECT_EQ(readFile("Log.txt"), "Sun Nov 22 21:15:03 2026 (utc) Halcyrane version " + gf_programVersion().text() +
                                       " for MSFS 2020/2024\n");
}

TEST(Log, LogsOfTheLastThreeRunsSurvive) {
    const test::TempFolder folder;
    for (int run = 1; run <= 5; ++run) {
        gf_openLog();
        gf_log("run " + std::to_string(run));
        gf_closeLog();
        EXPECT_EQ(fs::exists("Log0.txt"), run > 1);
    }
    EXPECT_THAT(readFile("Log.txt"), testing::EndsWith("run 5\n"));
    EXPECT_THAT(readFile("Log0.txt"), testing::EndsWith("run 4\n"));
    EXPECT_THAT(readFile("Log00.txt"), testing::EndsWith("run 3\n"));
    EXPECT_THAT(readFile("Log000.txt"), testing::EndsWith("run 2\n"));
}

TEST(Log, NothingHappensWhileItIsClosed) {
    const test::TempFolder folder;
    gf_closeLog();
    gf_log("x");
    gf_logError("x");
    gf_logFlush();
    EXPECT_TRUE(fs::is_empty("."));
    try {
        gf_openLog("missing/Log.txt");
        ADD_FAILURE() << "opened";
    } catch (const std::runtime_error& fault) {
        EXPECT_THAT(fault.what(), testing::StartsWith("Failed to write file missing"));
        EXPECT_THAT(fault.what(), testing::HasSubstr(gf_shownPath(folder.path / "missing") + ": "));
        EXPECT_THAT(fault.what(), testing::HasSubstr("move it into one where you may write"));
    }
}

TEST(Log, ErrorsAreMarkedAndReachTheFileAtOnce) {
    const CleanRun clean;
    const test::LogFolder log;
    gf_log("line");
    gf_logError("trouble");
    EXPECT_THAT(readFile("Log.txt"), testing::EndsWith("\nline\n==> trouble\n"));
    gf_logIfRunning("seen");
    gUserStop = true;
    gf_logIfRunning("not seen");
    EXPECT_EQ(log.logged(), "line\n==> trouble\nseen\n");
}

TEST(Log, LinesOfManyThreadsStayWhole) {
    const test::LogFolder log;
    const auto write = [](char letter) {
        for (int i = 0; i < 200; ++i)
            i % 2 == 0 ? gf_log(std::string(50, letter)) : gf_logError(std::string(46, letter));
    };
    std::thread first(write, 'a'), second(write, 'b');
    first.join();
    second.join();
    const std::string text = log.logged();
    EXPECT_EQ(text.size(), 400U * 51U);
    for (const std::string_view line : gf_split(gf_trim(text), '\n')) {
        ASSERT_EQ(line.size(), 50U);
        ASSERT_EQ(line.substr(4).find_first_not_of(line.back()), std::string_view::npos);
    }
}

TEST(Log, OfLinesFromOutsideTwentyAMinuteAreWrittenAndTheRestIsCounted) {
    gf_holdClock(1795382103);
    constexpr i64 kSecondUs = 1'000'000;
    const auto flood = [](int lines) {
        for (int i = 0; i < lines; ++i) {
            if (gf_mayLog(LogKind::noQnh)) gf_log("no QNH");
        }
    };
    std::string twenty;
    for (int i = 0; i < 20; ++i) twenty += "no QNH\n";
    const test::LogFolder log;
    flood(20);
    flood(100'000);
    EXPECT_TRUE(gf_mayLog(LogKind::simMessage)) << "each kind has lines of its own";
    gf_turnClock(59 * kSecondUs);
    gf_log("in the minute");
    gf_turnClock(kSecondUs);
    gf_logError("behind it");
    std::string expected = twenty + "in the minute\n... and 100000 more: no QNH\n==> behind it\n";
    EXPECT_EQ(log.logged(), expected);
    flood(21);
    gf_turnClock(61 * kSecondUs);
    flood(22);
    expected += twenty + "... and 1 more: no QNH\n" + twenty;
    EXPECT_EQ(log.logged(), expected);
    gf_logLeftOut();
    gf_logLeftOut();
    expected += "... and 2 more: no QNH\n";
    EXPECT_EQ(log.logged(), expected);
    flood(3);
    gf_closeLog();
    EXPECT_THAT(readFile("Log.txt"), testing::EndsWith(expected + "... and 3 more: no QNH\n"));
    gf_releaseClock();
}

TEST(Messages, AnErrorHoldsTheLine) {
    const CleanRun clean;
    const test::LogFolder log;
    gf_showMessage("hello", true);
    EXPECT_EQ(gWindow.messageShownAt, 1);
    gWindow.secondsCounter = 7;
    gf_showMessage("quiet", false);
    EXPECT_EQ(gWindow.messageShownAt, 7);
    gf_clearMessage();
    EXPECT_EQ(gWindow.messageShownAt, 0);
    gf_showError("broken");
    gf_showMessage("later", true);
    gf_showMessage("", true);
    EXPECT_EQ(gWindow.fatalMessage, "broken");
    EXPECT_EQ(gWindow.message, "");
    EXPECT_EQ(gf_currentMessage(), "broken");
    EXPECT_EQ(log.logged(), "hello\n==> Error broken\n");
}

TEST(Messages, AreShownButNotLoggedWhileStopping) {
    const CleanRun clean;
    const test::LogFolder log;
    gf_requestStop(ExitReason::newSettings, 3);
    gf_showMessage("closing", true);
    EXPECT_EQ(gf_currentMessage(), "closing");
    gf_showError("late trouble");
    EXPECT_EQ(gf_currentMessage(), "late trouble");
    EXPECT_EQ(log.logged(), "");
}

TEST(WindowState, AResetKeepsWhatOutlivesARun) {
    const CleanRun clean;
    gWindow.parkAirport.set("EHAM");
    gWindow.userStand.set("A1");
    gWindow.liveryCount = 9;
    gWindow.liveCount = 9;
    gWindow.minutesToRenewal = 9;
    gWindow.modelKnown = false;
    gWindow.fitLive = 2;
    gf_showError("broken");
    gf_resetWindowState();
    EXPECT_EQ(gWindow.parkAirport.get(), "EHAM");
    EXPECT_EQ(gWindow.userStand.get(), "");
    EXPECT_EQ(gWindow.liveryCount, 9U);
    EXPECT_EQ(gWindow.liveCount, 0U);
    EXPECT_EQ(gWindow.minutesToRenewal, 9);
    EXPECT_TRUE(gWindow.modelKnown);
    EXPECT_EQ(gWindow.fitLive, -1.0F);
    EXPECT_EQ(gf_currentMessage(), "");
    gWindow.parkAirport.set("");
    gWindow.liveryCount = 0;
    gWindow.minutesToRenewal = 0;
}

TEST(WindowState, QualityAndHoursAreShort) {
    EXPECT_EQ(gf_qualityText(-1, -1), "  ");
    EXPECT_EQ(gf_qualityText(5, 60), " 5/60");
    EXPECT_EQ(gf_qualityText(44, 3), "44/ 3");
    EXPECT_EQ(gf_qualityText(45, 3), "45");
    EXPECT_EQ(gf_hoursText(2.0F), "2");
    EXPECT_EQ(gf_hoursText(2.25F), "2.2");
}

TEST(RunStop, TheFirstReasonStands) {
    const CleanRun clean;
    gf_requestStop(ExitReason::readerError, 15);
    gf_requestStop(ExitReason::simConnectError, 9);
    EXPECT_EQ(gExitReason, ExitReason::readerError);
    EXPECT_EQ(gRestartSeconds, 15);
    EXPECT_FALSE(gUserStop);
    gf_requestStop(ExitReason::userClosed, 0);
    EXPECT_TRUE(gUserStop);
    EXPECT_EQ(gExitReason, ExitReason::readerError);
    EXPECT_EQ(gRestartSeconds, 15);
}

TEST(RunStop, TheUserStopsARunWithReasonFour) {
    const CleanRun clean;
    gf_requestStop(ExitReason::userClosed, 0);
    EXPECT_TRUE(gStop && gUserStop && gf_stopAsked());
    gf_requestStop(ExitReason::newFlight, 5);
    EXPECT_EQ(gExitReason, ExitReason::userClosed);
    EXPECT_EQ(gRestartSeconds, 0);
    CleanRun::reset();
    gf_requestStop(ExitReason::systemError, 0);
    gf_requestStop(ExitReason::newSettings, 3);
    EXPECT_EQ(gExitReason, ExitReason::newSettings) << "whoever is shown an error puts it right";
}

TEST(Generations, OneBackupStandsBesideTheFile) {
    const test::LogFolder log;
    fs::create_directory("dot.folder");
    writeFile("dot.folder/EHAM.v2.xml", "new");
    writeFile("dot.folder/EHAM.v20.xml", "old");
    EXPECT_TRUE(gf_save1GenerationOf("dot.folder/EHAM.v2.xml"));
    EXPECT_EQ(readFile("dot.folder/EHAM.v20.xml"), "new");
    EXPECT_TRUE(gf_save1GenerationOf("missing.xml"));
    EXPECT_FALSE(fs::exists("missing0.xml"));
    writeFile("dot.folder/plain", "x");
    EXPECT_FALSE(gf_save1GenerationOf("dot.folder/plain"));
    gf_saveUpto3GenerationsOf("dot.folder/plain");
    EXPECT_EQ(log.logged(),
              "==> gf_save1GenerationOf: no dot in filename: dot.folder/plain\n"
              "==> gf_saveUpto3GenerationsOf: no dot in filename: dot.folder/plain\n");
}

TEST(Generations, AFailedCopyIsLogged) {
    const test::LogFolder log;
    writeFile("a.xml", "x");
    fs::create_directory("a0.xml");
    EXPECT_FALSE(gf_save1GenerationOf("a.xml"));
    EXPECT_THAT(log.logged(), testing::StartsWith("==> copy a.xml -> a0.xml failed: "));
}

TEST(Generations, AFileIsReplacedAsAWholeOrStaysWithoutARestBesideIt) {
    const test::LogFolder log;
    std::error_code error = std::make_error_code(std::errc::io_error);
    EXPECT_TRUE(gf_writeInPlace("file.xml", "old", error));
    EXPECT_FALSE(error);
    const auto half = [](const fs::path& file, std::error_code& fault) {
        writeFile(file.string(), "half");
        fault = std::make_error_code(std::errc::no_space_on_device);
    };
    EXPECT_FALSE(gf_makeInPlace("file.xml", half, error));
    EXPECT_EQ(error, std::errc::no_space_on_device);
    const auto thrown = [](const fs::path& file, std::error_code&) {
        writeFile(file.string(), "half");
        throw std::runtime_error("stopped");
    };
    EXPECT_THROW(gf_makeInPlace("file.xml", thrown, error), std::runtime_error);
    EXPECT_EQ(readFile("file.xml"), "old");
    fs::create_directories("taken/folder");
    EXPECT_FALSE(gf_writeInPlace("taken", "new", error));
    EXPECT_TRUE(error);
    for (const char* rest : {"file.xml.part", "taken.part"}) EXPECT_FALSE(fs::exists(rest)) << rest;
}

TEST(TimeText, ShowsUtc) {
    EXPECT_EQ(gf_utcTimeText(0), "Thu Jan 01 00:00:00 1970");
    EXPECT_EQ(gf_utcTimeText(1709251199), "Thu Feb 29 23:59:59 2024");
    EXPECT_EQ(gf_utcTimeText(253402300799), "Fri Dec 31 23:59:59 9999");
    EXPECT_EQ(gf_utcTimeText(253402300800), "Invalid time");
    EXPECT_EQ(gf_utcTimeText(-1), "Invalid time");
    gf_holdClock(1795382103.9);
    EXPECT_EQ(gf_dateText(), "Nov 22, 2026");
    EXPECT_EQ(gf_timeOfDay(), "21:15:03");
    gf_releaseClock();
}

TEST(Random, CanBeSwitchedOff) {
    gf_resetParameters();
    RANDOM.current = true;
    gf_seedRandom(1);
    u32 highest = 0;
    for (int i = 0; i < 1000; ++i) highest = std::max(highest, gf_randomBelow(10));
    EXPECT_EQ(highest, 9U);
    EXPECT_EQ(gf_randomBelow(1), 0U);
    RANDOM.current = false;
    for (int i = 0; i < 10; ++i) EXPECT_EQ(gf_randomBelow(1000), 0U);
    gf_resetParameters();
}
