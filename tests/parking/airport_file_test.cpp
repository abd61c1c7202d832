#include <gmock/gmock.h>

#include <filesystem>

#include "core/model/geo.h"
#include "core/model/tables.h"
#include "parking/airport_reader.h"
#include "parking/airport_xml.h"
#include "parking/learned_file.h"
#include "parking/learned_path.h"
#include "parking/stands_xml.h"
#include "shell/file_names.h"
#include "shell/messages.h"
#include "shell/parameters.h"
#include "tests/parking/airport_world.h"

namespace hcr::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

struct AirportFiles : AirportWorld {};

TEST_F(AirportFiles, AreReadWithStandsOptionsAndNeighbours) {
    const std::string options = opt("PH-BXB", "20:23", "KLM1:KLM2") +
                                opt("X", "7", "ABC1", R"(airl="ABC" type="A320")") + opt("X", "", "ABC2") +
                                opt("X", "3", "ABC3", R"(day="8")") +
                                opt("", "5", "", R"(soft="true" cpl="1" day="7" airl="Q" type="A320")");
    writeAirport(stand("A1", 0, options, R"(cargo="1" ramp="yes")") + stand(" A2 ", 36.0) + stand("A3", 72.9) +
                 stand("H", 500, {}, R"(heli="t")") +
                 R"(<parkpos id="nowhere" latitude="0" longitude="0" radius="20" heading="0"/>
                    <parkpos id="bad" latitude="nan" longitude="4" radius="20" heading="0"/>
                    <parkpos id="off" latitude="12" longitude="181" radius="20" heading="0"/>
                    <parkpos id="large" latitude="12" longitude="18" radius="-1" heading="0"/>)");
    ASSERT_EQ(read(), "");
    ASSERT_EQ(gStands.size(), 4U);
    const ParkPos& first = gStands[0];
    EXPECT_EQ(gStands[1].id, "A2");
    EXPECT_TRUE(first.cargo && first.ramp && !first.heli && gStands[3].heli);
    EXPECT_NEAR(first.heading, kPi / 2, 1e-12);
    EXPECT_NEAR(first.radius * 1852, 20, 1e-9);
    ASSERT_EQ(first.options.size(), 3U) << "without half hours, or on no day of the week, there is none";
    EXPECT_EQ(first.options[0].airline, "DLH") << "who operates it, by its registration";
    EXPECT_EQ(first.options[0].type, "B738");
    EXPECT_EQ(first.options[0].cs1 + "+" + first.options[0].cs2, "KLM1+KLM2");
    EXPECT_EQ(first.options[0].hours, gf_hours2bitset("20:23"));
    EXPECT_EQ(first.options[1].airline + first.options[1].cs1 + first.options[1].cs2, "ABCABC1");
    EXPECT_EQ(first.options[2].index, 3U);
    EXPECT_TRUE(first.options[2].hard == 0 && first.options[2].coupled && first.options[2].day == 7);
    // Radii of 40 m together overlap below 36.36 m.
    EXPECT_THAT(first.adjacent, ElementsAre(2U));
    EXPECT_THAT(gStands[1].adjacent, ElementsAre(1U));
    EXPECT_TRUE(gStands[2].adjacent.empty());
    EXPECT_EQ(gAirportAltitude, -11);
    EXPECT_TRUE(gAirportLoaded);
    EXPECT_EQ(head.airportName, "Schiphol");
    EXPECT_TRUE(folder.logged("Parking position 'bad' left out: no latitude 'nan'"));
    EXPECT_TRUE(folder.logged("num_parkpos             : 4"));
    EXPECT_TRUE(folder.logged("parking_percentage      : 30%"));
}

TEST_F(AirportFiles, TellWhatIsWrongWithThem) {
    const auto fault = [this](const std::string& stands) {
        writeAirport(stands);
        try {
            return read();
        } catch (const UserErrorException& error) {
            return std::string(error.what());
        }
    };
    EXPECT_EQ(fault(stand("A", 0) + R"(<parkpos latitude="1"/>)"), "93: Parking position #2 has no 'id' attribute.");
    EXPECT_EQ(fault(R"(<parkpos id=" "/>)"), "93: Parking position #1 has empty 'id' attribute.");
    EXPECT_EQ(fault(stand("A", 0) + stand("A ", 9)), "94: Parking position 'A' appears more than once.");
    EXPECT_EQ(fault(""), "no stands found");
    EXPECT_FALSE(gAirportLoaded);
    writeWhole(gFiles().mySimaddon / "EHAM.xml", "<html>");
    EXPECT_THAT(read(), HasSubstr("gf_readApf: could not load file: "));
    writeWhole(gFiles().mySimaddon / "EHAM.xml", "<root/>");
    EXPECT_EQ(read(), "gf_readApf: refused to load");
    EXPECT_EQ(gf_readApf("", head), "gf_readApf: xml is empty");
    EXPECT_EQ(gf_readApf("archive/stock/EHAM.xml", head), "failed to download: 'archive/stock/EHAM.xml'");
}

