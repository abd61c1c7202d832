#include "shell/text.h"

#include <gmock/gmock.h>

using namespace hcr;
using testing::ElementsAre;

TEST(Text, GoesToWideAndBack) {
    for (const char* text : {"", "plain", "\xC2\x80\xDF\xBF", "\xE0\xA0\x80\xED\x9F\xBF\xEE\x80\x80\xEF\xBF\xBF",
                             "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF"}) {
        EXPECT_EQ(gf_wideToUtf8(gf_utf8ToWide(text)), text);
        EXPECT_EQ(gf_pathToUtf8(gf_pathFromUtf8(text)), text);
    }
    EXPECT_EQ(gf_utf16ToUtf8(u"\x20AC\xD83D\xDE00"), "\xE2\x82\xAC\xF0\x9F\x98\x80");
}

TEST(Text, InvalidUtf8IsRefused) {
    const char* rows[] = {"\x80",     "\xC0\x80",         "\xC1\xBF",         "\xC3",
                          "\xC3(",    "\xE0\x9F\xBF",     "\xED\xA0\x80",     "\xED\xBF\xBF",
                          "\xE2\x82", "\xF0\x8F\xBF\xBF", "\xF4\x90\x80\x80", "\xF5\x80\x80\x80",
                          "\xFF",     "a\xF0\x9F\x98"};
    for (const char* text : rows) {
        EXPECT_THROW(gf_utf8ToWide(text), std::runtime_error) << testing::PrintToString(text);
        EXPECT_THROW(gf_pathFromUtf8(text), std::runtime_error) << testing::PrintToString(text);
    }
    try {
        gf_utf8ToWide("\xFF");
        FAIL();
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ(error.what(), "utf8_to_wide: invalid UTF-8");
    }
}

TEST(Text, LoneSurrogatesAreRefused) {
    const std::u16string rows[] = {u"\xD800", u"\xDC00", u"\xD800x", u"\xD800\xD800", u"\xDC00\xD800"};
    for (const std::u16string& text : rows) EXPECT_THROW(gf_utf16ToUtf8(text), std::runtime_error);
    EXPECT_THROW(gf_wideToUtf8(std::wstring(1, static_cast<wchar_t>(0xD800))), std::runtime_error);
}

TEST(Text, AQuotedTextIsShortAndHarmless) {
    const std::string full(200, 'x');
    EXPECT_EQ(gf_quoted(full), full);
    EXPECT_EQ(gf_quoted(full + "x"), full + "...");
    EXPECT_EQ(gf_quoted(std::string(199, 'x') + "\xC3\xA9"), std::string(199, 'x') + "...") << "no half character";
    EXPECT_EQ(gf_quoted(std::string(1'000'000, '\0')), std::string(200, '?') + "...");
    EXPECT_EQ(gf_quoted(std::string("a\0\n\x1B[31m\x7F\tb", 11)), "a???[31m?\tb");
    EXPECT_EQ(gf_quoted("\xC2\x9B"
                        "1m \xFF\xE2\x82 \xE2\x82\xAC"),
              "?1m ??? \xE2\x82\xAC");
    EXPECT_EQ(gf_quoted("abcd", 3), "abc...");
}

TEST(Text, BytesOfTheCodePageBecomeTheirCharacters) {
    EXPECT_EQ(gf_ansiToUtf8("Z\xFCrich \x80"), "Z\xC3\xBCrich \xE2\x82\xAC");
    EXPECT_EQ(gf_ansiToUtf8(""), "");
}

TEST(Text, TrimAndSplitKeepWhatIsInside) {
    EXPECT_EQ(gf_trim(" \t\r\na b\n "), "a b");
    EXPECT_EQ(gf_trim(" \n"), "");
    EXPECT_THAT(gf_splitCommas("a, b,,"), ElementsAre("a", " b", "", ""));
    EXPECT_THAT(gf_splitCommas(""), ElementsAre(""));
    EXPECT_EQ(gf_upper("a\xC3\xA9z9"), "A\xC3\xA9Z9");
}

TEST(Text, PercentageIsRoundedAndNeverDividesByNothing) {
    EXPECT_EQ(gf_percentage(1, 3), 33);
    EXPECT_EQ(gf_percentage(2, 3), 67);
    EXPECT_EQ(gf_percentage(1, 200), 1);
    EXPECT_EQ(gf_percentage(5, 0), 0);
    EXPECT_EQ(gf_percentage(5, -1), 0);
    EXPECT_GT(gf_percentage(INT64_MAX, 1), 1'000'000);
}

TEST(Text, SocketErrorsAreExplained) {
    EXPECT_EQ(gf_winsockMessage(10048), "10048 Address already in use");
    EXPECT_EQ(gf_winsockMessage(11004), "11004 No host data of that type was found");
    EXPECT_EQ(gf_winsockMessage(10), "10 Unknown errror code");
}
