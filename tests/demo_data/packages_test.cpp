#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <pugixml.hpp>

#include "liveries/aircraft_cfg.h"
#include "liveries/cfg_content.h"
#include "liveries/dbase_reader.h"
#include "liveries/regcodes.h"
#include "liveries/reports.h"
#include "liveries/scan_threads.h"
#include "shell/text_files.h"
#include "support/data_folder.h"
#include "support/environment.h"
#include "tools/feed/fleet.h"

// The packages of the demo hold the liveries of its traffic, and one example of each fault that a package can have.

namespace hcr {
namespace {

namespace fs = std::filesystem;
using testing::Contains;
using testing::HasSubstr;

std::vector<fs::path> lf_files() {
    std::vector<fs::path> files;
    for (const auto& entry : fs::recursive_directory_iterator(test::demoData("packages"))) {
        if (entry.path().filename() == "aircraft.cfg") files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());
    return files;
}

struct DemoPackages : testing::Test {
    test::DataFolder folder;
    std::vector<fs::path> files = lf_files();
    std::map<std::string, LiveryData> byTitle;

    DemoPackages() {
        EXPECT_EQ(gf_readDbaseText(test::readWhole(test::demoData("dbase.xml"))), "");
        pugi::xml_document regcodes;
        regcodes.load_file(test::demoData("AIG-regcodes.xml").c_str());
        for (const pugi::xml_node livery : regcodes.child("root").child("AIG-regcodes").children()) {
            if (!*livery.attribute("reg").value()) dontUseTitles.emplace_back(livery.attribute("title").value());
        }
        scanThreadsActive = static_cast<i32>(files.size());
        std::vector<LiveryData> liveries;
        for (const fs::path& file : files) {
            const bool isIvao = file.string().find("IVAO_MTL") != std::string::npos;
            gf_takeOver(isIvao ? lf_searchLiveriesinIVAOFile(1, file) : lf_searchLiveriesinFile(1, file), liveries);
        }
        for (LiveryData& livery : liveries) {
            const std::string title = livery.title;
            EXPECT_TRUE(byTitle.emplace(title, std::move(livery)).second) << title;
        }
        EXPECT_EQ(scanThreadsActive, 0);
    }
};

TEST_F(DemoPackages, HoldTheLiveriesThatTheDemoHasWithoutAScan) {
    pugi::xml_document document;
    ASSERT_TRUE(document.load_file(test::demoData("LiveriesScanned.xml").c_str()));
    std::size_t known = 0;
    for (const pugi::xml_node liv : document.child("root").child("liveries").children()) {
        const auto found = byTitle.find(liv.attribute("title").value());
        if (found == byTitle.end()) continue;
        const LiveryData& livery = found->second;
        EXPECT_EQ(livery.airl, liv.attribute("airl").value()) << livery.title;
        EXPECT_EQ(livery.type, liv.attribute("type").value()) << livery.title;
        EXPECT_EQ(livery.atcid, liv.attribute("atcid").value()) << livery.title;
        EXPECT_EQ(livery.cargo, liv.attribute("cargo").as_bool()) << livery.title;
        ++known;
    }
    EXPECT_GT(known, 300U);
    EXPECT_GT(byTitle.size() - known, 30U) << "those of the package whose titles are built by its own rules";
    EXPECT_LT(byTitle.size() - known, 60U);
    for (const std::string& title : dontUseTitles) EXPECT_FALSE(byTitle.contains(title)) << title;
    EXPECT_FALSE(dontUseTitles.empty());
}

TEST_F(DemoPackages, SuitTheTrafficOfTheFeed) {
    std::set<std::pair<std::string, std::string>> pairs;
    std::set<std::string> generic;
    for (const auto& [title, livery] : byTitle) {
        pairs.emplace(livery.airl, livery.type);
        if (livery.airl == "ZZZ") generic.insert(livery.type);
    }
    for (const auto* operators : {&usualOperators(), &privateOwners(), &helicopterOwners()}) {
        for (const FeedOperator& owner : *operators) {
            for (const std::string& type : owner.types) {
                EXPECT_TRUE(pairs.contains({owner.icao, type}) || generic.contains(type)) << owner.icao << " " << type;
            }
        }
    }
}

TEST_F(DemoPackages, ShowEveryFaultThatIsReported) {
    struct Row {
        const ReportList& list;
        const char* text;
    };
    const Row rows[] = {
        {gInvalidAirlines, "QQ           in "},
        {gInvalidAirlines, "QQQ          in "},
        {gInvalidTypes, "A399             in "},
        {gInvalidTypes, "IVAO_A399"},
        {gCodeFixes, "Model fix: A320NEO found in "},
        {gInvalidFiles, "Line icao_type_designator= is missing in [General] section of "},
        {gInvalidFiles, "Number_too_large/aircraft.cfg contains a [fltsim.x] section with a number < 0 or > 10000"},
        {gInvalidFiles, "IVAO_A343/aircraft.cfg contains a [fltsim.x] section with a number < 0 or > 10000"},
        {gFilesWithoutSections, "Model_without_liveries"},
        {gFilesWithoutSections, "IVAO_A332"},
        {gIncompleteSections, "Faulty_titles [FLTSIM.0] has more than one title key"},
        {gIncompleteSections, "] has more than one icao_airline key"},
        {gIncompleteSections, "Faulty_doubles [FLTSIM.1] has more than one atc_parking_types key"},
        {gIncompleteSections, "Faulty_doubles, [FLTSIM.2], has more than one atc_id key"},
        {gIncompleteSections, "invalid atc_id=PH-* in: Faulty D"},
        {gIncompleteSections, "icao_airline is missing, or it has invalid info "},
        {gIncompleteSections, "Faulty_titles [FLTSIM.1] misses title"},
        {gIncompleteSections, "has a title that is too long or holds control characters"},
        {gIncompleteSections, "title 'Boeing 737-800 - KLM' already exists"},
        {gIncompleteSections, "has no airline and no regcode info"},
        {gIncompleteSections, "has no airline and regcode not in dbase"},
        {gIncompleteSections, "IVAO_B739 [FLTSIM.0] has more than one title key"},
        {gIncompleteSections, "IVAO_B739 [FLTSIM.1] has more than one atc_parking_types key"},
        {gIncompleteSections, "IVAO_B739, [FLTSIM.2], has more than one atc_id key"},
        {gIncompleteSections, "invalid atc_id=*** in IVAO B739 KLM"},
        {gIncompleteSections, "texture.GONE [FLTSIM.5] does not exist"},
        {gIncompleteSections, "IVAO_B739 [FLTSIM.6] misses title"},
        {gIncompleteSections, "misses airlinecode in title: Faulty S, and regcode unknown Z9-ZZZ"},
        {gIncompleteSections, "misses airlinecode in title: Faulty T, and no regcode"},
        {gIncompleteSections, "title already exists: IVAO B739 KLM"},
    };
    for (const Row& row : rows) EXPECT_THAT(row.list, Contains(testing::ResultOf(test::slashed, HasSubstr(row.text))));
    EXPECT_TRUE(folder.logged("Utf16_broken/aircraft.cfg': wide_to_utf8: invalid UTF-16\n! Failed reading "));
    EXPECT_TRUE(folder.logged("==> fltsim num [FLTSIM.99999999999] incorrect\n"));
    EXPECT_TRUE(folder.logged("removed spaces around title ' IVAO A319 BAW' --> 'IVAO A319 BAW'\n"));
    for (const std::string& line : gInvalidFiles) EXPECT_THAT(line, testing::Not(HasSubstr("pmdg")));
}

TEST_F(DemoPackages, ComeInEveryCharset) {
    std::map<Charset, int> counts;
    for (const fs::path& file : files) ++counts[gf_detectCharset(file)];
    EXPECT_GT(counts[Charset::utf8WithoutBom], 50);
    for (const Charset charset : {Charset::ansi, Charset::unicode, Charset::unicodeBigEndian, Charset::utf8WithBom}) {
        EXPECT_GT(counts[charset], 5) << gf_charsetName(charset);
    }
    EXPECT_EQ(counts[Charset::noneFound], 0);
}

}  // namespace
}  // namespace hcr
