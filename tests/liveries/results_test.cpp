#include "liveries/results.h"

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "liveries/livery_tables.h"
#include "liveries/reports.h"
#include "liveries/scanned_file.h"
#include "shell/file_names.h"
#include "shell/messages.h"
#include "shell/parameter_file.h"
#include "shell/parameters.h"
#include "shell/version.h"
#include "shell/window_state.h"
#include "support/data_folder.h"
#include "support/environment.h"

namespace hcr {
namespace {

using test::liv;
using test::readWhole;
using testing::ElementsAre;
using testing::HasSubstr;

struct ScanResults : testing::Test {
    test::DataFolder folder;

    /// What the loading of a file with this text throws.
    std::string faultOf(std::string_view text) const {
        test::writeWhole(gFiles().liveriesScanned, text);
        try {
            gf_loadScanResults();
        } catch (const UserErrorException& error) {
            EXPECT_FALSE(gf_liveryTablesLoaded());
            return test::slashed(error.what());
        }
        return "none";
    }
};

LiveryData livery(const char* airl, const char* type, const char* title, const char* atcid = "", bool cargo = false) {
    return {airl, type, title, atcid, 3, cargo};
}

TEST_F(ScanResults, AnUnusableFileIsToldAndLeavesNothingLoaded) {
    EXPECT_EQ(
        faultOf("<root><liveries>"),
        "51: File output/LiveriesScanned.xml is damaged: Start-end tags mismatch at byte 15. Set SCAN_LIVERIES on, "
        "the next start scans again and writes it anew");
    std::filesystem::remove(gFiles().liveriesScanned);
    EXPECT_THROW(gf_loadScanResults(), UserErrorException);
    EXPECT_EQ(faultOf("<root><meta/></root>"), "52: output/LiveriesScanned.xml does not contain a <liveries> section");
    EXPECT_EQ(faultOf("<root><liveries><!-- none --></liveries></root>"),
              "533: output/LiveriesScanned.xml does not contain liveries");
    EXPECT_EQ(faultOf("<liveries>" + liv("KLM", "B738", "a") + "</liveries>"),
              "533: output/LiveriesScanned.xml does not contain liveries");
    EXPECT_EQ(faultOf(R"(<root><liveries><other airl="KLM" title="a"/></liveries></root>)"),
              "999: Missing required attribute 'type' in <other>");
    EXPECT_EQ(faultOf("<root><liveries>" + liv("KLM", "B738", "a") + "</liveries></root>"), "none");
    EXPECT_TRUE(gf_liveryTablesLoaded());
}

TEST_F(ScanResults, WhatIsWrittenIsReadAgainAsItWas) {
    gf_writeScannedLiveries();
    EXPECT_FALSE(std::filesystem::exists(gFiles().liveriesScanned)) << "an empty scan makes no file";
    gScanList = {livery("KLM", "B738", "x \"&<>' é", "PH-BXA"), livery("DLH", "B744", "freighter", "", true)};
    gf_writeScannedLiveries();
    const std::string file = readWhole(gFiles().liveriesScanned);
    EXPECT_THAT(file, HasSubstr(R"(<liv airl="DLH" type="B744" cargo="true" title="freighter" />)"));
    EXPECT_THAT(file, HasSubstr(fmt::format(R"(name="version" value="{}")", gf_programVersion().text())));
    EXPECT_THAT(file, HasSubstr(R"(name="sim" value="1")"));
    pugi::xml_document document;
    const auto liveries = gf_readScannedLiveries(document);
    ASSERT_EQ(liveries.size(), 2U);
    EXPECT_EQ(liveries[0].airl, "DLH") << "sorted";
    EXPECT_TRUE(liveries[0].cargo);
    EXPECT_EQ(liveries[1].title, "x \"&<>' é");
    EXPECT_EQ(liveries[1].atcid, "PH-BXA");
    EXPECT_TRUE(folder.logged("2 liveries in output/LiveriesScanned.xml\n2 liveries read from "));
}

TEST_F(ScanResults, TheTablesHoldEveryLiveryOnceByAirlineAndOnceByType) {
    folder.readDbase();
    folder.loadLiveries(liv("KLM", "B738", "b") + liv("KLM", "B738", "a", R"(cargo="false" atcid="")") +
                        liv("KLM", "B738", "c", R"(cargo="true" atcid="PH-CCC")") + liv("DLH", "B738", "d") +
                        liv("GEC", "B744", "e", R"(cargo="1")"));
    EXPECT_THAT(airlineTitles[0].at("KLM").at("B738"), ElementsAre("a", "b"));
    EXPECT_THAT(airlineTitles[1].at("KLM").at("B738"), ElementsAre("c"));
    EXPECT_FALSE(airlineTitles[0].contains("GEC"));
    EXPECT_FALSE(airlineTitles[1].contains("DLH"));
    EXPECT_THAT(genericTitles[0].at("B738"), testing::UnorderedElementsAre("a", "b", "d"));
    EXPECT_THAT(genericTitles[1].at("B738"), ElementsAre("c"));
    EXPECT_EQ(gf_findTitle("d").data(), airlineTitles[0].at("DLH").at("B738").front().data()) << "one text for all";
    EXPECT_EQ(gf_findTitle("nobody's"), "");
    EXPECT_TRUE(gScanList.empty());
    EXPECT_EQ(gWindow.liveryCount, 5U);
    EXPECT_TRUE(folder.logged("3 airlines, 1 pax aircraft models and 2 cargo aircraft models"));

    gf_loadScanResults();
    EXPECT_TRUE(folder.logged("Processing scanned liveries skipped; already done in previous start-up"));
    EXPECT_THAT(genericTitles[1].at("B738"), ElementsAre("c"));
    gf_clearLiveryTables();
    EXPECT_FALSE(gf_liveryTablesLoaded());
    EXPECT_EQ(gf_findTitle("d"), "");
    EXPECT_TRUE(regcodeTitles.empty() && liveryIndex.empty() && genericTitles[1].empty());
}

TEST_F(ScanResults, TheLogCountsTheLiveriesOfEachClass) {
    folder.readDbase();
    folder.loadLiveries(liv("KLM", "B738", "a") + liv("KLM", "A320", "b") + liv("KLM", "B738", "c", R"(cargo="1")") +
                        liv("ZZZ", "C172", "d") + liv("KLM", "F16", "e") + liv("ZZZ", "PA28", "f"));
    EXPECT_TRUE(folder.logged("Category Light: 2 pax liveries\n  C172,PA28\n"));
    EXPECT_TRUE(
        folder.logged("Category Buzjets: No livery found\n"
                      "Category Large: 2 pax liveries and 1 cargo liverie\n  A320,B738\n"
                      "Category Heavy: No livery found\nCategory HighPerf: 1 pax liverie\n  F16\n"));
    EXPECT_TRUE(folder.logged("2 models have a generic livery\n  C172,PA28\n"));
    EXPECT_THAT(lightPool, ElementsAre("C172", "PA28"));
    EXPECT_TRUE(buzjetPool.empty());
}

TEST_F(ScanResults, ClassesOfWhichNothingIsInstalledAreSwitchedOff) {
    folder.readDbase();
    gf_saveParameters(true);
    HELICOPTERS.current = true;
    HIGH_PERF_AIRCRAFT.current = false;
    LIGHT_AIRCRAFT.current = true;
    LIGHT_AIRCRAFT.enabled = false;
    folder.loadLiveries(liv("KLM", "C172", "a"));
    EXPECT_FALSE(HELICOPTERS.current);
    EXPECT_FALSE(HELICOPTERS.enabled);
    EXPECT_TRUE(folder.logged("HELICOPTERS temporarily switched off because you do not have Helicopters installed"));
    EXPECT_FALSE(HIGH_PERF_AIRCRAFT.enabled);
    EXPECT_FALSE(folder.logged("HIGH_PERF_AIRCRAFT temporarily"));
    EXPECT_TRUE(LIGHT_AIRCRAFT.current);
    EXPECT_TRUE(LIGHT_AIRCRAFT.enabled);
    EXPECT_TRUE(folder.logged("No generic liveries"));
    HELICOPTERS.current = true;
    gf_loadParameters();
    EXPECT_FALSE(HELICOPTERS.current) << "stored";
}

TEST_F(ScanResults, LiveriesFollowTheRecordOfTheirAirframe) {
    folder.readDbase(R"(<dbase><db reg="PH-BXA" airl="KLM" opr="DLH" type="B739" cargo="true"/>
        <db reg="PH-BXB" airl="KLM" type="B738"/><db reg="PH-BXC" airl="KLM" cargo="true"/>
        <db reg="PH-BXD" opr="KLM" type="B744"/></dbase>)");
    gScanList = {livery("KLM", "B738", "a", "PHBXA"),  livery("AFR", "B738", "b", "PH-BXB"),
                 livery("AFR", "B738", "c"),           livery("AFR", "B738", "d", "F-NONE"),
                 livery("AFR", "B738", "e", "PH-BXC"), livery("AFR", "B738", "f", "PH-BXD")};
    gf_applyDbaseToLiveries();
    EXPECT_EQ(gScanList[0].airl, "DLH");
    EXPECT_EQ(gScanList[0].type, "B739");
    EXPECT_TRUE(gScanList[0].cargo);
    EXPECT_EQ(gScanList[1].airl, "KLM");
    EXPECT_EQ(gScanList[3].airl, "AFR");
    for (const std::size_t incomplete : {4, 5}) {
        EXPECT_EQ(gScanList[incomplete].airl, "AFR");
        EXPECT_EQ(gScanList[incomplete].type, "B738");
    }
    EXPECT_THAT(gConversions, ElementsAre(fmt::format("{:80} PHBXA cargo false => true", "a"),
                                          fmt::format("{:80} PHBXA airl KLM => DLH", "a"),
                                          fmt::format("{:80} PHBXA model B738 => B739", "a"),
                                          fmt::format("{:80} PH-BXB airl AFR => KLM", "b")));
}

TEST_F(ScanResults, AScanWithoutFaultsWritesNoReports) {
    std::filesystem::remove(gFiles().errors);
    gf_writeScanReports();
    EXPECT_TRUE(folder.logged("\nNo errors\n\nInformation:\n"));
    EXPECT_FALSE(std::filesystem::exists(gFiles().errors));
    EXPECT_TRUE(std::filesystem::is_empty(gFiles().info));
}

TEST_F(ScanResults, ReportsAreSortedAndCounted) {
    std::filesystem::remove(gFiles().errors);
    for (int line = 199; line >= 0; --line) gInvalidTypes.push_back(fmt::format("line {:03}", line));
    gInvalidAirlines.push_back("KLX");
    for (const char* line : {"b", "a", "b"}) {
        gCodeFixes.push_back(line);
        gIncompleteSections.push_back(line);
        gInvalidFiles.push_back(line);
        gFilesWithoutSections.push_back(line);
        gConversions.emplace_back(line);
    }
    gf_writeScanReports();
    const FileNames& files = gFiles();
    EXPECT_EQ(readWhole(files.invalidAirlines), "KLX\n");
    EXPECT_THAT(readWhole(files.invalidTypes), testing::StartsWith("line 000\nline 001\n"));
    EXPECT_EQ(readWhole(files.fixes), "b\na\nb\n");
    EXPECT_EQ(readWhole(files.invalidFiles), "a\nb\nb\n");
    EXPECT_EQ(readWhole(files.incompleteSections), "a\nb\n");
    EXPECT_EQ(readWhole(files.noFltsimSection), "a\nb\nb\n");
    EXPECT_EQ(readWhole(files.airlineModelConversions), "b\na\nb\n");
    EXPECT_TRUE(folder.logged(
        "\nErrors:\n1 invalid airline code, see output/errors/InvalidAirlineCodes.txt\n"
        "200 invalid model codes, see output/errors/InvalidAircraftCodes.txt\n"
        "3 code fixes, see output/errors/Fixes.txt\n"
        "3 invalid aircraft.cfg files, see output/errors/InvalidAircraftCfgFiles.txt\n"
        "3 incomplete [fltsim.x] sections, see output/errors/IncompleFltsimSections.txt\n\nInformation:\n"
        "3 empty aircraft.cfg files, see output/info/AircraftCfgWithNoFltsimSection.txt\n"
        "3 liveries updated with real live data from dbase, see output/info/AirlineModelConversions.txt\n"));
    gf_clearScanLists();
    EXPECT_TRUE(gInvalidTypes.empty() && gConversions.empty());

    test::writeWhole(files.liveriesScanned, "old");
    gf_removeOldScanFiles();
    EXPECT_FALSE(std::filesystem::exists(files.errors));
    EXPECT_FALSE(std::filesystem::exists(files.liveriesScanned));
    EXPECT_TRUE(std::filesystem::exists(files.airlineModelConversions)) << "stays until the next one";
}

TEST_F(ScanResults, AReportThatCannotBeWrittenDoesNotStopTheOthers) {
    std::filesystem::remove(gFiles().errors);
    test::writeWhole(gFiles().errors, "a file in the folder's place");
    gCodeFixes.push_back("fix");
    gFilesWithoutSections.push_back("file");
    gf_writeScanReports();
    EXPECT_TRUE(folder.logged("==> Error writing file output/errors/Fixes.txt: "));
    EXPECT_EQ(readWhole(gFiles().noFltsimSection), "file\n");
}

}  // namespace
}  // namespace hcr
