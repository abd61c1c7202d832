#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

#include "core/model/aircraft.h"
#include "core/model/tables.h"
#include "liveries/match_memory.h"
#include "liveries/match_trace.h"
#include "shell/file_names.h"
#include "shell/log.h"
#include "shell/parameters.h"
#include "sim/aircraft.h"
#include "support/data_folder.h"
#include "support/environment.h"
#include "tools/data/commands.h"
#include "tools/data/match_report.h"

namespace hcr {
namespace {

using test::liv;
using testing::HasSubstr;

constexpr const char* kSections = R"(<similar_types><similar types="B738,B739"/></similar_types>
    <fixes><fx wro="B73H" cor="B738"/></fixes>
    <dbase><db reg="PH-BXO" airl="KLM" type="B739"/><db reg="PH-LSE" airl="DLH" type="B738" opr="KLM" cargo="true"/>
    </dbase>)";

const std::string kLiveries = liv("KLM", "B738", "KLM Retro") + liv("KLM", "B738", "KLM Blue") +
                              liv("KLM", "B738", "KLM Green") + liv("DLH", "B739", "DLH Crane") +
                              liv("PVT", "C172", "Cessna") + liv("KLM", "B744", "KLM Freight", R"(cargo="true")");
constexpr const char* kRegcodes = R"(<livery title="KLM Retro" reg="PH-BXA" special="true"/>)";

struct MatchReport : testing::Test {
    test::DataFolder folder;

