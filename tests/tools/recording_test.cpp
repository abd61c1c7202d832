#include "tools/feed/recording.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "support/temp_folder.h"
#include "tools/feed/control_client.h"
#include "tools/feed/options.h"
#include "tools/feed/report_line.h"

using namespace hcr;

namespace {

std::string lineAt(const std::string& id, const std::string& timestamp) {
    return "RTTFC," + id + ",1,2,3,4,5,6,7,8,9,10,11,12," + timestamp + ",X2";
}

std::string failure(const std::vector<std::string>& arguments) {
    try {
        parseFeedOptions(arguments);
    } catch (const std::runtime_error& e) {
        return e.what();
    }
    return {};
}

}  // namespace

TEST(Recording, ReceiveTimesAreKeptAsTheyAre) {
    const std::vector<TimedLine> lines =
        parseRecording("100.50\tRTTFC,1\r\n\n99.00\t{\"QNH\": 1013}\n100.75\tRTTFC,2,\t,\n");
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(lines[0].time, 100.5);
    EXPECT_EQ(lines[0].line, "RTTFC,1");
    EXPECT_TRUE(isWeatherLine(lines[1].line));
    EXPECT_EQ(lines[2].line, "RTTFC,2,\t,");
}

TEST(Recording, PlainLinesGoByTheirTimestampsWithoutLongSilences) {
    const std::vector<TimedLine> lines = parseRecording(lineAt("3", "1003.5") + "\n" + lineAt("2", "1002") + "\n" +
                                                        "{\"QNH\": 1013}\n" + lineAt("1", "200") + "\n");
    ASSERT_EQ(lines.size(), 4u);
    EXPECT_EQ(lines[0].line, lineAt("1", "200"));
    EXPECT_EQ(lines[0].time, 992) << "ten seconds ahead of the next line, not thirteen minutes";
    EXPECT_EQ(lines[1].time, 1002);
    EXPECT_TRUE(isWeatherLine(lines[2].line));
    EXPECT_EQ(lines[3].time, 1003.5);
}

TEST(Recording, WhatIsWrittenIsReadAgainCompressedOrNot) {
    const test::TempFolder folder;
    const std::vector<TimedLine> lines{{1.25, "a,b"}, {2.5, "two\nlines\r\n"}};
    for (const char* name : {"feed.tsv", "feed.tsv.gz"}) {
        writeRecordingFile(folder.path / name, recordingText(lines));
        EXPECT_FALSE(std::filesystem::exists(folder.path / (std::string(name) + ".part")));
        const std::vector<TimedLine> again = parseRecording(readRecordingFile(folder.path / name));
        ASSERT_EQ(again.size(), 2u);
        EXPECT_EQ(again[1].time, 2.5);
        EXPECT_EQ(again[1].line, "two lines");
    }
    const std::string whole = test::readFile(folder.path / "feed.tsv.gz");
    test::writeFile(folder.path / "cut.gz", whole.substr(0, whole.size() / 2));
    EXPECT_THROW(readRecordingFile(folder.path / "cut.gz"), std::runtime_error);
    EXPECT_THROW(readRecordingFile(folder.path / "none"), std::runtime_error);
    EXPECT_THROW(writeRecordingFile(folder.path / "no" / "folder", "x"), std::runtime_error);
}

TEST(Recording, OnlyTheTimestampOfALineIsMoved) {
    EXPECT_EQ(withTimestamp(lineAt("1", "5.0"), 1700000000.26), lineAt("1", "1700000000.3"));
    EXPECT_EQ(timestampOf(lineAt("1", "5.25")), 5.25);
    for (const char* text : {"", ",", "RTTFC,1,2", ",,,,,,,,,,,,,,"}) EXPECT_EQ(withTimestamp(text, 1), text);
}

TEST(FeedOptions, TellWhatIsWrongWithThem) {
    EXPECT_EQ(failure({"generate", "--lat", "52", "--minutes", "5", "--list"}), "");
    EXPECT_EQ(failure({"play", "x.tsv", "--speed", "2.5", "--loop"}), "");
    EXPECT_NE(parseFeedOptions({"record", "--help"}).help.find("--traffic-port"), std::string::npos);
    const FeedOptions options = parseFeedOptions({"generate", "--no-control", "--host", "localhost", "--lon", "-5.5",
                                                  "--runway", "-33.9,18.6,10,9000", "--weather-port", "5"});
    EXPECT_EQ(options.command, FeedCommand::generate);
    EXPECT_FALSE(options.control);
    EXPECT_EQ(options.controlHost, "127.0.0.1");
    EXPECT_EQ(options.trafficPort, 49005);
    EXPECT_EQ(options.weatherPort, 5);
    EXPECT_EQ(options.generate.lon, -5.5);
    EXPECT_EQ(options.generate.runway.at(0).lengthFt, 9000);
    for (const std::vector<std::string>& wrong :
         std::vector<std::vector<std::string>>{{},
                                               {"fly"},
                                               {"play"},
                                               {"play", "a", "b"},
                                               {"generate", "a"},
                                               {"play", "a", "--speed"},
                                               {"play", "a", "--speed", "0"},
                                               {"play", "a", "--speed", "nan"},
                                               {"generate", "--traffic-port", "65536"},
                                               {"generate", "--lat", "52x"},
                                               {"generate", "--runway", "52,4,58"},
                                               {"record", "a", "--what"}}) {
        EXPECT_NE(failure(wrong), "");
    }
}

TEST(ControlClient, AnswersOnlyTheVersionQuestion) {
    ControlClient client;
    client.version = "1.2.3";
    EXPECT_EQ(answerControlLine(client, "Qs999=version"), "{\"level\":2,\"version\":\"1.2.3\"}\r\n");
    testing::internal::CaptureStdout();
    for (const char* line : {"", "exit", "Qs121=5e+03;0;1.5;1e+06;12345;0.912807;0.083776", "Qs121=", "Qs121=x;;;;;;",
                             "Qs123=", "Qs123=1e300", "Qs123=nan", "Qs123=1700000000000", "\xff\xfe"}) {
        EXPECT_EQ(answerControlLine(client, line), "") << line;
    }
    EXPECT_NE(testing::internal::GetCapturedStdout().find("user at 52.29999,4.80001, heading 86, 1000 ft, 12 kt"),
              std::string::npos);
}
