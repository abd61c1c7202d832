#include "liveries/aircraft_cfg.h"

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "liveries/dbase.h"
#include "liveries/regcodes.h"
#include "liveries/reports.h"
#include "liveries/scan.h"
#include "liveries/scan_threads.h"
#include "shell/text.h"
#include "support/data_folder.h"
#include "support/environment.h"

namespace hcr {
namespace {

using namespace std::string_literals;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using Lines = std::vector<std::string>;

constexpr const char* kPath = "pack/aircraft.cfg";
constexpr const char* kGeneral = "[GENERAL]\nicao_type_designator=b738\n";

std::string lf_shownLivery(const LiveryData& livery) {
    return livery.airl + " " + livery.type + " '" + livery.title + "' " + livery.atcid + (livery.cargo ? "cargo" : "");
}

Lines lf_shownLiveries(const std::vector<LiveryData>& liveries) {
    Lines shown;
    for (const LiveryData& livery : liveries) shown.push_back(lf_shownLivery(livery));
    return shown;
}

/// Reference data with one airframe and one correction, and a working folder. Each file is read on its own, as if it
/// were the only one of a scan.
struct AircraftCfg : testing::Test {
    test::DataFolder folder;

    AircraftCfg() {
        folder.readDbase(R"(<fixes><fx wro="B737-800" cor="B738"/><fx wro="738" cor="B738"/></fixes>
            <dbase><db reg="PH-BXA" airl="KLM" type="B738"/><db reg="N12" airl="PVT" type="C172"/>
            <db reg="PH-NIL" airl="" type="B744"/></dbase>)");
    }
    ~AircraftCfg() override { scanThreadsActive = 0; }

    using Reader = CfgContent (*)(i32, const std::filesystem::path&);

    static std::vector<LiveryData> readBy(Reader reader, const std::filesystem::path& path) {
        gf_clearScanLists();
        scanThreadsActive = 3;
        std::vector<LiveryData> liveries;
        gf_takeOver(reader(7, path), liveries);
        EXPECT_EQ(scanThreadsActive, 2);
        for (const LiveryData& livery : liveries) EXPECT_EQ(livery.folderOrder, 7);
        return liveries;
    }

