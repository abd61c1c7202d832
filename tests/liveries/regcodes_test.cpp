#include "liveries/regcodes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "liveries/livery_tables.h"
#include "liveries/results.h"
#include "shell/file_names.h"
#include "support/data_folder.h"
#include "support/environment.h"

namespace hcr {
namespace {

using test::liv;
using test::readWhole;
using testing::ElementsAre;
using testing::UnorderedElementsAre;

struct Regcodes : testing::Test {
    test::DataFolder folder;

    /// The entries of a text file with this content.
    std::vector<RegcodeEntry> entriesOf(std::string_view content, bool fine) const {
        test::writeWhole("input/my_regcodes/mine.Txt", content);
        test::writeWhole("input/my_regcodes/mine.bak", "not;PH-QQQ");
        std::vector<RegcodeEntry> entries;
        EXPECT_EQ(gf_readRegcodeFiles(gFiles().myRegcodes, entries), fine);
        return entries;
    }
};

TEST_F(Regcodes, ALineOfATextFileNamesATitleAndItsRegistrations) {
    const auto entries = entriesOf(
        "one; PH-ABC \r\n"
        "two;PH-B,PH-A,PH-B\n"
        "two;PH-C,PH-D;#\n"
        "ordinary;PH-C,PH-D;x\n"
        " unused \n"
        "\n   \n ; \nnothing;\nnothing;,;#\n",
        true);
    ASSERT_EQ(entries.size(), 5U);
    EXPECT_EQ(entries[0].title, "one");
    EXPECT_THAT(entries[0].regs, ElementsAre("PH-ABC"));
    EXPECT_TRUE(entries[0].special) << "a single registration needs no mark";
    EXPECT_THAT(entries[1].regs, ElementsAre("PH-A", "PH-B"));
    EXPECT_FALSE(entries[1].special);
    EXPECT_TRUE(entries[2].special);
    EXPECT_FALSE(entries[3].special);
    EXPECT_EQ(entries[4].title, "unused");
    EXPECT_TRUE(entries[4].regs.empty());
    EXPECT_TRUE(folder.logged("Processing regcodes file 'input/my_regcodes/mine.Txt'\n5 liveries\n"));
}

TEST_F(Regcodes, RegistrationsHaveThreeToTwelveCharacters) {
    const auto entries = entriesOf("a;AB\nb;ABC\nc;123456789012\nd;1234567890123\ne;AB,ABC\nf;AB,AC;#\n", false);
    ASSERT_EQ(entries.size(), 3U);
    EXPECT_EQ(entries[0].title, "b");
    EXPECT_EQ(entries[1].title, "c");
    EXPECT_THAT(entries[2].regs, ElementsAre("ABC"));
    EXPECT_FALSE(entries[2].special) << "two were given";
    EXPECT_TRUE(folder.logged("==> wrong regcode length 'AB' in input/my_regcodes/mine.Txt"));
    EXPECT_TRUE(folder.logged("==> input/my_regcodes/mine.Txt ; regs empty?"));
}

TEST_F(Regcodes, ALineOfFourFieldsIsRefused) {
    EXPECT_TRUE(entriesOf("a;PH-ABC;#;\n", false).empty());
    EXPECT_TRUE(folder.logged("==> input/my_regcodes/mine.Txt: wrong format 'a;PH-ABC;#;'"));
}

TEST_F(Regcodes, AFileThatIsNoListKeepsNoOtherFromBeingRead) {
    test::writeWhole("input/my_regcodes/large.txt", "one;PH-ABC\n");
    std::filesystem::resize_file("input/my_regcodes/large.txt", 100'000'000);
    std::error_code error;  // where links can't be made, the rest is still tested
    std::filesystem::create_symlink("circle.txt", "input/my_regcodes/circle.txt", error);
    const auto entries = entriesOf("two;PH-DEF\n", false);
    ASSERT_EQ(entries.size(), 1U);
    EXPECT_EQ(entries[0].title, "two");
    EXPECT_TRUE(folder.logged("==> input/my_regcodes/large.txt: too large, 100000000 bytes\n"));
}

TEST_F(Regcodes, TheShippedFileMayNotRepeatATitleAtOnce) {
    test::writeWhole(gFiles().aigXml, R"(<AIG-regcodes><livery title="a" reg="1,2"/><livery reg="3"/>
        <livery title="a" reg="4"/><livery title="b"/><livery title="a"/></AIG-regcodes>)");
    std::vector<RegcodeEntry> entries;
    EXPECT_FALSE(gf_readAigRegcodes(entries));
    ASSERT_EQ(entries.size(), 3U);
    EXPECT_THAT(entries[0].regs, ElementsAre("1", "2"));
    EXPECT_TRUE(folder.logged("==> SAME AS PREVIOUS title 'a'"));
    EXPECT_TRUE(folder.logged("3 liveries read from AIG-regcodes"));
    test::writeWhole(gFiles().aigXml, "<AIG-regcodes>");
    EXPECT_FALSE(gf_readAigRegcodes(entries));
    EXPECT_TRUE(folder.logged("==> Failed to load input/AIG-regcodes.xml"));
    EXPECT_FALSE(std::filesystem::exists(gFiles().aigXml));
}

TEST_F(Regcodes, TheUsersFilesWinOverTheShippedOneAndThatOverTheLiveries) {
    test::writeWhole("input/my_regcodes/mine.txt", "t4;PH-CCC\nt1;PH-AAA,PH-DDD;#\nunknown;PH-EEE\nt3\n");
    folder.loadLiveries(liv("KLM", "B738", "t1", R"(atcid="PH-AAA")") + liv("KLM", "B738", "t2", R"(atcid="PH-BBB")") +
                            liv("KLM", "B738", "t3") + liv("KLM", "B738", "t4"),
                        R"(<livery title="t3" reg="PH-BBB, PH-CCC"/><livery title="t2" reg="PH-BBB" special="true"/>
                           <livery title="t1" special="true"/>)");
    EXPECT_THAT(regcodeTitles, UnorderedElementsAre(testing::Pair("PH-AAA", "t1"), testing::Pair("PH-BBB", "t2"),
                                                    testing::Pair("PH-CCC", "t4"), testing::Pair("PH-DDD", "t1")));
    EXPECT_THAT(uniqueRegcodes, ElementsAre("PH-BBB", "PH-CCC"));
    EXPECT_THAT(specialTitles, ElementsAre("t2", "t4", "t1"));
    EXPECT_EQ(test::slashed(readWhole(gFiles().offlineRegcodes)),
              "Processing file input/AIG-regcodes.xml\n\n"
              "   regcode PH-BBB for 't3', instead of the same for 't2'\n"
              "   regcode PH-BBB for 't2', instead of the same for 't3'\n"
              "1 new regcode added, 2 regcodes replaced, 1 regcode defined as special\n"
              "Processing files in input/my_regcodes\n\n"
              "   regcode PH-CCC for 't4', instead of the same for 't3'\n"
              "1 new regcode added, 1 regcode replaced, 2 regcodes defined as special\n");
    EXPECT_FALSE(std::filesystem::exists(gFiles().inlineRegcodes));
    EXPECT_FALSE(std::filesystem::exists(gFiles().aigXml));
    EXPECT_TRUE(
        folder.logged("results can be found in 'output/info/OfflineRegcodes.txt'\n3 special liveries\n"
                      "2 unique liveries\n4 registration codes\n"));
}

TEST_F(Regcodes, OfTwoLiveriesWithOneRegistrationTheFirstKeepsIt) {
    folder.loadLiveries(liv("KLM", "B738", "z", R"(atcid="PH-AAA")") + liv("KLM", "A320", "y", R"(atcid="PH-AAA")"));
    EXPECT_EQ(regcodeTitles.at("PH-AAA"), "y");
    EXPECT_EQ(readWhole(gFiles().inlineRegcodes), "PH-AAA 'z' => already in use by 'y'\n");
    EXPECT_TRUE(folder.logged("1 in-line regcode clashes, see 'output/errors/InlineRegcodes.txt'"));
}

TEST_F(Regcodes, WithoutTheShippedFileTheUsersFilesAreNotReadEither) {
    test::writeWhole("input/my_regcodes/mine.txt", "t1;PH-CCC\n");
    test::writeWhole(gFiles().liveriesScanned, "<root><liveries>" + liv("KLM", "B738", "t1") + "</liveries></root>");
    gf_loadScanResults();
    EXPECT_TRUE(regcodeTitles.empty());
    EXPECT_FALSE(std::filesystem::exists(gFiles().offlineRegcodes));
}

TEST_F(Regcodes, TitlesWithoutRegistrationsAreNotToBeScanned) {
    folder.encipher(gFiles().aigEnc,
                    R"(<AIG-regcodes><livery title="a"/><livery title="b" reg="PH-A"/></AIG-regcodes>)");
    test::writeWhole("input/my_regcodes/mine.txt", "c\nd;PH-D\ne\n");
    gf_readDontUseTitles();
    EXPECT_THAT(dontUseTitles, ElementsAre("a", "c", "e"));
    EXPECT_TRUE(folder.logged("1 don't use title read\n"));
    EXPECT_TRUE(folder.logged("2 don't use titles read from files in input/my_regcodes\n"));
    EXPECT_FALSE(std::filesystem::exists(gFiles().aigXml));
}

}  // namespace
}  // namespace hcr