    MatchReport() {
        folder.readDbase(kSections);
        MATCHING_DEPTH.current = 4;
        folder.loadLiveries(kLiveries, kRegcodes);
    }
};

std::string failure(const MatchQuestion& question) {
    try {
        return "no failure: " + gf_matchReport(question);
    } catch (const std::runtime_error& fault) {
        return fault.what();
    }
}

TEST_F(MatchReport, ShowsStepsCandidatesAndResultOfBothMatchings) {
    MatchQuestion question;
    question.airline = "KLM";
    question.type = "B738";
    question.registration = "PH-BXB";
    question.from = "EHAM";
    question.to = "LFPG";
    EXPECT_EQ(gf_matchReport(question), R"(Aircraft
  asked for   KLM B738 PH-BXB, EHAM -> LFPG
  airframe    PH-BXB isn't in the reference data
  matched as  KLM B738, class Large, passenger
  settings    MATCHING_DEPTH 4, RANDOM off
  installed   6 liveries, 1 registration, 0 titles refused by the simulator

Live
  1  registration            PH-BXB              nothing
  2  airline and type        KLM B738 passenger  3 liveries, the first that isn't reserved
     > KLM Blue
       KLM Green
       KLM Retro  reserved for PH-BXA
  =  KLM Blue
     by step 2, airline and type

Parked, on a stand that isn't marked for cargo
  1  registration            PH-BXB              nothing
  2  airline and type        KLM B738 passenger  3 liveries, the first that isn't reserved
     > KLM Blue
       KLM Green
       KLM Retro  reserved for PH-BXA
  =  KLM Blue
     by step 2, airline and type
)");
    EXPECT_TRUE(gLiveAcs.empty());
    EXPECT_EQ(gMatchTrace, nullptr);
}

TEST_F(MatchReport, TellsWhyThereIsNoLivery) {
    MATCHING_DEPTH.current = 1;
    EXPECT_THAT(gf_matchReport({.airline = "KLM", .type = "B738"}),
                HasSubstr("  1  registration            -                   not tried, no registration is known\n"
                          "  2  airline and type        -                   not tried, needs MATCHING_DEPTH 2\n"
                          "  =  no livery, MATCHING_DEPTH is 1: the aircraft isn't shown\n"));
    MATCHING_DEPTH.current = 4;
    failedTitles.insert("KLM Blue");
    EXPECT_THAT(gf_matchReport({.airline = "KLM", .type = "B738"}),
                HasSubstr("the first that isn't reserved; the simulator has refused it\n"
                          "     > KLM Blue   refused\n"
                          "       KLM Green\n"
                          "       KLM Retro  reserved for PH-BXA\n"
                          "  3  airline, similar type   KLM B738            KLM has the type itself\n"
                          "  4  unbranded (ZZZ)         ZZZ B738 passenger  nothing\n"
                          "  5  generic of type         B738                not tried, class Large takes no other "
                          "operator's livery\n"
                          "  =  no livery, the simulator has refused what fits: the aircraft isn't shown\n"));
    EXPECT_THAT(gf_matchReport({.airline = "KLM", .type = "A320"}),
                HasSubstr("  =  no livery, nothing that is installed fits: the stand stays empty\n"));
    LIGHT_AIRCRAFT.current = false;
    EXPECT_THAT(
        gf_matchReport({.airline = "PVT", .type = "PA28"}),
        testing::AllOf(HasSubstr("Live\n  =  not shown: LIGHT_AIRCRAFT is off\n"),
                       HasSubstr("  6  generic, similar type   C172 passenger      1 livery\n     > Cessna\n")));
}

TEST_F(MatchReport, KnowsTheAirframeAsTheProgramDoes) {
    EXPECT_THAT(gf_matchReport({.airline = "AFR", .type = "A320", .registration = "PHLSE"}),
                testing::AllOf(HasSubstr("  airframe    PHLSE is a B738 of DLH, flown by KLM, cargo\n"),
                               HasSubstr("  matched as  KLM B738, class Large, cargo\n"),
                               HasSubstr("  2  airline and type        KLM B738 cargo      nothing\n"
                                         "  2  airline and type        KLM B738 passenger  3 liveries"),
                               HasSubstr("Parked, on a stand that is marked for cargo\n")));
    EXPECT_THAT(gf_matchReport({.registration = "PH-BXO", .cargo = true}),
                testing::AllOf(HasSubstr("  matched as  KLM B739, class Large, passenger\n"),
                               HasSubstr("--cargo doesn't count, since the airframe is known"),
                               HasSubstr("  3  airline, similar type   KLM B738 passenger  3 liveries")));
    EXPECT_THAT(gf_matchReport({.type = "B744", .callsign = "KLM601", .cargo = true}),
                testing::AllOf(HasSubstr("  matched as  KLM B744, class Heavy, cargo\n"),
                               HasSubstr("carries cargo only when its airframe is known to do so"),
                               HasSubstr("  =  KLM Freight\n     by step 2")));
    EXPECT_THAT(gf_matchReport({.airline = "KLM", .type = "B738", .registration = "PHBXA"}),
                HasSubstr("PH-BXA has a livery; a registration counts only as the feed spells it\n"));
}

TEST_F(MatchReport, ALongListIsCutBehindTheFirstOnesButShowsTheDrawnOne) {
    std::string liveries;
    for (char c = 'a'; c <= 'o'; ++c) liveries += liv("KLM", "B738", std::string("paint ") + c);
    std::string regcodes;
    for (char c = 'a'; c <= 'k'; ++c) {
        regcodes +=
            fmt::format(R"(<livery title="paint {0}" reg="PH-A{0},PH-B{0},PH-C{0},PH-D{0}" special="true"/>)", c);
    }
    folder.loadLiveries(liveries, regcodes);
    EXPECT_THAT(gf_matchReport({.airline = "KLM", .type = "B738"}),
                HasSubstr("       paint h  reserved for PH-Ah, PH-Bh, PH-Ch and 1 more\n"
                          "     > paint l\n"
                          "       and 6 more\n"));
    EXPECT_THAT(gf_matchReport({.airline = "KLM", .type = "B738", .allTitles = true}),
                HasSubstr("       paint n\n       paint o\n  =  paint l\n"));
}

TEST_F(MatchReport, UnknownCodesGetAMessage) {
    EXPECT_EQ(
        failure({.airline = "KLM", .type = "B73H"}),
        "'B73H' is no aircraft type of the reference data, so that aircraft of it are never shown. B738 is meant, "
        "as in add-on files? Types that begin alike: B738, B739, B744");
    EXPECT_EQ(failure({.airline = "KLM", .type = "\xff"}),
              "'\xff' is no aircraft type of the reference data, so that aircraft of it are never shown.");
    EXPECT_THAT(failure({.registration = "D-ABCD"}), HasSubstr("name its type with --type"));
    EXPECT_THAT(gf_matchReport({.airline = "QQQ", .type = "B738"}),
                HasSubstr("  note        QQQ is no airline of the reference data: a scan takes no livery of it\n"));
}

/// The program's folder of a user, with settings, data files, and the log of the last run.
struct MatchCommand : testing::Test {
    test::DataFolder folder;