TEST_F(AirportFiles, AreLookedForInTheUsersFoldersFirst) {
    EXPECT_EQ(gf_airportFilePath("EHAM"), "");
    writeWhole(gFiles().mySimaddon / "EHAM.xml", "x");
    EXPECT_EQ(gf_airportFilePath("EHAM"), "airports/my_simaddon/EHAM.xml");
    writeWhole(gFiles().mySimaddon / "EHAM.txt", "archive/simaddon/EHAM.XML  \r\nmore");
    EXPECT_EQ(gf_airportFilePath("EHAM"), "archive/simaddon/EHAM.XML");
    writeWhole(gFiles().myThirdparty / "EHAM.txt", "no such path\n");
    EXPECT_EQ(gf_airportFilePath("EHAM"), "archive/simaddon/EHAM.XML") << "a line that names no file is passed over";
    for (const char* path : {"../../EHAM.xml", "C:/x/EHAM.xml", "archive/CON/EHAM.xml", "archive//EHAM.xml"}) {
        writeWhole(gFiles().myThirdparty / "EHAM.txt", path);
        EXPECT_EQ(gf_airportFilePath("EHAM"), "archive/simaddon/EHAM.XML") << path;
        EXPECT_TRUE(folder.logged(path));
    }
    for (const char* code : {"", "..", "a/b", "a\\b", "NUL", "com1.x", "a:b", "x\n", "x."}) {
        EXPECT_EQ(gf_airportFilePath(code), "") << code;
        EXPECT_FALSE(gf_airportFileAvailable(code)) << code;
    }
}

TEST_F(AirportFiles, HaveOnePlaceForWhatIsLearned) {
    const std::pair<std::pair<const char*, const char*>, const char*> kPaths[] = {
        {{"archive/thirdparty/Fly%20Tampa/EHAM.xml", "x"}, "thirdparty/Fly Tampa/EHAM.xml"},
        {{"archive/thirdparty/EHAM.xml", "x"}, ""},
        {{"airports/my_thirdparty/EHAM.xml", " Fly/Tampa. "}, "thirdparty/Fly Tampa/EHAM.xml"},
        {{"airports/my_thirdparty/EHAM.xml", "con"}, "thirdparty/con_/EHAM.xml"},
        {{"airports/my_thirdparty2024/EHAM.xml", "a..b"}, ""},
        {{"airports/my_thirdparty/EHAM.xml", ""}, ""},
        {{"archive/stock/EHAM.XML", ""}, "stock/EHAM.XML"},
        {{"airports/my_simaddon/EHAM.xml", ""}, "simaddon/EHAM.xml"},
        {{"airports/own/EHAM.xml", ""}, "own/EHAM.xml"},
        {{"airports/../EHAM.xml", ""}, ""},
        {{"archive/stock/EHAM.txt", ""}, ""},
        {{"elsewhere/EHAM.xml", ""}, ""},
    };
    for (const auto& [from, to] : kPaths) {
        const std::filesystem::path wanted = *to == '\0' ? std::filesystem::path() : gFiles().learned / to;
        EXPECT_EQ(gf_learnedPath(from.first, from.second), wanted) << from.first << " of " << from.second;
    }
}

TEST_F(AirportFiles, AreWrittenAsTheyAreRead) {
    const std::string options = opt("PH-BXA", "20:23", "KLM1:KLM2", R"(cpl="true")") +
                                opt("N1", "7", "", R"(soft="true" airl="ABC" type="A320")");
    writeAirport(stand("A1", 0, options, R"(cargo="true")") + stand("H", 99, {}, R"(heli="true")"));
    ASSERT_EQ(read(), "");
    gStands[0].options[1].index = 0;
    AirportToWrite airport;
    airport.head = head;
    airport.head.handmade = true;
    airport.stands = gStands;
    ASSERT_TRUE(gf_writeApf(airport, folder.path / "new/EHAM.xml", ApfMode::learned, 2));
    const std::string text = readWhole(folder.path / "new/EHAM.xml");
    for (const char* piece :
         {R"(<info name="sim" value="2" />)", R"(<parameter name="handmade" value="true" />)",
          R"(<parameter name="altitude" value="-11" />)", R"(<parameter name="MAX_FIT" value="47" />)",
          R"(heading="90.0" radius="20.0" cargo="true" ramp="false">)",
          R"(heading="90.0" radius="20.0" heli="true" />)",
          R"(<opt reg="PH-BXA" day="1" hh="20:23" cs="KLM1:KLM2" cpl="true" />)"}) {
        EXPECT_THAT(text, HasSubstr(piece));
    }
    EXPECT_EQ(text.find("N1"), std::string::npos) << "struck out";
    ASSERT_TRUE(gf_writeApf(airport, folder.path / "gen.xml", ApfMode::generated, 1));
    const std::string generated = readWhole(folder.path / "gen.xml");
    EXPECT_THAT(generated, HasSubstr(R"(<parameter name="num_parkpos" value="2" />)"));
    EXPECT_EQ(generated.find("<opt"), std::string::npos);
    EXPECT_EQ(generated.find("RANGE"), std::string::npos);
}

TEST_F(AirportFiles, PutTheUsersSettingsBackWhenLeft) {
    MAX_LIVE_SEL.current = 70;
    WEEK.current = true;
    writeAirport(stand("A1", 0, opt("PH-BXA", "1:47", "KLM1")));
    ASSERT_EQ(read(), "");
    EXPECT_FALSE(WEEK.current) << "all stands are known, the week isn't needed";
    parking_percentage.current = 80;
    MAX_LIVE_SEL.current = 50;
    MAX_FIT.current = 3;
    leave();
    EXPECT_TRUE(WEEK.current);
    EXPECT_EQ(MAX_LIVE_SEL.current, 70);
    EXPECT_EQ(MAX_FIT_FL.current, 24.0F);
    EXPECT_EQ(parking_percentage.current, 30);
}

}  // namespace
}  // namespace hcr::test
