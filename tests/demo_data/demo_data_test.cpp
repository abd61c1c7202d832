#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <pugixml.hpp>
#include <set>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "platform/types.h"
#include "shell/data_update.h"
#include "shell/text.h"
#include "sim/port/sandbox/scenario.h"
#include "support/environment.h"

// The data set is written by hand. These tests read its plain files as they stand and look for the slips that nobody
// sees in a long list: a code that isn't one, the same thing twice, two files that don't agree.

namespace hcr {
namespace {

using Names = std::set<std::string>;

constexpr f64 kSmallestSpan = 3, kLargestSpan = 120;            // metres
constexpr f64 kLowestAirport = -1400, kHighestAirport = 15000;  // feet; the Dead Sea and the Himalayas
constexpr std::size_t kLongestTitle = 120;                      // bytes
constexpr std::array<const char*, 5> kClassSections = {"high_performance", "heavy", "large", "buzjet", "rotorcraft"};

/// The top element of a file of the data set; `document` keeps it.
pugi::xml_node lf_load(pugi::xml_document& document, const char* name) {
    const std::filesystem::path path = test::demoData(name);
    const pugi::xml_parse_result result = document.load_file(path.c_str());
    EXPECT_TRUE(result) << path << ": " << result.description() << " at byte " << result.offset;
    return document.child("root");
}

std::vector<std::string> lf_list(const char* text) {
    std::vector<std::string> pieces;
    for (const std::string_view piece : gf_splitCommas(text)) pieces.emplace_back(piece);
    return pieces;
}

/// Every piece of every list of a section, in file order.
std::vector<std::string> lf_pieces(pugi::xml_node section, const char* attribute) {
    std::vector<std::string> pieces;
    for (const pugi::xml_node node : section.children()) {
        for (std::string& piece : lf_list(node.attribute(attribute).value())) pieces.push_back(std::move(piece));
    }
    return pieces;
}

Names lf_names(const std::vector<std::string>& list) {
    return {list.begin(), list.end()};
}

bool lf_isCode(std::string_view text, std::size_t shortest, std::size_t longest) {
    return text.size() >= shortest && text.size() <= longest && std::all_of(text.begin(), text.end(), [](char c) {
               return (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
           });
}

struct Airframe {
    std::string airline, type;  ///< airline: the operator if there is one
    bool cargo = false;
};

class DemoData : public testing::Test {
protected:
    static void SetUpTestSuite() {
        dbase = lf_load(dbaseDocument, "dbase.xml");
        liveries = lf_load(liveriesDocument, "LiveriesScanned.xml").child("liveries");
        regcodes = lf_load(regcodesDocument, "AIG-regcodes.xml").child("AIG-regcodes");
        types = lf_names(lf_pieces(dbase.child("aircrafts"), "types"));
        airlines = lf_names(lf_pieces(dbase.child("ICAO_airlines"), "codes"));
        for (const char* section : kClassSections) {
            for (const std::string& type : lf_pieces(dbase.child(section), "types")) classes.try_emplace(type, section);
        }
        for (const pugi::xml_node db : dbase.child("dbase").children()) {
            const std::string_view opr = db.attribute("opr").value();
            airframes.try_emplace(db.attribute("reg").value(),
                                  Airframe{opr.empty() ? db.attribute("airl").value() : std::string(opr),
                                           db.attribute("type").value(), db.attribute("cargo").as_bool()});
        }
        for (const pugi::xml_node liv : liveries.children()) titles.insert(liv.attribute("title").value());
    }

    static void TearDownTestSuite() {
        for (pugi::xml_document* document : {&dbaseDocument, &liveriesDocument, &regcodesDocument}) document->reset();
        for (Names* names : {&types, &airlines, &titles}) names->clear();
        classes.clear();
        airframes.clear();
    }

    static void expectTypes(const std::vector<std::string>& list, const char* where) {
        EXPECT_FALSE(list.empty()) << where;
        for (const std::string& type : list) EXPECT_TRUE(types.contains(type)) << where << ": " << type;
    }

    /// The class section that lists a type; empty for a light aircraft.
    static std::string classOf(const std::string& type) {
        const auto found = classes.find(type);
        return found == classes.end() ? std::string() : found->second;
    }

    // Read once for all tests, which only look at them.
    static inline pugi::xml_document dbaseDocument, liveriesDocument, regcodesDocument;
    static inline pugi::xml_node dbase, liveries, regcodes;
    static inline Names types, airlines, titles;
    static inline std::map<std::string, std::string> classes;  ///< type to the first section that lists it
    static inline std::map<std::string, Airframe> airframes;   ///< by registration
};

TEST_F(DemoData, EachListHoldsWellFormedCodesAndNoneTwice) {
    const std::array<std::tuple<const char*, const char*, std::size_t, std::size_t>, 10> lists = {{
        {"aircrafts", "types", 2, 4},
        {"high_performance", "types", 2, 4},
        {"heavy", "types", 2, 4},
        {"large", "types", 2, 4},
        {"buzjet", "types", 2, 4},
        {"rotorcraft", "types", 2, 4},
        {"cargo_types", "types", 2, 4},
        {"ICAO_airlines", "codes", 3, 3},
        {"cargo_operators", "codes", 3, 3},
        {"simaddons20", "arpts", 4, 4},
    }};
    for (const auto& [section, attribute, shortest, longest] : lists) {
        const std::vector<std::string> pieces = lf_pieces(dbase.child(section), attribute);
        EXPECT_FALSE(pieces.empty()) << section;
        Names seen;
        for (const std::string& piece : pieces) {
            EXPECT_TRUE(lf_isCode(piece, shortest, longest)) << section << ": " << piece;
            EXPECT_TRUE(seen.insert(piece).second) << section << " twice: " << piece;
        }
    }
}

TEST_F(DemoData, EveryTypeThatIsNamedAnywhereIsAType) {
    for (const char* section : kClassSections) expectTypes(lf_pieces(dbase.child(section), "types"), section);
    expectTypes(lf_pieces(dbase.child("cargo_types"), "types"), "cargo_types");
    expectTypes(lf_pieces(dbase.child("similar_types"), "types"), "similar_types");
    expectTypes(lf_pieces(dbase.child("wingspans"), "type"), "wingspans");
    expectTypes(lf_pieces(dbase.child("fixes"), "cor"), "fixes");
    expectTypes(lf_pieces(dbase.child("dbase"), "type"), "dbase");
    expectTypes(lf_pieces(liveries, "type"), "liveries");
}

TEST_F(DemoData, NoTypeStandsInTwoClasses) {
    for (const char* section : kClassSections) {
        for (const std::string& type : lf_pieces(dbase.child(section), "types"))
            EXPECT_EQ(classOf(type), section) << type;
    }
}

TEST_F(DemoData, WellKnownTypesHaveTheirClassAndSpan) {
    struct Known {
        const char *type, *section;
        f64 metres;
    };
    const std::array<Known, 16> known = {{{"A20N", "large", 35.8},
                                          {"B738", "large", 35.8},
                                          {"AT76", "large", 27.05},
                                          {"B752", "large", 38.05},
                                          {"B77W", "heavy", 64.8},
                                          {"A388", "heavy", 79.75},
                                          {"B744", "heavy", 64.44},
                                          {"C17", "heavy", 51.75},
                                          {"GLF6", "buzjet", 30.35},
                                          {"C56X", "buzjet", 17.17},
                                          {"F16", "high_performance", 9.96},
                                          {"EUFI", "high_performance", 10.95},
                                          {"EC35", "rotorcraft", 10.2},
                                          {"H47", "rotorcraft", 18.29},
                                          {"C172", "", 11.0},
                                          {"SR22", "", 11.68}}};
    for (const Known& row : known) {
        EXPECT_EQ(classOf(row.type), row.section) << row.type;
        const pugi::xml_node span = dbase.child("wingspans").find_child_by_attribute("type", row.type);
        EXPECT_NEAR(span.attribute("meters").as_double(), row.metres, 0.3) << row.type;
    }
}

TEST_F(DemoData, TypesThatReplaceEachOtherAreOfOneClassAndInOneGroup) {
    Names seen;
    for (const pugi::xml_node group : dbase.child("similar_types").children()) {
        const std::vector<std::string> members = lf_list(group.attribute("types").value());
        EXPECT_GE(members.size(), 2U);
        for (const std::string& type : members) {
            EXPECT_TRUE(seen.insert(type).second) << "in two groups: " << type;
            EXPECT_EQ(classOf(type), classOf(members.front())) << members.front() << " and " << type;
        }
    }
}

TEST_F(DemoData, WingSpansAreSaneAndGivenOnce) {
    Names seen;
    for (const pugi::xml_node span : dbase.child("wingspans").children()) {
        const std::string type = span.attribute("type").value();
        const f64 metres = span.attribute("meters").as_double();
        EXPECT_TRUE(metres >= kSmallestSpan && metres <= kLargestSpan) << type << " " << metres;
        EXPECT_TRUE(seen.insert(type).second) << type;
    }
    // A class without any span has no mean to fall back on.
    for (const char* section : kClassSections) {
        const std::vector<std::string> list = lf_pieces(dbase.child(section), "types");
        EXPECT_TRUE(std::any_of(list.begin(), list.end(), [&](const std::string& t) { return seen.contains(t); }))
            << section;
    }
}

TEST_F(DemoData, AFixReplacesWhatIsNoTypeAndStandsOnce) {
    Names seen;
    for (const pugi::xml_node fix : dbase.child("fixes").children()) {
        const std::string wrong = fix.attribute("wro").value();
        EXPECT_FALSE(types.contains(wrong)) << wrong << " is a type, the fix would never be used";
        EXPECT_TRUE(seen.insert(wrong).second) << wrong;
    }
}

TEST_F(DemoData, GenericAndPrivateLiveriesHaveTheirAirlineCodes) {
    EXPECT_TRUE(airlines.contains("ZZZ"));
    EXPECT_TRUE(airlines.contains("PVT"));
    for (const std::string& code : lf_pieces(dbase.child("cargo_operators"), "codes")) {
        EXPECT_TRUE(airlines.contains(code)) << code;
    }
}

TEST_F(DemoData, RegistrationsAreUniqueAndBelongToKnownAirlines) {
    Names seen;
    for (const pugi::xml_node db : dbase.child("dbase").children()) {
        const std::string reg = db.attribute("reg").value(), opr = db.attribute("opr").value();
        EXPECT_TRUE(reg.size() >= 3 && reg.size() <= 12) << reg;
        EXPECT_TRUE(seen.insert(reg).second) << reg;
        EXPECT_TRUE(airlines.contains(db.attribute("airl").value())) << reg;
        EXPECT_TRUE(opr.empty() || airlines.contains(opr)) << reg;
    }
    EXPECT_GE(seen.size(), 300U);
}

TEST_F(DemoData, AShortRegistrationIsFoundInNoTitleByChance) {
    constexpr std::size_t kShort = 6;
    for (const auto& [reg, airframe] : airframes) {
        if (reg.size() >= kShort) continue;
        for (const std::string& title : titles) EXPECT_EQ(title.find(reg), std::string::npos) << reg << " in " << title;
    }
}

TEST_F(DemoData, LiveriesAreSortedHaveTitlesOfTheirOwnAndKnownAirlines) {
    Names seen;
    std::tuple<std::string, std::string, std::string> last;
    for (const pugi::xml_node liv : liveries.children()) {
        std::tuple<std::string, std::string, std::string> key{
            liv.attribute("airl").value(), liv.attribute("type").value(), liv.attribute("title").value()};
        const auto& [airline, type, title] = key;
        EXPECT_TRUE(airlines.contains(airline)) << title;
        EXPECT_TRUE(!title.empty() && title.size() <= kLongestTitle) << title;
        EXPECT_TRUE(seen.insert(title).second) << title;
        EXPECT_LT(last, key);
        last = std::move(key);
    }
}

TEST_F(DemoData, ALiveryOfOneAirframeIsWhatTheAirframeIs) {
    Names seen;
    for (const pugi::xml_node liv : liveries.children()) {
        const std::string reg = liv.attribute("atcid").value();
        if (reg.empty()) continue;
        const std::string title = liv.attribute("title").value();
        EXPECT_TRUE(seen.insert(reg).second) << "in two liveries: " << reg;
        const auto airframe = airframes.find(reg);
        ASSERT_NE(airframe, airframes.end()) << title;
        EXPECT_EQ(liv.attribute("airl").value(), airframe->second.airline) << title;
        EXPECT_EQ(liv.attribute("type").value(), airframe->second.type) << title;
        EXPECT_EQ(liv.attribute("cargo").as_bool(), airframe->second.cargo) << title;
    }
}

TEST_F(DemoData, EveryClassHasLiveriesAndTheCommonTypesAGenericOne) {
    Names found, generics;
    for (const pugi::xml_node liv : liveries.children()) {
        const std::string type = liv.attribute("type").value();
        found.insert(classOf(type));
        if (std::string_view(liv.attribute("airl").value()) == "ZZZ") generics.insert(type);
    }
    EXPECT_EQ(found.size(), kClassSections.size() + 1);
    for (const char* type : {"A320", "B738", "E190", "A333", "B77W", "C56X", "C172", "EC35"}) {
        EXPECT_TRUE(generics.contains(type)) << type;
    }
}

TEST_F(DemoData, RegistrationCodesNameInstalledTitlesAndTitlesNotToBeUsedAreNotInstalled) {
    Names seenTitles, seenRegs;
    i32 special = 0, unwanted = 0;
    for (const pugi::xml_node livery : regcodes.children()) {
        const std::string title = livery.attribute("title").value();
        const std::vector<std::string> regs = lf_list(livery.attribute("reg").value());
        EXPECT_TRUE(seenTitles.insert(title).second) << title;
        const bool empty = std::string_view(livery.attribute("reg").value()).empty();
        special += livery.attribute("special").as_bool() ? 1 : 0;
        unwanted += empty ? 1 : 0;
        EXPECT_EQ(titles.contains(title), !empty) << title;
        if (empty) continue;
        const pugi::xml_node liv = liveries.find_child_by_attribute("title", title.c_str());
        for (const std::string& reg : regs) {
            EXPECT_TRUE(seenRegs.insert(reg).second) << reg;
            const auto airframe = airframes.find(reg);
            ASSERT_NE(airframe, airframes.end()) << reg;
            EXPECT_EQ(airframe->second.type, liv.attribute("type").value()) << reg << " " << title;
        }
    }
    EXPECT_GT(special, 0);
    EXPECT_GT(unwanted, 0);
}

class DemoAirports : public testing::Test {
protected:
    static void SetUpTestSuite() { airports = lf_load(document, "airports.xml").child("airports"); }
    static void TearDownTestSuite() { document.reset(); }

    static inline pugi::xml_document document;
    static inline pugi::xml_node airports;
};

TEST_F(DemoAirports, AreSortedWithPlausiblePlaces) {
    std::string last;
    Names iatas;
    std::size_t count = 0;
    for (const pugi::xml_node airport : airports.children("airport")) {
        const std::string code = airport.attribute("code").value(), iata = airport.attribute("iata").value();
        EXPECT_TRUE(lf_isCode(code, 4, 4)) << code;
        EXPECT_LT(last, code) << "not sorted or twice";
        EXPECT_TRUE(lf_isCode(iata, 3, 3)) << code;
        EXPECT_TRUE(iatas.insert(iata).second) << code << " " << iata;
        const f64 lat = airport.attribute("lat").as_double(), lon = airport.attribute("lon").as_double();
        EXPECT_TRUE(lat >= -90 && lat <= 90 && lon >= -180 && lon <= 180) << code;
        EXPECT_TRUE(lat != 0 && lon != 0 && lat != lon) << code;
        const f64 alt = airport.attribute("alt").as_double(kHighestAirport + 1);
        EXPECT_TRUE(alt >= kLowestAirport && alt <= kHighestAirport) << code << " " << alt;
        EXPECT_TRUE(airport.attribute("stands")) << code;
        last = code;
        ++count;
    }
    EXPECT_GE(count, 1500U);
    EXPECT_LE(count, 15000U) << "more than the program makes room for";
}

// Latitude and longitude are easily written in each other's place. The first letter of a code tells the part of the
// world, so that a swapped pair falls out of its box.
TEST_F(DemoAirports, StandInThePartOfTheWorldThatTheirCodeTells) {
    struct Box {
        char letter;
        f64 south, north, west, east;
    };
    const std::array<Box, 13> boxes = {{{'B', 59, 84, -75, -12},
                                        {'D', 0, 38, -18, 16},
                                        {'E', 47, 79, -12, 33},
                                        {'F', -55, 24, -26, 73},
                                        {'G', 0, 36, -26, 1},
                                        {'H', -13, 34, 8, 52},
                                        {'K', 24, 50, -125, -66},
                                        {'L', 27, 53, -32, 46},
                                        {'M', 7, 33, -118, -59},
                                        {'O', 11, 40, 29, 78},
                                        {'S', -63, 14, -110, -28},
                                        {'U', 34, 82, 19, 180},
                                        {'V', -8, 37, 66, 115}}};
    // Islands far from the country whose letter they carry, the far side of the date line, and the Balkans' one B.
    const Names faraway = {"BKPR", "EGYP", "LFVM", "LFVP", "SCRM", "UHMD"};
    for (const pugi::xml_node airport : airports.children("airport")) {
        const std::string code = airport.attribute("code").value();
        const auto box = std::find_if(boxes.begin(), boxes.end(), [&](const Box& b) { return b.letter == code[0]; });
        if (box == boxes.end() || faraway.contains(code)) continue;
        const f64 lat = airport.attribute("lat").as_double(), lon = airport.attribute("lon").as_double();
        EXPECT_TRUE(lat >= box->south && lat <= box->north && lon >= box->west && lon <= box->east)
            << code << " at " << lat << ", " << lon;
    }
}

TEST_F(DemoAirports, AreThereForTheAddOnAirportsOfTheReferenceData) {
    pugi::xml_document dbaseDocument;
    const pugi::xml_node dbase = lf_load(dbaseDocument, "dbase.xml");
    Names known, publishers;
    for (const pugi::xml_node airport : airports.children()) known.insert(airport.attribute("code").value());
    for (const pugi::xml_node pub : dbase.child("publishers").children()) {
        publishers.insert(lf_list(pub.attribute("names").value()).front());
    }
    for (const std::string& code : lf_pieces(dbase.child("simaddons20"), "arpts")) {
        EXPECT_TRUE(known.contains(code)) << code;
    }
    for (const char* section : {"thirdparties20", "thirdparties24"}) {
        for (const pugi::xml_node party : dbase.child(section).children()) {
            EXPECT_TRUE(publishers.contains(party.attribute("pub").value())) << party.attribute("pub").value();
            for (const std::string& item : lf_list(party.attribute("arpts").value())) {
                EXPECT_TRUE(known.contains(item.substr(0, 4))) << item;
                EXPECT_TRUE(item.size() > 4 && item.find_first_not_of("0123456789", 4) == std::string::npos) << item;
            }
        }
    }
}

TEST_F(DemoData, TheScenarioNamesInstalledTitlesAndRefusesFewerThanStopTheRun) {
    constexpr std::size_t kRefusalsThatStop = 20;
    const Scenario scenario = gf_readScenario(test::demoData("scenario.json"));
    for (const TitleFacts& facts : scenario.titles) EXPECT_TRUE(titles.contains(facts.title)) << facts.title;
    for (const std::string& title : scenario.refused) EXPECT_TRUE(titles.contains(title)) << title;
    EXPECT_TRUE(!scenario.refused.empty() && scenario.refused.size() < kRefusalsThatStop);
    EXPECT_TRUE(types.contains(scenario.userModel)) << scenario.userModel;
}

TEST(DemoVersions, AnnounceEveryFileAndNoOtherProgram) {
    std::ifstream file(test::demoData("versions.json"));
    const nlohmann::json versions = nlohmann::json::parse(file);
    for (const char* key : {"msfs", "simaddon", "airports", "aig", "liveries", "addons", "dbase"}) {
        const std::optional<VersionData> version = gf_webVersion(versions, key);
        ASSERT_TRUE(version) << key;
        EXPECT_GT(*version, VersionData()) << key << ": an installation without data would never fetch it";
    }
    EXPECT_EQ(*gf_webVersion(versions, "msfs"), gf_programVersion());
}

}  // namespace
}  // namespace hcr
