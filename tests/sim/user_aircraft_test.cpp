#include "sim/user_aircraft.h"

#include <fmt/format.h>

#include "core/model/aircraft_class.h"
#include "liveries/dbase.h"
#include "session_fixture.h"
#include "shell/window_state.h"

namespace hcr::test {
namespace {

constexpr f64 kMetre = 1 / 1852.0;

/// Reference data with a few types; no light type has a wing span, so that unknown types have none.
struct UserAircraft : SessionTest {
    UserAircraft() {
        gf_forgetDbase();
        halfSpans = {{"B738", 17 * kMetre}, {"B38M", 18 * kMetre}, {"A359", 32 * kMetre}, {"B772", 30 * kMetre},
                     {"772", 30 * kMetre},  {"A332", 29 * kMetre}, {"B736", 16 * kMetre}, {"B737", 15 * kMetre},
                     {"B739", 14 * kMetre}, {"DC3", 13 * kMetre},  {"A320", 12 * kMetre}, {"CRJ7", 11 * kMetre},
                     {"E190", 10 * kMetre}, {"A388", 40 * kMetre}, {"B06", 5 * kMetre},   {"U2", 8 * kMetre}};
        for (const auto& [type, span] : halfSpans) aircraftTypes.insert(type);
        gClassTypes[Large] = {"B738", "B38M", "A320"};
        maxHalfSpan = 40 * kMetre;
    }
    ~UserAircraft() override { gf_forgetDbase(); }
};

TEST_F(UserAircraft, TheModelIsRepairedToAType) {
    struct Row {
        const char* title;
        const char* model;
        f64 metres;
        bool known;
    };
    for (const Row& row : {Row{"", "B738", 17, true},
                           Row{"", "A350-900", 32, true},
                           Row{"", "N738B", 18, true},
                           Row{"", "777", 30, true},
                           Row{"", "A330-200 (RR)", 29, true},
                           Row{"", "TT:ATCCOM.AC_MODEL_B738.0.text", 17, true},
                           Row{"", "ATCCOM.DC3.0.text", 13, true},
                           Row{"", "U2.0.text", 8, true},
                           Row{"", "B.0.text", 40, false},
                           Row{"", ".0.text", 40, false},
                           Row{"", "$$:A320", 12, true},
                           Row{"", "$$:X", 0, true},
                           Row{"DG 737-800 KLM", "737", 17, true},
                           Row{"DG 737-700", "737", 15, true},
                           Row{"The DG 737-600", "737", 16, true},
                           Row{"DG 737-900", "737", 14, true},
                           Row{"Some other", "737", 0, true},
                           Row{"", "Skyhawk", 40, false},
                           Row{"", "A388", 40, false},
                           Row{"", "xx camerapod", 10, true},
                           Row{"", "", 11, true},
                           Row{"Aerosoft A320 CFM", "A32NX", 12, true},
                           Row{"Aerosoft A319", "A32NX", 40, false},  // no wing span of this type
                           Row{"My Aerosoft A320", "A32NX", 40, false}}) {
        gf_resetUserAircraft();
        gf_resetWindowState();
        if (*row.title != '\0') gf_onUserTitle(row.title);
        gf_onUserModel(row.model);
        EXPECT_NEAR(userHalfWingSpan, row.metres * kMetre, 1e-12) << row.title << " / " << row.model;
        EXPECT_EQ(gWindow.modelKnown, row.known) << row.title << " / " << row.model;
        EXPECT_TRUE(gUserHalfSpanKnown);
    }
}

TEST_F(UserAircraft, TheReportTellsModelSpanAndCategory) {
    gf_onUserModel("B738");
    EXPECT_TRUE(logHas("\n          model raw: B738\n"));
    EXPECT_TRUE(logHas("\n          SimConnect: User aircraft model: B738, half wing span: 17.0 meter, category: " +
                       std::string(kClassNames[Large]) + "\n"));
    EXPECT_EQ(userCategory, Large);
    gf_onUserTitle("Aerosoft A320 CFM");
    gf_onUserModel("Airbus");
    EXPECT_TRUE(logHas("SimConnect: User aircraft model deduced from title: A320, half wing span: 12.0 meter"));
    gf_onUserTitle("Zeppelin");
    gf_onUserModel("LZ 129");
    EXPECT_TRUE(logHas("\n          SimConnect: User aircraft model: LZ 129, category: "));
    EXPECT_EQ(gf_currentMessage(), "User aircraft wing span unknown, max is taken instead, please report in my Forum!");
}

TEST_F(UserAircraft, ATitleIsCutToFortyEightBytesAndLoggedOnce) {
    for (const char last : {'b', 'c'}) gf_onUserTitle(fmt::format("{:a<48}{}", "", last));
    EXPECT_EQ(gWindow.userAircraft.get(), std::string(48, 'a'));
    EXPECT_EQ(logCount("\n          SimConnect: User aircraft title: aaaa"), 1U);
    gf_onUserTitle("");
    EXPECT_TRUE(logHas("! Title of your aircraft is empty?"));
    // No half characters, and nothing but UTF-8.
    gf_onUserTitle(fmt::format("{:a<47}{}", "", "\xC3\xA9"));
    EXPECT_EQ(gWindow.userAircraft.get(), std::string(47, 'a'));
    gf_onUserTitle("Caf\xE9");
    EXPECT_EQ(gWindow.userAircraft.get(), "Caf\xC3\xA9");
}

}  // namespace
}  // namespace hcr::test
