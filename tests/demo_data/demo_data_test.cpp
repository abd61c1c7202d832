#include <fmt/format.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <nlohmann/json.hpp>
#include <pugixml.hpp>
#include <set>

#include "core/model/aircraft_class.h"
#include "liveries/aircraft_cfg.h"
#include "liveries/dbase.h"
#include "liveries/dbase_reader.h"
#include "liveries/livery_tables.h"
#include "liveries/reports.h"
#include "liveries/results.h"
#include "liveries/scan.h"
#include "liveries/scan_threads.h"
#include "parking/catalogue.h"
#include "shell/data_update.h"
#include "shell/file_names.h"
#include "shell/parameters.h"
#include "shell/text.h"
#include "sim/port/sandbox/scenario.h"
#include "support/data_folder.h"
#include "support/environment.h"
#include "tools/feed/fleet.h"

// The data set is written by hand. The program's own readers must take it without a complaint, and its parts must agree
// so far that the demo shows its traffic.

namespace hcr {
namespace {

namespace fs = std::filesystem;

std::string lf_text(const char* name) {
    return test::readWhole(test::demoData(name));
}

TEST(DemoData, IsReadWithoutAComplaintAndItsPartsAgree) {
    const test::DataFolder folder;
    folder.encipher(gFiles().dbaseEnc, lf_text("dbase.xml"));
    folder.encipher(gFiles().airportsEnc, lf_text("airports.xml"));
    folder.encipher(gFiles().aigEnc, lf_text("AIG-regcodes.xml"));
    test::writeWhole(gFiles().liveriesScanned, lf_text("LiveriesScanned.xml"));
    ASSERT_TRUE(gf_readDbase());
    ASSERT_TRUE(gf_readAirports());
    gf_loadScanResults();
    EXPECT_FALSE(folder.logged("==> ")) << folder.log();
    EXPECT_FALSE(folder.logged("No livery found")) << "of a class";
    EXPECT_FALSE(folder.logged("regcode clash")) << folder.log();
    EXPECT_GE(gAirports.size(), 1500U);
    for (const LiveryGroup& group : liveryIndex) {
        EXPECT_TRUE(gf_isAirline(group.airline) && gf_isValidType(group.type)) << group.airline << " " << group.type;
    }
    for (const std::string& code : simAddons20) EXPECT_TRUE(gf_airportKnown(code)) << code;

    const Scenario scenario = gf_readScenario(test::demoData("scenario.json"));
    for (const TitleFacts& facts : scenario.titles) EXPECT_NE(gf_findTitle(facts.title), "") << facts.title;
    for (const std::string& title : scenario.refused) EXPECT_NE(gf_findTitle(title), "") << title;
    EXPECT_LT(scenario.refused.size(), 20U) << "as many as end the run";
    const nlohmann::json versions = nlohmann::json::parse(lf_text("versions.json"));
    for (const char* key : {"simaddon", "airports", "aig", "liveries", "addons", "dbase"}) {
        EXPECT_GT(gf_webVersion(versions, key), VersionData()) << key;
    }
    EXPECT_EQ(gf_webVersion(versions, "msfs"), gf_programVersion()) << "else the demo would fetch another program";
}

TEST(DemoData, WellKnownTypesHaveTheirClassAndSpan) {
    const test::DataFolder folder;
    ASSERT_EQ(gf_readDbaseText(lf_text("dbase.xml")), "");
    struct Known {
        const char* type;
        AircraftCategory acClass;
        f64 metres;
    };
    const Known rows[] = {{"A20N", Large, 35.8},   {"AT76", Large, 27.05},     {"A388", Heavy, 79.75},
                          {"C17", Heavy, 51.75},   {"GLF6", Buzjets, 30.35},   {"C56X", Buzjets, 17.17},
                          {"F16", HighPerf, 9.96}, {"EC35", Rotorcraft, 10.2}, {"C172", Light, 11.0}};
    for (const Known& row : rows) {
        EXPECT_EQ(gf_acClass(row.type), row.acClass) << row.type;
        EXPECT_NEAR(gf_halfSpanNm(row.type) * 2 * 1852, row.metres, 0.3) << row.type;
    }
}

// The packages hold the liveries of the demo's traffic, and one example of each fault that a package can have.
TEST(DemoData, ItsPackagesHoldTheLiveriesOfItsTraffic) {
    const test::DataFolder folder;
    ASSERT_EQ(gf_readDbaseText(lf_text("dbase.xml")), "");
    std::vector<LiveryData> liveries;
    std::vector<fs::path> files;
    for (const auto& entry : fs::recursive_directory_iterator(test::demoData("packages"))) {
        if (entry.path().filename() == "aircraft.cfg") files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());
    scanThreadsActive = static_cast<i32>(files.size());
    for (const fs::path& file : files) {
        const bool isIvao = file.string().find("IVAO_MTL") != std::string::npos;
        gf_takeOver(isIvao ? lf_searchLiveriesinIVAOFile(1, file) : lf_searchLiveriesinFile(1, file), liveries);
    }
    std::map<std::string, std::string> shown;
    std::set<std::pair<std::string, std::string>> pairs;
    const auto lineOf = [](const auto& airl, const auto& type, const auto& atcid, bool cargo) {
        return fmt::format("{} {} {} {}", airl, type, atcid, cargo);
    };
    for (const LiveryData& l : liveries) {
        EXPECT_TRUE(shown.emplace(l.title, lineOf(l.airl, l.type, l.atcid, l.cargo)).second) << l.title;
        pairs.emplace(l.airl, l.type);
    }
    for (const auto* operators : {&usualOperators(), &privateOwners(), &helicopterOwners()}) {
        for (const FeedOperator& owner : *operators) {
            for (const std::string& type : owner.types) {
                EXPECT_TRUE(pairs.contains({owner.icao, type}) || pairs.contains({"ZZZ", type}))
                    << owner.icao << " " << type;
            }
        }
    }
    pugi::xml_document document;
    ASSERT_TRUE(document.load_file(test::demoData("LiveriesScanned.xml").c_str()));
    std::size_t known = 0;
    for (const pugi::xml_node liv : document.child("root").child("liveries").children()) {
        const auto value = [&liv](const char* name) { return liv.attribute(name).value(); };
        const auto found = shown.find(value("title"));
        if (found == shown.end()) continue;
        EXPECT_EQ(found->second, lineOf(value("airl"), value("type"), value("atcid"), liv.attribute("cargo").as_bool()))
            << found->first;
        ++known;
    }
    EXPECT_GT(known, 300U);
    for (const ReportList* list : {&gInvalidAirlines, &gInvalidTypes, &gCodeFixes, &gInvalidFiles, &gIncompleteSections,
                                   &gFilesWithoutSections}) {
        EXPECT_FALSE(list->empty());
    }
}

}  // namespace
}  // namespace hcr