    MatchCommand() {
        folder.encipher(gFiles().dbaseEnc, fmt::format("<root>{}{}</root>", test::kNeededSections, kSections));
        folder.encipher(gFiles().aigEnc, fmt::format("<root><AIG-regcodes>{}</AIG-regcodes></root>", kRegcodes));
        test::writeWhole(gFiles().liveriesScanned, fmt::format("<root><liveries>{}</liveries></root>", kLiveries));
        test::writeWhole(gFiles().settings, R"(<root><parameters><parameter name="MATCHING_DEPTH" value="2"/>
            <parameter name="RANDOM" value="false"/></parameters></root>)");
        std::filesystem::create_directories(folder.path / "elsewhere");
        std::filesystem::current_path(folder.path / "elsewhere");
    }

    /// Standard output of the command, or the text of its failure.
    std::string run(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), "match");
        arguments.insert(arguments.end(), {"--work", folder.path.string()});
        testing::internal::CaptureStdout();
        std::string failure;
        try {
            EXPECT_EQ(runCommandLine(arguments), kExitGood);
        } catch (const UsageError& fault) {
            failure = "usage: " + fault.text;
        } catch (const std::exception& fault) {
            failure = fault.what();
        }
        const std::string output = testing::internal::GetCapturedStdout();
        EXPECT_EQ(std::filesystem::current_path(), folder.path / "elsewhere");
        return failure.empty() ? output : failure;
    }
};

TEST_F(MatchCommand, LoadsWhatARunLoadsAndLeavesTheFolderAsItIs) {
    std::filesystem::create_directories(folder.path / gFiles().myRegcodes);
    test::writeWhole(folder.path / gFiles().myRegcodes / "mine.txt", "KLM Green;PH-BXC,PH-BXD\na;b;c;d;e\n");
    ParkedAc refused;
    refused.callsign = "KLM 1";
    refused.liveryTitle = "KLM Blue";
    gf_onCreateFailed(refused);
    failedTitles.clear();
    const std::string settings = test::readWhole(gFiles().settings);
    const std::string log = folder.log();
    gf_closeLog();

    const std::string report = run({"--airline", "klm", "--type", "b738"});
    EXPECT_THAT(test::slashed(report),
                HasSubstr("Faults in the files\n  input/my_regcodes/mine.txt: wrong format 'a;b;c;d;e'\n"));
    EXPECT_THAT(report, HasSubstr("MATCHING_DEPTH 2, RANDOM off\n  installed   6 liveries, 3 registrations, 1 title "
                                  "refused by the simulator\n"));
    EXPECT_THAT(report, HasSubstr("     > KLM Blue   refused\n"));
    EXPECT_THAT(run({"--airline", "KLM", "--type", "B738", "--depth", "1", "--reg", "PH-BXD"}),
                testing::AllOf(HasSubstr("MATCHING_DEPTH 1,"), HasSubstr("  =  KLM Green\n     by step 1,")));
    EXPECT_THAT(run({"--type", "B738", "--reg", "PH-BXA", "--refused", "KLM Retro"}),
                HasSubstr("1 livery; the simulator has refused it\n     > KLM Retro  reserved for PH-BXA, refused\n"));

    EXPECT_EQ(test::readWhole(folder.path / gFiles().settings), settings)
        << "no helicopter is installed, but the switch for them stays as the user has it";
    EXPECT_EQ(test::readWhole(folder.path / "Log.txt"), log);
    EXPECT_TRUE(std::filesystem::is_empty(folder.path / gFiles().info));
    EXPECT_FALSE(std::filesystem::exists(folder.path / gFiles().dbaseXml));
}

