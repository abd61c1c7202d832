#include "liveries/dbase.h"

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/model/aircraft_class.h"
#include "liveries/dbase_reader.h"
#include "liveries/similar_types.h"
#include "shell/file_names.h"
#include "shell/messages.h"
#include "shell/parameters.h"
#include "support/data_folder.h"

namespace hcr {
namespace {

using test::kNeededSections;
using testing::ElementsAre;
using testing::UnorderedElementsAre;

struct Dbase : testing::Test {
    test::DataFolder folder;
};

std::string airlineOf(std::string_view registration) {
    const DbaseRecord* record = gf_dbaseRecord(registration);
    return record == nullptr ? "none" : std::string(record->airl);
}

TEST_F(Dbase, TellsTheClassOfATypeAndLightForAllOthers) {
    folder.readDbase();
    EXPECT_EQ(gf_acClass("B738"), Large);
    EXPECT_EQ(gf_acClass("B744"), Heavy);
    EXPECT_EQ(gf_acClass("C25A"), Buzjets);
    EXPECT_EQ(gf_acClass("EC35"), Rotorcraft);
    EXPECT_EQ(gf_acClass("F16"), HighPerf);
    EXPECT_EQ(gf_acClass("C172"), Light);
    EXPECT_EQ(gf_acClass(""), Light);
    gClassTypes[Buzjets].insert("B738");
    EXPECT_EQ(gf_acClass("B738"), Large) << "large is asked before the others";
    EXPECT_FALSE(gf_isValidType(""));
    EXPECT_FALSE(gf_isAirline("klm"));
}

TEST_F(Dbase, AnEmptySetSectionIsTheUsersError) {
    std::string sections = kNeededSections;
    const std::string types = R"(<hvy types="B744"/>)";
    sections.replace(sections.find(types), types.size(), R"(<hvy types=" , "/><hvy/>)");
    try {
        gf_readDbaseText(sections);
        FAIL() << "no error";
    } catch (const UserErrorException& error) {
        EXPECT_STREQ(error.what(), "61: In XML file section [heavy], element [hvy], attribute [types] is empty.");
    }
}

TEST_F(Dbase, WingSpansOfUnknownTypesAndRepeatedOnesDoNotCount) {
    folder.readDbase(R"(<wingspans><wingspan type="B738" meters="40"/><wingspan type="A320" meters="30"/>
        <wingspan type="B738" meters="90"/><wingspan type="QQQQ" meters="500"/><wingspan type="C172" meters="nan"/>
        </wingspans>)");
    constexpr f64 kHalfNmOf40 = 20.0 / 1852;
    EXPECT_NEAR(gf_halfSpanNm("B738"), kHalfNmOf40, 1e-9);
    EXPECT_NEAR(gf_halfSpanNm("B739"), kHalfNmOf40 * 35 / 40, 1e-9) << "the mean of the class";
    EXPECT_NEAR(maxHalfSpan, kHalfNmOf40 * 90 / 40, 1e-9) << "the largest one seen, also of a repeated type";
    EXPECT_EQ(gf_halfSpanNm("C172"), 0);
    EXPECT_EQ(gf_halfSpanNm("B744"), 0) << "a class without any span";
    EXPECT_TRUE(folder.logged("==> wingspan model QQQQ is not valid, skipped"));
}

TEST_F(Dbase, FixesMustLeadToAKnownTypeAndTheFirstOneStays) {
    folder.readDbase(R"(<fixes><fx wro="B73X" cor="B738"/><fx wro="B73X" cor="A320"/><fx wro="A32X" cor="NONE"/>
        </fixes>)");
    EXPECT_THAT(typeFixes, UnorderedElementsAre(testing::Pair("B73X", "B738")));
    EXPECT_TRUE(folder.logged("==> wrong part of fix: 'B73X', already exists, skipped"));
    EXPECT_TRUE(folder.logged("==> wrong fix A32X -> NONE, the latter is not valid"));
}

TEST_F(Dbase, PublishersAreSortedLinesAndThirdPartiesKeepTheirOrder) {
    folder.readDbase(R"(<publishers><pub names="Zeta"/><pub names="Alpha , Alpha Two"/><pub names="Zeta"/></publishers>
        <thirdparties24><thirdpartie24 pub="Zeta" arpts="EHAM12, EHRD3"/><thirdpartie24 pub="Alpha"/></thirdparties24>)");
    EXPECT_THAT(publisherGroups, ElementsAre(ElementsAre("Alpha", "Alpha Two"), ElementsAre("Zeta")));
    EXPECT_TRUE(folder.logged("2 publishers read"));
    ASSERT_EQ(thirdParties24.size(), 2U);
    EXPECT_EQ(thirdParties24[0].publisher, "Zeta");
    EXPECT_THAT(thirdParties24[0].airports, ElementsAre("EHAM12", "EHRD3"));
    EXPECT_TRUE(thirdParties24[1].airports.empty());
}

TEST_F(Dbase, ARegistrationIsFoundWithAndWithoutItsDash) {
    EXPECT_THAT(gf_regcodeVariants("PHBXA"), ElementsAre("PH-BXA", "P-HBXA", "PHBXA"));
    for (const char* registration : {"N123AB", "PH-BXA", "G123", ""}) {
        EXPECT_THAT(gf_regcodeVariants(registration), ElementsAre(registration));
    }
    folder.readDbase(R"(<dbase><db reg="GA-BCD" airl="two"/><db reg="G-ABCD" airl="one"/><db reg="GABCD" airl="none"/>
        <db reg="F-GABC" airl="AFR"/><db reg="N-1234" airl="never"/><db reg="N1234" airl="plain"/><db airl="lost"/>
        </dbase>)");
    EXPECT_EQ(airlineOf("GABCD"), "two");
    EXPECT_EQ(airlineOf("FGABC"), "AFR");
    EXPECT_EQ(airlineOf("N1234"), "plain");
    EXPECT_EQ(airlineOf("PHBXA"), "none");
    EXPECT_EQ(gf_dbaseRecord("PHBXA"), nullptr);
    EXPECT_EQ(gf_dbaseRecord(""), nullptr);
}

TEST_F(Dbase, TheFirstRecordOfARegistrationStays) {
    folder.readDbase(R"(<dbase><db reg="PH-BXA" airl="KLM"/><db reg="PH-BXA" airl="DLH"/></dbase>)");
    EXPECT_EQ(airlineOf("PH-BXA"), "KLM");
    EXPECT_TRUE(folder.logged("==> regcode PH-BXA already exists"));
}

TEST_F(Dbase, FindsTheFirstShortRegistrationOfTheTableInATitle) {
    folder.readDbase(R"(<dbase><db reg="PH-BXA"/><db reg=""/><db reg="N98XY"/><db reg="N1"/></dbase>)");
    EXPECT_EQ(gf_regcodeInTitle("Cessna N1 and N98XY PH-BXA"), "N98XY");
    EXPECT_EQ(gf_regcodeInTitle("CessnaN1"), "N1");
    EXPECT_EQ(gf_regcodeInTitle("Boeing PH-BXA"), std::nullopt);
    EXPECT_EQ(gf_regcodeInTitle(""), std::nullopt);
}

/// A document with this many airframes, the n-th flown by airline n modulo 7.
std::string largeDocument(int count, const std::string& between) {
    std::string text = std::string("<?xml version=\"1.0\"?><root>") + kNeededSections + "<dbase note=\"a > b\">";
    for (int n = 0; n < count; ++n) {
        text += fmt::format("<db reg='R-{}' airl=\"A{}\" type=\"B738\"/>\n", n, n % 7);
        if (n % 1000 == 0) text += between;
    }
    return text + "</dbase><fixes><fx wro=\"B73X\" cor=\"B738\"/></fixes></root>";
}

TEST_F(Dbase, ALargeDocumentIsReadWholeWhateverStandsBetweenItsElements) {
    constexpr int kCount = 20000;
    for (const char* between : {"", "<!-- <db reg='no' --> <?what <db?>",
                                "<db reg='more'><inner a='>'><db reg='no'/>"
                                "</inner></db>",
                                "<![CDATA[</dbase><db reg='no'/>]]>"}) {
        SCOPED_TRACE(between);
        ASSERT_EQ(gf_readDbaseText(largeDocument(kCount, between)), "");
        EXPECT_EQ(dbaseRecords.size() - (dbaseRecords.find("more") != nullptr ? 1U : 0U), std::size_t{kCount});
        EXPECT_EQ(dbaseRecords.find("no"), nullptr);
        EXPECT_EQ(airlineOf("R-19999"), "A0");
        EXPECT_EQ(airlineOf("R-6"), "A6");
        EXPECT_EQ(typeFixes.size(), 1U) << "what stands behind the registrations counts too";
    }
}

TEST_F(Dbase, ABrokenDocumentLeavesNoTables) {
    const std::string good = largeDocument(5000, "");
    std::string badEntry = good;
    badEntry.replace(badEntry.find("R-4000'"), 7, "R-4000 ");
    for (const std::string& document :
         {std::string(), std::string("<root><dbase>"), good.substr(0, good.size() / 2), badEntry, good + "</root>"}) {
        EXPECT_NE(gf_readDbaseText(document), "");
        EXPECT_EQ(dbaseRecords.size(), 0U);
        EXPECT_TRUE(aircraftTypes.empty());
    }
}

TEST_F(Dbase, TheDataFileIsDecipheredForTheReadingOnly) {
    const FileNames& files = gFiles();
    EXPECT_THROW(gf_readDbase(), std::runtime_error) << "no file";

    test::writeWhole(files.dbaseEnc, "too short");
    EXPECT_THROW(gf_readDbase(), std::runtime_error);

    folder.encipher(files.dbaseEnc, "<root><dbase>");
    EXPECT_FALSE(gf_readDbase());
    EXPECT_TRUE(folder.logged("==> 'input/dbase.xml' not read because of "));
    EXPECT_FALSE(std::filesystem::exists(files.dbaseXml));

    folder.encipher(files.dbaseEnc, "<root/>");
    EXPECT_THROW(gf_readDbase(), UserErrorException);
    EXPECT_FALSE(std::filesystem::exists(files.dbaseXml));

    folder.encipher(files.dbaseEnc, largeDocument(3, ""));
    EXPECT_TRUE(gf_readDbase());
    EXPECT_TRUE(folder.logged("3 dbase records read"));
    EXPECT_FALSE(std::filesystem::exists(files.dbaseXml));
}

TEST_F(Dbase, OnlyTypesWithALiveryStandInForOthers) {
    folder.readDbase(R"(<similar_types><similar types="B739,B738,A320"/><similar types="B744,B738"/></similar_types>)");
    folder.loadLiveries(test::liv("KLM", "B738", "k") + test::liv("DLH", "B738", "d") + test::liv("DLH", "A320", "e"));
    EXPECT_THAT(similarTypes, UnorderedElementsAre(testing::Pair("B739", ElementsAre("A320", "B738")),
                                                   testing::Pair("A320", ElementsAre("B738")),
                                                   testing::Pair("B738", ElementsAre("A320")),
                                                   testing::Pair("B744", ElementsAre("B738"))));
    EXPECT_THAT(gf_similarForAirline("DLH", "B739"), ElementsAre("A320", "B738"));
    EXPECT_THAT(gf_similarForAirline("KLM", "A320"), ElementsAre("B738"));
    EXPECT_TRUE(gf_similarForAirline("DLH", "A320").empty()) << "the airline has the type itself";
    EXPECT_TRUE(gf_similarForAirline("AFR", "B739").empty());
    EXPECT_TRUE(folder.logged("4 similar model definitions"));
}

TEST_F(Dbase, ATypeInTwoGroupsTakesTheListThatSortsFirst) {
    folder.readDbase(R"(<similar_types><similar types="B739,B738"/><similar types="B739,A320"/></similar_types>)");
    folder.loadLiveries(test::liv("KLM", "B738", "k") + test::liv("KLM", "A320", "a"));
    EXPECT_THAT(gf_similarTypes("B739"), ElementsAre("A320"));
}

TEST_F(Dbase, ShufflingKeepsTheEntriesAndWithoutRandomTheirOrder) {
    const std::vector<std::string> list{"A", "B", "C", "D"};
    EXPECT_EQ(gf_shuffled(list), list);
    RANDOM.current = true;
    bool moved = false;
    for (int i = 0; i < 50; ++i) {
        const std::vector<std::string> shuffled = gf_shuffled(list);
        EXPECT_THAT(shuffled, testing::UnorderedElementsAreArray(list));
        moved = moved || shuffled != list;
    }
    EXPECT_TRUE(moved);
}

}  // namespace
}  // namespace hcr
