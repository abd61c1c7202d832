#include "liveries/matching.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

#include "liveries/dbase.h"
#include "liveries/livery_tables.h"
#include "liveries/match_memory.h"
#include "liveries/match_trace.h"
#include "liveries/results.h"
#include "shell/parameters.h"
#include "support/data_folder.h"

namespace hcr {
namespace {

using test::liv;

constexpr const char* kCargo = R"(cargo="true")";

/// A folder with these liveries loaded and RANDOM off; aircraft are made by the functions below.
struct Matching : testing::Test {
    test::DataFolder folder;

    Matching() {
        folder.readDbase(R"(<similar_types><similar types="B738,B739,B744"/></similar_types>
            <dbase><db reg="PH-LSE" airl="DLH" type="B738" opr="KLM"/></dbase>)");
        MATCHING_DEPTH.current = 4;
    }
};

struct Wanted {
    std::string airline, model, registration;
    bool cargo = false;
};

template <typename Aircraft>
Aircraft aircraftOf(const Wanted& wanted) {
    Aircraft ac;
    ac.hexid = 20000;
    ac.callsign = "CALL1";
    ac.airline = wanted.airline;
    ac.model = wanted.model;
    ac.registration = wanted.registration;
    ac.cargo = wanted.cargo;
    ac.acClass = gf_acClass(wanted.model);
    return ac;
}

/// Title and step of a live match, as in "Title =2", or "none".
std::string liveMatch(const Wanted& wanted) {
    auto ac = aircraftOf<LiveAc>(wanted);
    gf_matchLiveLivery(ac);
    EXPECT_EQ(ac.liveryTitle.empty(), gf_lastMatchStep() == kNoMatchStep);
    EXPECT_EQ(gf_matchStepOf(ac.hexid), gf_lastMatchStep());
    if (ac.liveryTitle.empty()) return "none";
    return std::string(ac.liveryTitle) + " =" + std::to_string(gf_lastMatchStep());
}

std::string parkedMatch(const Wanted& wanted, bool cargoStand = false) {
    auto ac = aircraftOf<ParkedAc>(wanted);
    ParkPos stand;
    stand.id = "D12";
    stand.cargo = cargoStand;
    const bool found = gf_matchParkedLivery(ac, stand);
    EXPECT_EQ(found, !ac.liveryTitle.empty());
    return found ? std::string(ac.liveryTitle) : "none";
}

TEST_F(Matching, GoesAsDeepAsTheSettingAllows) {
    folder.loadLiveries(liv("KLM", "B738", "own", R"(atcid="PH-BXA")") + liv("DLH", "B739", "dlh") +
                        liv("ZZZ", "A320", "white") + liv("PVT", "C172", "cessna") + liv("ZZZ", "PA28", "piper") +
                        liv("DLH", "GLF6", "jet") + liv("DLH", "EC35", "heli") + liv("DLH", "F16", "fighter"));
    struct Row {
        const char* name;
        Wanted wanted;
        std::array<const char*, 4> byDepth;
    };
    const Row rows[] = {
        {"registration", {"DLH", "B738", "PH-BXA"}, {"own =1", "own =1", "own =1", "own =1"}},
        {"registration without its dash", {"AFR", "B744", "PHBXA"}, {"none", "none", "none", "none"}},
        {"airline and type", {"KLM", "B738", "PH-BXB"}, {"none", "own =2", "own =2", "own =2"}},
        {"similar type of the airline", {"DLH", "B738", ""}, {"none", "none", "dlh =3", "dlh =3"}},
        {"similar type of another class", {"KLM", "B744", ""}, {"none", "none", "none", "none"}},
        {"unbranded airliner", {"AFR", "A320", ""}, {"none", "none", "none", "white =4"}},
        {"no airliner in another's paint", {"AFR", "B738", ""}, {"none", "none", "none", "none"}},
        {"private owner", {"PVT", "PA28", ""}, {"none", "piper =4", "piper =4", "piper =4"}},
        {"unbranded light aircraft", {"", "PA28", ""}, {"none", "none", "piper =4", "piper =4"}},
        {"any airline's light aircraft", {"AFR", "C172", ""}, {"none", "none", "cessna =5", "cessna =5"}},
        {"any airline's business jet", {"AFR", "GLF6", ""}, {"none", "none", "jet =5", "jet =5"}},
        {"any airline's helicopter", {"AFR", "EC35", ""}, {"none", "none", "heli =5", "heli =5"}},
        {"a fighter in its own paint only", {"AFR", "F16", ""}, {"none", "none", "none", "none"}},
        {"unknown light type", {"", "P210", ""}, {"none", "none", "cessna =6", "cessna =6"}},
    };
    for (const Row& row : rows) {
        for (i32 depth = 1; depth <= 4; ++depth) {
            SCOPED_TRACE(testing::Message() << row.name << " at depth " << depth);
            MATCHING_DEPTH.current = depth;
            EXPECT_EQ(liveMatch(row.wanted), row.byDepth[static_cast<std::size_t>(depth - 1)]);
        }
    }
}

TEST_F(Matching, TheOwnerOfTheAirframeComesBehindItsOperator) {
    folder.loadLiveries(liv("DLH", "B738", "painted") + liv("DLH", "A320", "bus"));
    EXPECT_EQ(liveMatch({"KLM", "B738", "PH-LSE"}), "painted =2");
    EXPECT_EQ(parkedMatch({"KLM", "B738", "PH-LSE"}), "painted");
    EXPECT_EQ(liveMatch({"KLM", "B739", "PHLSE"}), "painted =3") << "a similar type of the owner";
    EXPECT_EQ(liveMatch({"", "B738", "PH-LSE"}), "none") << "without an airline nobody is asked";
    EXPECT_EQ(parkedMatch({"", "B738", "PH-LSE"}), "painted");
    folder.loadLiveries(liv("DLH", "B738", "painted") + liv("KLM", "B738", "flown"));
    EXPECT_EQ(liveMatch({"KLM", "B738", "PH-LSE"}), "flown =2");
}

TEST_F(Matching, CargoAircraftMayWearPassengerPaintOfTheirAirlineOnly) {
    folder.loadLiveries(liv("KLM", "B738", "pax") + liv("DLH", "B738", "freight", kCargo) +
                        liv("DLH", "C172", "light") + liv("KLM", "PA28", "box", kCargo));
    EXPECT_EQ(liveMatch({"KLM", "B738", "", true}), "pax =2");
    EXPECT_EQ(liveMatch({"DLH", "B738", "", true}), "freight =2");
    EXPECT_EQ(liveMatch({"DLH", "B738", "", false}), "none");
    EXPECT_EQ(liveMatch({"AFR", "C172", "", true}), "none") << "no fall-back among generic liveries";
    EXPECT_EQ(liveMatch({"AFR", "PA28", "", true}), "box =5");
    EXPECT_EQ(parkedMatch({"DLH", "B738", "", true}, false), "none") << "the stand decides, not the airframe";
    EXPECT_EQ(parkedMatch({"DLH", "B738", "", false}, true), "freight");
}

TEST_F(Matching, SpecialTitlesAreForOthersOnlyWhenNothingElseExists) {
    folder.loadLiveries(liv("KLM", "B738", "a special") + liv("KLM", "B738", "b special") + liv("KLM", "B738", "c") +
                            liv("KLM", "B738", "d") + liv("DLH", "B738", "e special"),
                        R"(<livery title="a special" reg="PH-AAA" special="true"/>
                           <livery title="b special" reg="PH-BBB,PH-BBC" special="true"/>
                           <livery title="e special" reg="D-EEEE" special="true"/><livery title="d" reg="PH-DDD"/>)");
    EXPECT_EQ(liveMatch({"KLM", "B738", ""}), "c =2");
    EXPECT_EQ(liveMatch({"DLH", "B738", ""}), "e special =2");
    EXPECT_EQ(liveMatch({"KLM", "B738", "PH-AAA"}), "a special =0") << "one registration";
    EXPECT_EQ(liveMatch({"KLM", "B738", "PH-BBC"}), "b special =1") << "one of two";
    EXPECT_EQ(liveMatch({"KLM", "B738", "PH-DDD"}), "d =1");
    RANDOM.current = true;
    std::set<std::string> seen;
    for (int i = 0; i < 200; ++i) seen.insert(liveMatch({"KLM", "B738", ""}));
    EXPECT_THAT(seen, testing::ElementsAre("c =2", "d =2"));
}

TEST_F(Matching, ARefusedTitleIsPassedOverOnEveryPath) {
    folder.loadLiveries(liv("DLH", "B738", "own", R"(atcid="PH-BXA")") + liv("KLM", "B738", "other") +
                        liv("ZZZ", "B738", "white"));
    failedTitles.insert("own");
    EXPECT_EQ(liveMatch({"KLM", "B738", "PH-BXA"}), "other =2");
    EXPECT_EQ(parkedMatch({"KLM", "B738", "PH-BXA"}), "other");
    failedTitles.insert("other");
    EXPECT_EQ(liveMatch({"KLM", "B738", "PH-BXA"}), "white =4");
    EXPECT_EQ(parkedMatch({"KLM", "B738", "PH-BXA"}), "white");
    failedTitles.insert("white");
    EXPECT_EQ(liveMatch({"KLM", "B738", "PH-BXA"}), "none");
    EXPECT_EQ(parkedMatch({"KLM", "B738", "PH-BXA"}), "none");
    EXPECT_THAT(matchSteps, testing::ElementsAre(0, 0, 1, 0, 1, 0, 0)) << "live matches only";
    EXPECT_TRUE(folder.logged("D12     : CALL1    PH-BXA KLM B738 no livery match ..."));
}

TEST_F(Matching, AParkedAircraftTakesSimilarTypesOfAnyClassAndWalksOnBehindARefusedOne) {
    folder.loadLiveries(liv("KLM", "B739", "refused") + liv("KLM", "B744", "jumbo"));
    failedTitles.insert("refused");
    EXPECT_EQ(liveMatch({"KLM", "B738", ""}), "none");
    EXPECT_EQ(parkedMatch({"KLM", "B738", ""}), "jumbo");
}

TEST_F(Matching, ATitleThatAParkedAircraftBringsStays) {
    folder.loadLiveries(liv("KLM", "B738", "own"));
    auto ac = aircraftOf<ParkedAc>({"KLM", "B738", "PH-BXA", true});
    ac.liveryTitle = "brought";
    EXPECT_TRUE(gf_matchParkedLivery(ac, ParkPos{}));
    EXPECT_EQ(ac.liveryTitle, "brought");
    EXPECT_TRUE(ac.cargo);
    EXPECT_TRUE(folder.logged("          CALL1    PH-BXA            KLM B738 =s= brought"));
}

TEST_F(Matching, TheLogNamesFlightStepAndTitle) {
    folder.loadLiveries(liv("KLM", "B738", "FSLTL_B738_KLM") + liv("DLH", "B738", "plain"));
    auto ac = aircraftOf<LiveAc>({"KLM", "B738", "PH-BXA"});
    ac.from = "AMS";
    ac.to = "LHR";
    gf_matchLiveLivery(ac);
    EXPECT_TRUE(ac.fsltlModel);
    EXPECT_TRUE(folder.logged("          CALL1    PH-BXA   AMS->LHR KLM B738 =2= FSLTL_B738_KLM\n"));
    ac.airline = "DLH";
    gf_matchLiveLivery(ac);
    EXPECT_FALSE(ac.fsltlModel);
    EXPECT_EQ(gf_noMatchText(ac), "DLH B738 PH-BXA");
}

TEST_F(Matching, ARememberedTitleIsForgottenWhenTheSimulatorRefusesIt) {
    folder.loadLiveries(liv("KLM", "B738", "own"));
    EXPECT_EQ(gf_rememberedLivery(20000), "");
    rememberedLiveries[20000] = gf_findTitle("own");
    EXPECT_EQ(gf_rememberedLivery(20000), "own");
    failedTitles.insert("own");
    EXPECT_EQ(gf_rememberedLivery(20000), "");
    EXPECT_TRUE(rememberedLiveries.empty());
    gf_clearLiveryTables();
    EXPECT_TRUE(failedTitles.contains("own")) << "what is refused stays refused through a new scan";
}

TEST_F(Matching, TheSummaryIsWrittenWhenThereWasAMatch) {
    gf_logMatchSummary();
    gf_logNoMatchList();
    EXPECT_FALSE(folder.logged("Matches at step"));
    EXPECT_FALSE(folder.logged("No match found"));
    matchSteps[5] = 3;
    failedModels.insert("B738 KLM");
    noMatchAircraft.insert("KLM B738 PH-BXA");
    gf_logMatchSummary();
    gf_logNoMatchList();
    EXPECT_TRUE(folder.logged("* live traffic livery matching summary *"));
    EXPECT_TRUE(folder.logged("Matches at step: \n  0: 0\n  1: 0\n  2: 0\n  3: 0\n  4: 0\n  5: 3\n  6: 0\n"));
    EXPECT_TRUE(folder.logged("\nCould not be created by MSFS:\n  B738 KLM\n*****"));
    EXPECT_TRUE(folder.logged("\nNo match found for:\nKLM B738 PH-BXA\n\n"));
}

}  // namespace
}  // namespace hcr
