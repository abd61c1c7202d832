#include "platform/code_page.h"

#include <gtest/gtest.h>

#include "shell/text.h"

using namespace hcr;

TEST(CodePage, ABadByteCostsOneCharacter) {
    for (const char* undefined : {"\x81", "\x8D", "\x8F", "\x90", "\x9D"}) {
        EXPECT_EQ(gf_decodeCodePage(undefined, true), std::nullopt);
        EXPECT_EQ(gf_ansiToUtf8(std::string("a") + undefined + "b"),
                  "a\xEF\xBF\xBD"
                  "b");
    }
}
