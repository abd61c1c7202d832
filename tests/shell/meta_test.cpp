#include "shell/meta.h"

#include <gtest/gtest.h>

#include "shell/shell_world.h"
#include "shell/xml.h"

namespace hcr {
namespace {

struct Meta : test::ShellWorld {
    static std::optional<MetaInfo> readItems(const std::string& items, bool simOptional) {
        pugi::xml_document document;
        document.load_string(("<root><meta>" + items + "</meta></root>").c_str());
        return gf_readMeta(document, simOptional);
    }
};

constexpr const char* kCopyright = "<info name='copyright' value='(c)'/>";

TEST_F(Meta, ABlockSurvivesItsFile) {
    MetaInfo written;
    written.version = "1.2.3";
    written.setSim(2);
    pugi::xml_document document;
    ASSERT_TRUE(gf_writeMeta(document, written));
    ASSERT_TRUE(gf_saveXmlDocument(document, "some.xml"));
    pugi::xml_document loaded;
    ASSERT_TRUE(gf_loadXmlDocument(loaded, "some.xml"));
    const std::optional<MetaInfo> read = gf_readMeta(loaded, false);
    ASSERT_TRUE(read.has_value());
    EXPECT_EQ(read->author, "Halcyrane");
    EXPECT_EQ(read->version, "1.2.3");
    EXPECT_EQ(read->date.size(), 12U);
    EXPECT_EQ(read->sim, 2);
    EXPECT_EQ(read->msfs, "2024");
}

TEST_F(Meta, ABlockNeedsACopyrightAndMostlyASimulator) {
    const std::string copyright = kCopyright;
    EXPECT_FALSE(readItems("", true).has_value());
    EXPECT_FALSE(readItems("<info name='sim' value='1'/>", true).has_value());
    EXPECT_FALSE(logHas("copyright"));
    EXPECT_FALSE(readItems("<info name='copyright' value=''/>" + copyright, true).has_value());
    EXPECT_TRUE(logHas("==> no copyright info in the file?"));
    EXPECT_TRUE(readItems(copyright, true).has_value());
    EXPECT_FALSE(readItems(copyright, false).has_value());
    EXPECT_EQ(readItems(copyright + "<info name='P3D' value='v5'/>", false)->formerSim, "v5");
    EXPECT_EQ(readItems(copyright + "<info name='MSFS' value='2020'/>", false)->msfs, "2020");
    EXPECT_EQ(readItems(copyright, true)->sim, -1);
    const auto twice = readItems(copyright + "<info name='sim' value='3'/><info name='sim' value='1'/>", false);
    EXPECT_EQ(twice->sim, 3);
    EXPECT_EQ(twice->formerSim, "v56");
}

TEST_F(Meta, AnXmlFileThatCantBeWrittenLeavesTheOldOne) {
    pugi::xml_document document;
    document.append_child("root");
    EXPECT_FALSE(gf_saveXmlDocument(document, "no/such/folder/some.xml"));
    std::filesystem::create_directories("taken.xml/inside");
    EXPECT_FALSE(gf_saveXmlDocument(document, "taken.xml"));
    EXPECT_FALSE(std::filesystem::exists("taken.xml.part"));
    EXPECT_TRUE(std::filesystem::exists("taken.xml/inside"));
}

}  // namespace
}  // namespace hcr
