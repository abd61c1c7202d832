#include <fmt/format.h>
#include <fmt/ranges.h>
#include <gmock/gmock.h>

#include <set>

#include "shell/parameters.h"
#include "shell/text.h"

namespace hcr {
namespace {

// What a user finds who has never set anything: name, value behind a reset, limits or values to choose from, control.
constexpr const char* kTable = R"(
RANDOM true; AEROWINX false 32774; LIG_AUTOMATIC true 32799; LIG_PRIORITIZE true 32800; SCAN_LIVERIES true 32798;
SCAN_AIRPORTS true 32802; ALWAYS_ON_TOP false 32771; NAV_LIGHTS_WHILE_PARKED true 32776; GUID_CHANGES true 32773;
LIGHT_AIRCRAFT true 32809; HELICOPTERS true 32810; HIGH_PERF_AIRCRAFT true 32811; AUTO_RANGE true 32819;
AIRBORNE_ONLY false 32821; COLLISION_USER_GND true 32834; COLLISION_USER_AIR true 32833;
COLLISION_LIVE_PARKED_GND false 32835; STRAIGHT_PBS_ONLY false 32855; INITIAL_LOAD_ONLY false 32851; WEEK false 32853;
PARK_SOFT false 32852;
MATCHING_DEPTH 4 1,2,3,4 32808; RANGE 40 2,3,4,5,6,8,10,12,14,16,18,20,25,30,35,40,50,65,80,100 32818;
AR_ABOVE_HEIGHT 48000 18000,21000,24000,27000,30000,33000,36000,39000,42000,45000,48000 32820;
MAX_PARK_SEL 500 0,10,25,50,75,100,500 32848; MAX_LIVE_SEL 500 0,10,25,50,75,100,500 32849;
AIRP_RANGE 20 5,10,15,20,25,30 32840;
AIRP_HEIGHT 18000 2000,4000,6000,8000,10000,12000,14000,16000,18000,36000,48000 32841;
parking_percentage 30 0,5,10,15,20,25,30,35,40,45,50,55,60,65,70,75,80,85,90,95,100 32850;
MAX_FIT_FL 24 0.5,1,1.5,2,2.5,3,3.5,4,4.5,5,6,7,8,9,10,12,15,18,21,24 32854;
MAX_FIT 47 0..47; CUSTOM_PARKING_PERCENTAGE -1 -1..100; HOLDING_THRESHOLD_METERS 250 10..4000;
MAX_HOLDING_MINUTES 20 1..60; MAIN_WINDOW_X 400 -30000..30000; MAIN_WINDOW_Y 20 -30000..30000;
AI_PACKAGE_SELECTOR AIG, FSLTL, JF, MTL 32790; SIM_CHOICE MSFS 2020 32789; PORT_NUMBER 10747; BLOCK_CALLSIGN  32828;
DESTINATION  32839; ALL_INSTALL_PATH  32788; CALLSIGN_2_OBJECTID  32831; MSFS_INSTALL_PATH ; MSFS_2024_INSTALL_PATH ;
PROGRAM_VERSION ; DBASE_VERSION ; AIG_VERSION ; AIRPORTS_VERSION ; MYSIMADDON24_VERSION ; LIV_SCAN_VERSION ;
ADDONS_SCAN_VERSION ; lfolder0 ; lfolder1 ; lfolder2 ; lfolder3 ; lfolder4 ; lfolder5 ; lfolder6 ; lfolder7 ; lfolder8 ;
lfolder9 ; tblo 32804; Unblock 32829; cs->oid: 32830; Block 32832; Re-read 32838; Now 32847; Flush static 32857)";

std::string lf_row(const Parameter& p, const std::string& value) {
    const auto* control = dynamic_cast<const ParameterControl*>(&p);
    const std::string row = p.name + (value.empty() ? "" : " ") + value;
    return control == nullptr ? row : fmt::format("{}{} {}", row, value.empty() ? " " : "", control->controlId);
}

TEST(Parameters, HaveTheirValuesLimitsAndControls) {
    std::vector<std::string> expected, rows;
    for (const std::string_view row : gf_split(kTable, ';')) expected.emplace_back(gf_trim(row));
    gf_resetParameters();
    const ParameterLists& lists = gf_parameterLists();
    const auto addChoice = [&rows](const auto& p) {
        rows.push_back(lf_row(p, fmt::format("{} {}", p.current.load(), fmt::join(p.values, ","))));
        EXPECT_TRUE(p.lower == p.values.front() && p.upper == p.values.back()) << p.name;
    };
    for (const BoolParameter* p : lists.bools) rows.push_back(lf_row(*p, fmt::format("{}", p->current.load())));
    for (const CheckBox* p : lists.checkBoxes) rows.push_back(lf_row(*p, fmt::format("{}", p->current.load())));
    for (const IntParameter* p : lists.ints) {
        rows.push_back(lf_row(*p, fmt::format("{} {}..{}", p->current.load(), p->lower, p->upper)));
    }
    for (const NumberChoice* p : lists.numberChoices) addChoice(*p);
    addChoice(parking_percentage);
    addChoice(MAX_FIT_FL);
    for (const auto* list : {&lists.strings, &lists.shownStrings}) {
        for (const StringParameter* p : *list) rows.push_back(lf_row(*p, p->current.get()));
    }
    for (const StringParameter* p :
         {static_cast<StringParameter*>(&ALL_INSTALL_PATH), static_cast<StringParameter*>(&CALLSIGN_2_OBJECTID)}) {
        rows.push_back(lf_row(*p, p->current.get()));
    }
    for (const ButtonControl* p : {&gTbloButton, &gUnblockButton, &gCallsignListButton, &gBlockButton, &gReReadButton,
                                   &gNowButton, &gFlushStaticButton}) {
        rows.push_back(lf_row(*p, "").replace(p->name.size(), 2, " "));
    }
    EXPECT_THAT(rows, testing::UnorderedElementsAreArray(expected));
    const std::vector<std::string>& orders = AI_PACKAGE_SELECTOR.values;
    ASSERT_EQ(orders.size(), 64U);
    EXPECT_EQ(std::set<std::string>(orders.begin(), orders.end()).size(), 64U);
    const std::pair<std::size_t, const char*> some[] = {
        {23, "MTL, JF, FSLTL, AIG"}, {24, "AIG, FSLTL, JF"}, {30, "AIG, FSLTL, MTL"},
        {48, "AIG, FSLTL"},          {59, "MTL, JF"},        {63, "MTL"}};
    for (const auto& [place, order] : some) EXPECT_EQ(orders[place], order);
    EXPECT_THAT(SIM_CHOICE.values, testing::ElementsAre("MSFS 2020", "MSFS 2024"));
}

}  // namespace
}  // namespace hcr