    static Lines read(std::string_view bytes, const std::string& path = kPath) {
        test::writeWhole(path, bytes);
        return lf_shownLiveries(readBy(lf_searchLiveriesinFile, path));
    }
    /// The only section of a file of this type.
    static Lines readSection(const std::string& lines, const std::string& type = "B738") {
        return read("[General]\r\nicao_type_designator = \"" + type + "\"\r\n[FLTSIM.4]\r\n" + lines);
    }
};

TEST_F(AircraftCfg, ASectionMakesALivery) {
    const char* kKlm = "KLM B738 't' ";
    const char* kGeneric = "ZZZ B738 't' ";
    const char* kPrivate = "PVT B738 't' ";
    struct Row {
        std::string lines, livery;
    };
    const Row rows[] = {
        {"title=t\nicao_airline=KLM\n", kKlm},
        {" \tTITLE =  t \t\r\nIcao_Airline\t=\tklm\v\f\n", kKlm},
        {"title = \" t \" ; the name\nicao_airline = \"KLM\", \"DLH\"\n", kKlm},
        {"title=t\nicao_airline=KLMX\n", kKlm},
        {"title=t\nicao_airline=klmc\n", kKlm},
        {"title=t\nicao_airline=\" KLM \"\n", kKlm},
        {"title=t\nicao_airline=\"\"\natc_id=PH-BXA\n", kGeneric},
        {"title=t\nicao_airline=\"KLM\n", kGeneric},
        {"title=t\nicao_airline=ZZZZ\natc_id=PH-BXA\n", kGeneric},
        {"title=t\nicao_airline=ZZZ\natc_id=PH-BXA\n", kGeneric},
        {"title=t\nicao_airline=\natc_id=PH-BXA\n", "KLM B738 't' PH-BXA"},
        {"title=t\natc_id=PHBXA\n", "KLM B738 't' PHBXA"},
        {"title=t\natc_id=PH-NEW\n", "PVT B738 't' PH-NEW"},
        {"title=t\natc_id=PH-NIL\n", "PVT B738 't' PH-NIL"},
        {"title=t\n", kPrivate},
        {"title=t-STUB\nicao_airline=KLM\natc_id=PH-BXA\n", "ZZZ B738 't-STUB' "},
        {"title=flying N12 now\n", "PVT B738 'flying N12 now' N12"},
        {"title=t\nicao_airline=KLM\natc_id=PH-ABC ; hers;not\n", "KLM B738 't' PH-ABC"},
        {"title=t\nicao_airline=KLM\natc_id=PH-ABC, PH-ABD\n", kKlm},
        {"title=t\nicao_airline=KLM\natc_id=123456789012\n", "KLM B738 't' 123456789012"},
        {"title=t\nicao_airline=KLM\natc_parking_types=ramp , cargo\n", "KLM B738 't' cargo"},
        {"title=t\nicao_airline=KLM\natc_parking_types=RAMP,MIL_CARGO\n", "KLM B738 't' cargo"},
        {"title=t\nicao_airline=KLM\natc_parking_types=GATE,CARGO\n", kKlm},
        {"title=t\nicao_airline=KLM\n// icao_airline=DLH\n  //title=u\n; atc_id=\n\n//\n\n", kKlm},
        {"title=t icao_airline=DLH\nicao_airline=KLM\n", "KLM B738 't icao_airline=DLH' "},
        {"titles=u\ntitle t\ntitle=\ntitle=\"\"\ntitle=\"\ntitle=u\ru\nx title=u\ntitle=t\nicao_airline=KLM", kKlm},
        {"title=\" \"\ntitle=t\nicao_airline=KLM", kKlm},
        {"title=t\nicao_airline=KLM\n[GENERAL]\ntitle=u\natc_id=PH-BXA\n[]\ntitle=v\n", kKlm},
        {"title=\"x [y]\"\nicao_airline=KLM\n", "KLM B738 'x [y]' "},
        {"ui_variation = [fltsim.99999]\n//old=[\n ; x.0 = a[b]\ntitle=t\nicao_airline=KLM\n", kKlm},
        {"title=t\nicao_airline=KLM\n//== [x] = ==\natc_id=PH-BXA\n=[y]\natc_id=PH-BXA\n", kKlm},
        {"title=" + std::string(255, 'x') + "\nicao_airline=KLM\n", "KLM B738 '" + std::string(255, 'x') + "' "},
    };
    for (const Row& row : rows) EXPECT_THAT(readSection(row.lines), ElementsAre(row.livery)) << row.lines;
}

TEST_F(AircraftCfg, AFaultOfASectionIsReported) {
    const std::string noAirline = "pack/aircraft.cfg [FLTSIM.4] icao_airline is missing, or it has invalid info ";
    const std::string badTitle = "pack [FLTSIM.4] has a title that is too long or holds control characters";
    struct Row {
        std::string lines;
        Lines reports, liveries;
    };
    const Row rows[] = {
        {"icao_airline=KLM\n", {"pack [FLTSIM.4] misses title"}, {}},
        {"icao_airline=KLM\ntitle=t\ntitle=u\n", {"pack [FLTSIM.4] has more than one title key"}, {}},
        {"title=t\nTITLE=t\n", {"pack [FLTSIM.4] has more than one title key", noAirline}, {}},
        {"title=t\nicao_airline=KLM\nui_icao_airline\n", {"pack [FLTSIM.4] has more than one icao_airline key"}, {}},
        {"title=t\nicao_airline=KLM\natc_parking_types=GATE\natc_parking_types\n",
         {"pack [FLTSIM.4] has more than one atc_parking_types key"},
         {}},
        {"title=t\nicao_airline=KLM\natc_id=PH-BXA\natc_id=\"\"\n",
         {"pack, [FLTSIM.4], has more than one atc_id key"},
         {}},
        {"title=t\nicao_airline=KLM\natc_id=PH-BXA\natc_id =PH-BXB\n", {}, {"KLM B738 't' PH-BXA"}},
        {"title=t\natc_id=1234567890123\n", {"invalid atc_id=1234567890123 in: t", noAirline}, {"PVT B738 't' "}},
        {"atc_id=PH-*\ntitle=t\nicao_airline=KLM\n", {"invalid atc_id=PH-* in: "}, {"KLM B738 't' "}},
        {"title=t\nicao_airline=KLM\natc_id=A,,B\natc_id=;\n",
         {"invalid atc_id= in: t", "invalid atc_id=A,,B in: t"},
         {"KLM B738 't' "}},
        {"title=My FenixA320\nicao_airline=KLM\n", {noAirline}, {}},
        {"icao_airline=KLM\ntitle=PMDG 737-800\n", {}, {}},
        {"title=t\nicao_airline=RFO\n", {}, {}},
        {"icao_airline=KLM\ntitle=" + std::string(256, 'x') + "\n", {badTitle}, {}},
        {"icao_airline=KLM\ntitle=a\0b\n"s, {badTitle}, {}},
    };
    for (const Row& row : rows) {
        EXPECT_THAT(readSection(row.lines), testing::ElementsAreArray(row.liveries)) << row.lines;
        EXPECT_THAT(gIncompleteSections, testing::UnorderedElementsAreArray(row.reports)) << row.lines;
        EXPECT_THAT(gInvalidAirlines, IsEmpty()) << row.lines;
    }
}

TEST_F(AircraftCfg, AnUnknownAirlineIsReportedAndTheNextOneCounts) {
    EXPECT_THAT(readSection("title=t\nicao_airline=abcd\n icao_airline = KLM , DLH\nicao_airline=DLH\n"),
                ElementsAre("DLH B738 't' "));
    EXPECT_THAT(gInvalidAirlines, ElementsAre("ABCD         in pack/aircraft.cfg [FLTSIM.4]",
                                              "KLM,DLH      in pack/aircraft.cfg [FLTSIM.4]"));
}

TEST_F(AircraftCfg, AHeavyTypeWithoutAnAirlineIsDropped) {
    EXPECT_THAT(readSection("title=t\n", "B744"), IsEmpty());
    EXPECT_THAT(gIncompleteSections, testing::Contains("'pack' '[FLTSIM.4]' has no airline and no regcode info"));
    EXPECT_THAT(readSection("title=t\natc_id=PH-NEW\n", "B744"), IsEmpty());
    EXPECT_THAT(gIncompleteSections, testing::Contains("'pack' '[FLTSIM.4]' has no airline and regcode not in dbase"));
    EXPECT_THAT(readSection("title=t\natc_id=PH-BXA\n", "B744"), ElementsAre("KLM B744 't' PH-BXA"));
}

TEST_F(AircraftCfg, ATitleIsTakenOnceAndNotIfItIsUnwanted) {
    EXPECT_THAT(read(kGeneral + "[fltsim.0]\ntitle=a\nicao_airline=KLM\n[fltsim.1]\ntitle=a\nicao_airline=DLH\n"s),
                ElementsAre("KLM B738 'a' "));
    EXPECT_THAT(gIncompleteSections, ElementsAre("pack [fltsim.1] title 'a' already exists"));
    dontUseTitles = {"b", "c"};
    scanThreadsActive = 1;
    test::writeWhole(kPath, kGeneral + "[fltsim.0]\ntitle=c\nicao_airline=KLM\n"s);
    const CfgContent unwanted = lf_searchLiveriesinFile(1, kPath);
    EXPECT_TRUE(unwanted.liveries.empty() && unwanted.reports.empty());
}

TEST_F(AircraftCfg, OnlyHeadersOfFltSimSectionsOpenOne) {
    struct Row {
        std::string header;
        bool opens;
    };
    const Row rows[] = {
        {"[fltsim.0]", true},     {"  [FltSim.007]\t\v", true}, {"[fltsim.x]", true},   {"[FLTSIM.]", true},
        {"x [fltsim.1] y", true}, {"[fltsim.10000]", true},     {"[FltSim.x]", false},  {"[fltsim]", false},
        {"//[fltsim.1]", false},  {" //[fltsim.1]", false},     {"[fltsim .1]", false},
    };
    for (const Row& row : rows) {
        EXPECT_THAT(read(kGeneral + row.header + "\ntitle=t\nicao_airline=KLM\n"), SizeIs(row.opens ? 1 : 0))
            << row.header;
        EXPECT_EQ(gFilesWithoutSections.empty(), row.opens) << row.header;
    }
}

TEST_F(AircraftCfg, ABadSectionNumberEndsTheFile) {
    const auto with = [](const std::string& header) {
        return kGeneral + "[fltsim.0]\ntitle=t\nicao_airline=KLM\n"s + header + "\ntitle=u\nicao_airline=KLM\n";
    };
    EXPECT_THAT(read(with("[fltsim.10001]")), IsEmpty());
    EXPECT_THAT(gInvalidFiles,
                ElementsAre("pack/aircraft.cfg contains a [fltsim.x] section with a number < 0 or > 10000"));
    EXPECT_THAT(read(with("[fltsim.2147483648]")), IsEmpty());
    EXPECT_THAT(gInvalidFiles, IsEmpty());
    EXPECT_TRUE(folder.logged("==> fltsim num [fltsim.2147483648] incorrect\n"));
}

TEST_F(AircraftCfg, TheTypeIsTheFilesOwn) {
    struct Row {
        std::string general, type;
        Lines invalidTypes, fixes, invalidFiles;
    };
    const std::string missing = "Line icao_type_designator= is missing in [General] section of pack/aircraft.cfg";
    const Row rows[] = {
        {"icao_type_designator=a320\nicao_type_designator=B738\n", "A320", {}, {}, {}},
        {"icao_type_designator=\"\"\n//icao_type_designator=B744\nicao_type_designator=B738", "B738", {}, {}, {}},
        {"icao_type_designator=b737-800\n",
         "B738",
         {},
         {"Model fix: B737-800 found in pack/aircraft.cfg changed into B738"},
         {}},
        {"icao_type_designator=A399\n", "", {"A399             in pack/aircraft.cfg"}, {}, {}},
        {"base_container=\"..\\Asobo_C172sp_classic\"\n", "C172", {}, {}, {}},
        {"base_container=abc\nbase_container=..\\Other\nbase_container=../asobo_C172sp_AS1000", "C172", {}, {}, {}},
        {"base_container=..\\Asobo_C172sp_classic\nicao_type_designator=A320\n", "A320", {}, {}, {}},
        {"base_container=..\\Asobo_A320_NEO\n", "", {"A20N             in pack/aircraft.cfg"}, {}, {}},
        {"base_container=..\\Other\n", "", {}, {}, {missing}},
        {"base_container=Asobo_C172sp_classic\n", "", {}, {}, {missing}},
        {"", "", {}, {}, {missing}},
    };
    for (const Row& row : rows) {
        const Lines expected = row.type.empty() ? Lines() : Lines{"KLM " + row.type + " 't' "};
        EXPECT_THAT(read("[fltsim.0]\ntitle=t\nicao_airline=KLM\n[GENERAL]\n" + row.general),
                    testing::ElementsAreArray(expected))
            << row.general;
        EXPECT_EQ(gInvalidTypes, row.invalidTypes) << row.general;
        EXPECT_EQ(gCodeFixes, row.fixes) << row.general;
        EXPECT_EQ(gInvalidFiles, row.invalidFiles) << row.general;
    }
    for (const std::string path : {"pmdg-aircraft-738/aircraft.cfg", "x/fnx-aircraft-320/aircraft.cfg"}) {
        EXPECT_THAT(read("[fltsim.0]\ntitle=t\n", path), IsEmpty());
        EXPECT_THAT(gInvalidFiles, IsEmpty()) << path;
    }
}

TEST_F(AircraftCfg, AnAircraftOfTheSimulatorTellsItsType) {
    constexpr const char* kTypes =
        "FDCT Asobo_FlightDesignCT,C700 Asobo_Longitude,VL3 Asobo_VL3,SAVG Asobo_Savage_Cub,SAVG "
        "Asobo_Savage_ShockUltra,CC19 Asobo_XCub,PTS2 Asobo_Pitts,SR22 Asobo_SR22,A5 Asobo_Icon,TBM9 Asobo_TBM930,"
        "B350 Asobo_KingAir350,E300 Asobo_E330,DV20 Asobo_DV20,DR40 Asobo_DR400,DA62 Asobo_DA62,DA40 Asobo_DA40_TDI,"
        "DA40 Asobo_DA40_NG,CP10 Asobo_Cap10C,C25C Asobo_CJ4,C152 Asobo_C152,C152 Asobo_C152_Aerobat,C172 "
        "Asobo_C172sp_AS1000,C172 Asobo_C172sp_classic,BE36 Asobo_Bonanza_G36,B58T Asobo_Baron_G58,B748 Asobo_B747_8i,"
        "B78X Asobo_B787_10,C208 Asobo_208B_GRAND_CARAVAN_EX,A20N Asobo_A320_NEO,A20N FlyByWire_A320_NEO";
    aircraftTypes.clear();  // so that each type is reported
    for (const std::string_view pair : gf_splitCommas(kTypes)) {
        const std::size_t blank = pair.find(' ');
        read(fmt::format("base_container=..\\{}\n[fltsim.0]\ntitle=t\n", pair.substr(blank + 1)));
        EXPECT_THAT(gInvalidTypes, ElementsAre(fmt::format("{:16} in {}", pair.substr(0, blank), kPath))) << pair;
    }
}

TEST_F(AircraftCfg, AFileWithoutSectionsIsListed) {
    EXPECT_THAT(read(""), IsEmpty());
    EXPECT_THAT(gFilesWithoutSections, ElementsAre(kPath));
    EXPECT_THAT(gInvalidFiles, SizeIs(1));
    EXPECT_THAT(read(kGeneral), IsEmpty());
    EXPECT_THAT(gFilesWithoutSections, ElementsAre(kPath));
    EXPECT_THAT(gInvalidFiles, IsEmpty());
}

TEST_F(AircraftCfg, MayBeInAnyCharset) {
    const std::string ascii = kGeneral + "[fltsim.0]\r\nicao_airline=KLM\r\n"s;
    const auto wide = [](const std::string& bytes, bool isBig) {
        std::string units = isBig ? "\xFE\xFF" : "\xFF\xFE";
        for (const char c : bytes) units += isBig ? "\0"s + c : c + "\0"s;
        return units;
    };
    const char* kLivery = "KLM B738 'caf\xC3\xA9' ";
    const std::string utf8 = ascii + "title=caf\xC3\xA9\r\n", latin = ascii + "title=caf\xE9\r\n";
    EXPECT_THAT(read(utf8), ElementsAre(kLivery));
    EXPECT_THAT(read("\xEF\xBB\xBF" + utf8), ElementsAre(kLivery));
    EXPECT_THAT(read(latin), ElementsAre(kLivery));
    EXPECT_THAT(read(wide(latin, false)), ElementsAre(kLivery));
    EXPECT_THAT(read(wide(latin, true)), ElementsAre(kLivery));
    // The sample that decides about the charset is plain; only a later line shows that it was none of UTF-8.
    const std::string comment = "// " + std::string(5000, '-') + "\n";
    EXPECT_THAT(read(comment + latin), ElementsAre(kLivery));
    EXPECT_THAT(read(comment + utf8 + "[fltsim.1]\ntitle=\xE9t\xE9\nicao_airline=KLM\n"),
                ElementsAre(kLivery, "KLM B738 '\xC3\xA9t\xC3\xA9' "));
}

TEST_F(AircraftCfg, WhatCannotBeReadIsTold) {
    scanThreadsActive = 1;
    EXPECT_THAT(lf_searchLiveriesinFile(1, "pack/aircraft.cfg").liveries, IsEmpty()) << "gone since the walk";
    EXPECT_FALSE(folder.logged("!"));
    std::filesystem::create_directories("pack/folder/aircraft.cfg");
    EXPECT_THAT(readBy(lf_searchLiveriesinFile, "pack/folder/aircraft.cfg"), IsEmpty());
    EXPECT_TRUE(folder.logged("==> ! No text encoding detected for pack/folder/aircraft.cfg\n"));
    EXPECT_THAT(read("\xFF\xFE[\0\0\xD8"s), IsEmpty());
    EXPECT_TRUE(folder.logged("\n! Failed reading pack/aircraft.cfg\n"));
    EXPECT_THAT(read("[\0f\0"s), IsEmpty()) << "UTF-16 without its mark has no lines";
    EXPECT_THAT(gFilesWithoutSections, ElementsAre(kPath));
}

TEST_F(AircraftCfg, ANameThatIsNoTextDoesNoHarm) {
    EXPECT_THAT(read(kGeneral + "[fltsim.0]\ntitle=t\nicao_airline=KLM\n[fltsim.1]\n"s, "pack/\xFF/aircraft.cfg"),
                ElementsAre("KLM B738 't' "));
    EXPECT_THAT(gIncompleteSections, SizeIs(2));
    test::writeWhole("p/IVAO_MTL/SimObjects/Airplanes/IVAO_\xFF/aircraft.cfg", "[fltsim.0]\n");
    EXPECT_THAT(readBy(lf_searchLiveriesinIVAOFile, "p/IVAO_MTL/SimObjects/Airplanes/IVAO_\xFF/aircraft.cfg"),
                IsEmpty());
}

TEST_F(AircraftCfg, AHugeFileIsRefusedUnread) {
    test::writeWhole(kPath, kGeneral);
    std::filesystem::resize_file(kPath, 100 * 1000 * 1000);
    EXPECT_THAT(readBy(lf_searchLiveriesinFile, kPath), IsEmpty());
    EXPECT_THAT(gInvalidFiles, ElementsAre("pack/aircraft.cfg is larger than 8 MB and can't be an aircraft.cfg"));
    EXPECT_TRUE(folder.logged("==> pack/aircraft.cfg is larger than 8 MB"));
}

TEST_F(AircraftCfg, MoreSectionsThanNumbersAreRefused) {
    std::string sections;
    for (int i = 0; i < 10001; ++i) sections += "[fltsim.x]\n";
    read(kGeneral + sections);
    EXPECT_THAT(gIncompleteSections, SizeIs(10000));
    EXPECT_THAT(gInvalidFiles, ElementsAre("pack/aircraft.cfg has more than 10000 faults, the others aren't listed"));
    read(kGeneral + sections + "[fltsim.x]\n");
    EXPECT_THAT(gIncompleteSections, IsEmpty());
    EXPECT_THAT(gInvalidFiles, ElementsAre("pack/aircraft.cfg contains more than 10001 [fltsim.x] sections"));
}

// What a file may hold is multiplied neither by its lines nor by its sections.
TEST_F(AircraftCfg, EndlessLinesAreShownCut) {
    const std::string endless(5'000'000, 'x');
    std::string faults;
    for (int i = 0; i < 100'000; ++i) faults += "atc_id=*\nicao_airline=Q\n";
    EXPECT_THAT(read(kGeneral + endless + "[fltsim.0]\ntitle=t\n" + faults), ElementsAre("PVT B738 't' "));
    EXPECT_EQ(gIncompleteSections.size() + gInvalidAirlines.size(), 10000U);
    EXPECT_THAT(gInvalidAirlines.front(), "Q            in pack/aircraft.cfg " + std::string(250, 'x') + "...");
    EXPECT_THAT(readSection("title=t\nicao_airline=" + std::string(249, 'q') + "\xC3\xA9" + endless),
                ElementsAre("PVT B738 't' "));
    EXPECT_THAT(gInvalidAirlines.front(), testing::StartsWith(std::string(249, 'Q') + "... in pack"));
    EXPECT_THAT(read(endless), IsEmpty());
    EXPECT_THAT(readSection("title=t\natc_id=" + std::string(5'000'000, ',')), SizeIs(1));
    EXPECT_THAT(readSection("title=t\natc_parking_types= ," + std::string(5'000'000, ',')), SizeIs(1));
}

struct IvaoCfg : AircraftCfg {
    /// The file of a model in the package; its section's folder "texture.A" exists.
    static Lines read(const std::string& content, const std::string& model = "B738") {
        const std::string path = pathOf(model);
        test::writeWhole(path, content);
        std::filesystem::create_directories(folderOf(model) + "/texture.A");
        return lf_shownLiveries(readBy(lf_searchLiveriesinIVAOFile, path));
    }
    static Lines readSection(const std::string& lines, const std::string& model = "B738") {
        return read("[GENERAL]\nicao_type_designator=A320\n[fltsim.4]\ntexture=A\n" + lines, model);
    }
    static std::string folderOf(const std::string& model) { return "c/IVAO_MTL/SimObjects/Airplanes/IVAO_" + model; }
    static std::string pathOf(const std::string& model) { return folderOf(model) + "/aircraft.cfg"; }
};

TEST_F(IvaoCfg, TakesTheTypeFromTheFolderAndTheAirlineFromTheTitle) {
    struct Row {
        std::string lines, livery, model;
    };
    const Row rows[] = {
        {"title=IVAO B738 KLM\n", "KLM B738 'IVAO B738 KLM' ", "B738"},
        {"title=IVAO B738KLMx\n", "KLM B738 'IVAO B738KLMx' ", "B738"},
        {"title=B738 - B738 \t DLH\natc_id=D-ABCD\n", "DLH B738 'B738 - B738 \t DLH' D-ABCD", "B738"},
        {"title=B738W KLM\n", "KLM B738 'B738W KLM' ", "B738WLfa"},
        {"title=B739W KLM\n", "KLM B739 'B739W KLM' ", "B739WLfa"},
        {"title=A320W KLM\n", "KLM A320 'A320W KLM' ", "A320wCFM"},
        {"title=A320W KLM\n", "KLM A320 'A320W KLM' ", "A320wIAE"},
        {"title=A320W KLM\n", "KLM A320 'A320W KLM' ", "A319fIAEw"},
        {"title=x\natc_id=PH-BXA\n", "KLM B738 'x' PH-BXA", "B738"},
        {"title=B738 ZZZ\natc_id=PH-BXA\n", "ZZZ B738 'B738 ZZZ' ", "B738"},
        {"title=B738 KLM\natc_parking_types=CARGO\nicao_airline=DLH\n", "KLM B738 'B738 KLM' ", "B738"},
        {"title=B738 KLM\n//title=2\ntexture=B\nicao_airline=DLH\nicao_airline=DLH\n", "KLM B738 'B738 KLM' ", "B738"},
        {"title=C172 KLM\n", "KLM C172 'C172 KLM' ", "c172"},
        {"title=x\natc_id=PH-ZZZ\n", "ZZZ B738 'x' PH-ZZZ", "B738"},
    };
    folder.readDbase(
        R"(<fixes><fx wro="c172" cor="C172"/><fx wro="A319" cor="A320"/></fixes><dbase><db reg="PH-BXA" airl="KLM"/>
        <db reg="PH-ZZZ" airl="ZZZ"/></dbase>)");
    for (const Row& row : rows) EXPECT_THAT(readSection(row.lines, row.model), ElementsAre(row.livery)) << row.lines;
    EXPECT_THAT(readSection("title=\" B738 KLM \"\n"), ElementsAre("KLM B738 'B738 KLM' "));
    EXPECT_TRUE(folder.logged("\nremoved spaces around title ' B738 KLM ' --> 'B738 KLM'\n"));
}

TEST_F(IvaoCfg, AFaultOfASectionIsReported) {
    const std::string pack = folderOf("B738");
    struct Row {
        std::string lines;
        Lines reports;
    };
    const Row rows[] = {
        {"title=B738 KLM\ntitle=B738 KLM\n", {pack + " [fltsim.4] has more than one title key"}},
        {"title=B738 KLM\natc_parking_types=GATE\nxatc_parking_types\n",
         {pack + " [fltsim.4] has more than one atc_parking_types key"}},
        {"title=B738 KLM\natc_id=PH-BXA\natc_id=PH-BXA\n", {pack + ", [fltsim.4], has more than one atc_id key"}},
        {"atc_id=*\n", {"invalid atc_id=* in ", pack + " [fltsim.4] misses title"}},
        {"title=B738 KL\n", {pack + " [fltsim.4] misses airlinecode in title: B738 KL, and no regcode"}},
        {"title=b738 KLM\natc_id=PH-NEW\n",
         {pack + " [fltsim.4] misses airlinecode in title: b738 KLM, and regcode unknown PH-NEW"}},
        {"title=B738 QQQ\n", {}},
        {"[fltsim.5]\ntitle=B738 KLM\ntexture=B\n",
         {pack + "/texture.B [fltsim.5] does not exist", pack + " [fltsim.4] misses title"}},
        {"[fltsim.4]\ntitle=B738 KLM\n",
         {pack + "/texture. [fltsim.4] does not exist", pack + " [fltsim.4] misses title"}},
    };
    for (const Row& row : rows) {
        EXPECT_THAT(readSection(row.lines), IsEmpty()) << row.lines;
        std::vector<std::string> reports;
        for (const std::string& line : gIncompleteSections) reports.push_back(test::slashed(line));
        EXPECT_THAT(reports, testing::UnorderedElementsAreArray(row.reports)) << row.lines;
    }
    readSection("title=B738 QQQ\n");
    EXPECT_THAT(gInvalidAirlines, ElementsAre("QQQ          in " + pathOf("B738") + " [fltsim.4]"));
    EXPECT_THAT(readSection("title=B738 KLM\n[fltsim.5]\ntexture=A\ntitle=B738 KLM\n"), SizeIs(1));
    EXPECT_THAT(gIncompleteSections, ElementsAre(pack + " [fltsim.5] title already exists: B738 KLM"));
}

TEST_F(IvaoCfg, OnlyFilesOfThePackageAreLookedAt) {
    struct Row {
        std::string path;
        Lines invalidTypes;
    };
    const std::string unknown = "c/ivao_X-csl/simobjects/AIRPLANES/ivao_A3995/Aircraft.Cfg";
    const Row rows[] = {
        {unknown, {"A399             in " + unknown}},
        {"c/IVAO_MTL/SimObjects/Airplanes/IVAO_A-1/aircraft.cfg", {}},
        {"c/IVAO_MTL/SimObjects/Airplanes/IVAO_/aircraft.cfg", {}},
        {"c/IVAO_MTL/SimObjects/Airplanes/A399/aircraft.cfg", {}},
        {"c/IVAO_MTL/SimObjects/Rotorcraft/IVAO_A399/aircraft.cfg", {}},
        {"c/IVAO_MTL2/SimObjects/Airplanes/IVAO_A399/aircraft.cfg", {}},
        {"c/IVAO_MTL/SimObjects/Airplanes/IVAO_A399/sub/aircraft.cfg", {}},
        {"aircraft.cfg", {}},
    };
    for (const Row& row : rows) {
        test::writeWhole(row.path, "[fltsim.10001]\n");
        EXPECT_THAT(readBy(lf_searchLiveriesinIVAOFile, row.path), IsEmpty()) << row.path;
        EXPECT_EQ(gInvalidTypes, row.invalidTypes) << row.path;
        EXPECT_THAT(gInvalidFiles, IsEmpty()) << row.path;
    }
    EXPECT_THAT(read("[fltsim.10001]\n"), IsEmpty());
    EXPECT_THAT(gInvalidFiles, SizeIs(1));
}

}  // namespace
}  // namespace hcr
