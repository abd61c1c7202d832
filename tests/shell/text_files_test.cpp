#include "shell/text_files.h"

#include <gmock/gmock.h>

#include "shell/file_names.h"
#include "shell/window_state.h"
#include "support/temp_folder.h"

using namespace hcr;
using namespace std::string_literals;
using test::readFile;
using test::writeFile;
using testing::ElementsAre;
using testing::IsEmpty;

namespace fs = std::filesystem;

namespace {

Charset lf_charsetOf(const std::string& bytes) {
    writeFile("sample.txt", bytes);
    return gf_detectCharset("sample.txt");
}

std::vector<std::string> lf_linesOf(const std::string& bytes) {
    const Charset charset = lf_charsetOf(bytes);
    std::vector<std::string> lines = {"left over"};
    EXPECT_TRUE(gf_readTextFileLines(charset, "sample.txt", lines));
    return lines;
}

}  // namespace

TEST(TextFile, CharsetIsToldByTheFirstBytes) {
    const test::TempFolder folder;
    struct Row {
        std::string bytes;
        Charset charset;
    };
    const Row rows[] = {
        {"", Charset::utf8WithoutBom},
        {"a", Charset::utf8WithoutBom},
        {"\xEF\xBB\xBF", Charset::utf8WithBom},
        {"\xEF\xBB", Charset::ansi},
        {"\xFF\xFE", Charset::unicode},
        {"\xFE\xFF", Charset::unicodeBigEndian},
        {"a\0"s, Charset::unicode},
        {"a\0b\0"s, Charset::unicode},
        {"a\0bc"s, Charset::utf8WithoutBom},
        {"\0a"s, Charset::unicodeBigEndian},
        {"\0a\0b"s, Charset::unicodeBigEndian},
        {"\0abc"s, Charset::utf8WithoutBom},
        {"caf\xC3\xA9", Charset::utf8WithoutBom},
        {"caf\xE9", Charset::ansi},
        {"\x80", Charset::ansi},
        {"\xC0\x80", Charset::ansi},
        {"\xC1\xBF", Charset::ansi},
        {"\xE0\x9F\xBF", Charset::ansi},
        {"\xE0\xA0\x80", Charset::utf8WithoutBom},
        {"\xF0\x8F\xBF\xBF", Charset::ansi},
        {"\xF0\x90\x80\x80", Charset::utf8WithoutBom},
        {"\xF4\x8F\xBF\xBF", Charset::utf8WithoutBom},
        {"\xF4\x90\x80\x80", Charset::ansi},
        {"\xF5\x80\x80\x80", Charset::ansi},
        {"abc\xE2\x82", Charset::ansi},
        {"half \xED\xA0\x80\xED\xBF\xBF of a pair", Charset::utf8WithoutBom},
        {"\xED\xA0", Charset::ansi},
        {"\xED\xA0\x80\xE9", Charset::ansi},
    };
    for (const Row& row : rows) EXPECT_EQ(lf_charsetOf(row.bytes), row.charset) << testing::PrintToString(row.bytes);
}

TEST(TextFile, WhatIsNoFileHasNoCharset) {
    const test::TempFolder folder;
    fs::create_directory("folder");
    EXPECT_EQ(gf_detectCharset("folder"), Charset::noneFound);
    EXPECT_EQ(gf_detectCharset("nowhere.txt"), Charset::noneFound);
    EXPECT_STREQ(gf_charsetName(gf_detectCharset("nowhere.txt")), "none_found");
    EXPECT_THROW(gf_charsetName(static_cast<Charset>(6)), std::out_of_range);
    EXPECT_THROW(gf_charsetName(static_cast<Charset>(-1)), std::out_of_range);
}