TEST_F(MatchCommand, WorksWithoutSettingsAndWithoutShippedRegistrations) {
    std::filesystem::remove(gFiles().settings);
    std::filesystem::remove(folder.path / gFiles().aigEnc);
    EXPECT_THAT(run({"--airline", "DLH", "--type", "B738"}), HasSubstr("6 liveries, 0 registrations"));
    EXPECT_FALSE(std::filesystem::exists(gFiles().settings));
}

TEST_F(MatchCommand, TellsWhichFileIsMissing) {
    std::filesystem::remove(folder.path / gFiles().liveriesScanned);
    EXPECT_EQ(test::slashed(run({"--type", "B738"})),
              (folder.path / "output/LiveriesScanned.xml").generic_string() +
                  " can't be read: No such file or directory. It holds the liveries that the last scan has found; "
                  "--work names the folder in which the program works.");
    test::writeWhole(folder.path / gFiles().liveriesScanned, "<root/>");
    EXPECT_THAT(run({"--type", "B738"}), HasSubstr("does not contain a <liveries> section"));
    test::writeWhole(folder.path / gFiles().dbaseEnc, "no cipher");
    EXPECT_THAT(run({"--type", "B738"}), HasSubstr("stream decrypt failed"));
    std::filesystem::remove(folder.path / gFiles().dbaseEnc);
    EXPECT_THAT(test::slashed(run({"--type", "B738"})), HasSubstr("input/dbase.enc can't be read"));
}

TEST_F(MatchCommand, TellsWhatIsWrongWithItsArguments) {
    for (const std::vector<std::string>& wrong :
         std::vector<std::vector<std::string>>{{},
                                               {"--airline", "KLM"},
                                               {"B738"},
                                               {"--type", "B738", "--depth", "0"},
                                               {"--type", "B738", "--depth", "5"},
                                               {"--type", "B738", "--depth", "2x"},
                                               {"--type", " "}}) {
        EXPECT_THAT(run(wrong), testing::StartsWith("usage: "));
    }
}

TEST(DataCommandLine, EachCommandTellsItsOptions) {
    const std::pair<std::vector<std::string>, const char*> rows[] = {{{"help"}, "encipher"},
                                                                     {{"--help"}, "match"},
                                                                     {{"scan", "--help"}, "--no-prioritize"},
                                                                     {{"match", "-h"}, "--airline"},
                                                                     {{"decipher", "a", "--help"}, "--key"}};
    for (const auto& [arguments, word] : rows) {
        testing::internal::CaptureStdout();
        EXPECT_EQ(runCommandLine(arguments), kExitGood);
        EXPECT_THAT(testing::internal::GetCapturedStdout(), HasSubstr(word));
    }
}

TEST(DataCommandLine, TellsWhatIsWrongWithIt) {
    const std::pair<std::vector<std::string>, const char*> rows[] = {
        {{}, "required"},
        {{"scam"}, "unknown argument 'scam'"},
        {{"encipher", "a"}, "OUT is required"},
        {{"encipher", "a", "b", "c"}, "unknown argument 'c'"},
        {{"encipher", "a", "b", "--key", "0g"}, "--key: needs 64 hexadecimal digits"},
        {{"scan", "--community", "c"}, "--work is required"},
        {{"scan", "--work", ""}, "--work: needs a value"},
        {{"scan", "--work", "w"}, "--community or --folder is needed"},
        {{"scan", "--work", "w", "--folder", "f", "--community", "c"}, "--community excludes --folder"},
        {{"match", "--type"}, "--type needs a value"},
        {{"match", "--type", "B738", "--refused", "a", "b"}, "unknown argument 'b'"}};
    for (const auto& [arguments, words] : rows) {
        try {
            runCommandLine(arguments);
            ADD_FAILURE() << words;
        } catch (const UsageError& fault) {
            EXPECT_THAT(fault.text, HasSubstr(words));
        }
    }
}

}  // namespace
}  // namespace hcr