TEST(TextFile, LinesComeAsUtf8WhateverTheCharset) {
    const test::TempFolder folder;
    EXPECT_THAT(lf_linesOf("one\r\ntwo\n\nlast"), ElementsAre("one", "two", "", "last"));
    EXPECT_THAT(lf_linesOf("one\n"), ElementsAre("one"));
    EXPECT_THAT(lf_linesOf("\n"), ElementsAre(""));
    EXPECT_THAT(lf_linesOf("a\rb\r"), ElementsAre("a\rb")) << "only a line's last carriage return goes";
    EXPECT_THAT(lf_linesOf("\xEF\xBB\xBF"
                           "caf\xC3\xA9\n"),
                ElementsAre("caf\xC3\xA9"));
    EXPECT_THAT(lf_linesOf("\xEF\xBB\xBF"), IsEmpty());
    EXPECT_THAT(lf_linesOf("caf\xE9\n\x80"), ElementsAre("caf\xC3\xA9", "\xE2\x82\xAC"));
    EXPECT_THAT(lf_linesOf("\xFF\xFE"
                           "a\0\r\0\n\0\x3D\xD8\x00\xDE"s),
                ElementsAre("a", "\xF0\x9F\x98\x80"));
    EXPECT_THAT(lf_linesOf("\xFE\xFF\x20\xAC"), ElementsAre("\xE2\x82\xAC"));
    EXPECT_THAT(lf_linesOf("\xFF\xFE"), IsEmpty());
    EXPECT_THAT(lf_linesOf("\xFF\xFE"
                           "abc"),
                IsEmpty())
        << "half a code unit";
    EXPECT_THAT(lf_linesOf("a\0b\0"s), IsEmpty()) << "UTF-16 without its mark";
    EXPECT_THAT(lf_linesOf(""), IsEmpty());
}

TEST(TextFile, AFailedReadIsShownAndLeavesNoLines) {
    const test::LogFolder log;
    gf_resetWindowState();
    std::vector<std::string> lines;
    writeFile("half.txt",
              "\xFF\xFE"
              "a\0\x00\xD8"s);
    EXPECT_FALSE(gf_readTextFileLines(Charset::unicode, "half.txt", lines));
    EXPECT_EQ(gf_currentMessage(), "Read failed for 'half.txt': wide_to_utf8: invalid UTF-16");
    EXPECT_FALSE(gf_readTextFileLines(Charset::noneFound, "no.txt", lines));
    EXPECT_EQ(gf_currentMessage(), "Read failed for 'no.txt': file no.txt has unknown charset: none_found");
    EXPECT_FALSE(gf_readTextFileLines(static_cast<Charset>(99), "half.txt", lines));
    EXPECT_FALSE(gf_readTextFileLines(Charset::ansi, "no.txt", lines));
    EXPECT_THAT(lines, IsEmpty());
    EXPECT_THAT(log.logged(), testing::HasSubstr("\nRead failed for 'no.txt': file no.txt has unknown"));
    gf_resetWindowState();
}

TEST(TextFile, IsReplacedWhole) {
    const test::TempFolder folder;
    writeFile("a.txt", "a long old text");
    writeFile("a.txt.part", "what a crash has left behind");
    EXPECT_TRUE(gf_writeTextFile("new", "a.txt", true));
    EXPECT_EQ(readFile("a.txt"), "new\n");
    EXPECT_TRUE(gf_writeTextFile("new", "a.txt", false));
    EXPECT_EQ(readFile("a.txt"), "new");
    EXPECT_FALSE(gf_writeTextFile("new", "missing/a.txt", false));
    fs::create_directory("folder");
    writeFile("folder/inside.txt", "");
    EXPECT_FALSE(gf_writeTextFile("new", "folder", false));
    EXPECT_EQ(gf_countDirectoryEntries("."), 2U) << "nothing is left beside the target";
}

TEST(Folder, IsEmptiedOneLevelDeep) {
    const test::LogFolder log;
    fs::create_directories("full/empty");
    writeFile("full/a.txt", "");
    gf_removeFilesFromDirectory("full");
    EXPECT_EQ(gf_countDirectoryEntries("full"), 0U);
    gf_removeFilesFromDirectory("nowhere");
    gf_removeFilesFromDirectory("Log.txt");
    EXPECT_EQ(log.logged(), "");
    EXPECT_EQ(gf_countDirectoryEntries("nowhere"), 0U);

    fs::create_directories("full/folder");
    writeFile("full/folder/b.txt", "");
    gf_removeFilesFromDirectory("full");
    EXPECT_THAT(log.logged(), testing::StartsWith("==> gf_removeFilesFromDirectory exception: "));
    EXPECT_TRUE(fs::exists("full/folder/b.txt"));
}

TEST(Folder, LinkFilesAreKnownByTheirExtension) {
    const test::TempFolder folder;
    fs::create_directories(gFiles().tblo);
    for (const char* name : {"a.xml", "b.XmL", "c.txt", "d.xml.bak", "xml", ".xml", "e.xm"}) {
        writeFile(gFiles().tblo / name, "");
    }
    gf_removeXMLFilesFromDirectory();
    EXPECT_FALSE(fs::exists(gFiles().tblo / "a.xml"));
    EXPECT_FALSE(fs::exists(gFiles().tblo / "b.XmL"));
    EXPECT_EQ(gf_countDirectoryEntries(gFiles().tblo), 5U);
}
