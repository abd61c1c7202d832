#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/folders.h"
#include "shell/download.h"
#include "shell/generations.h"
#include "shell/parameter_file.h"
#include "shell/shell_world.h"
#include "shell/stream_cipher.h"
#include "shell/text.h"
#include "shell/text_files.h"
#include "support/environment.h"

namespace hcr {
namespace {

namespace fs = std::filesystem;

constexpr const char* kName = "Fl\xC3\xBCge \xD0\x9F\xD0\xBE \xE8\x88\xAA\xE7\xA9\xBA \xF0\x9F\x9B\xA9";

fs::path lf_named(const char* extension) {
    return gf_pathFromUtf8(fmt::format("{}{}", kName, extension));
}

/// A user whose folders are written in four scripts, one of them beyond 16 bits.
struct AnyScript : test::ShellWorld {
    AnyScript() { nameEnd = kName; }
};

TEST_F(AnyScript, SettingsLogAndGenerationsAreFilesLikeAnyOther) {
    gf_saveParameters(true);
    MSFS_INSTALL_PATH.current.set(gf_pathToUtf8(folder / lf_named("")));
    gf_storeParameter(MSFS_INSTALL_PATH);
    MSFS_INSTALL_PATH.current.set("");
    EXPECT_FALSE(gf_loadParameters());
    EXPECT_EQ(gf_pathFromUtf8(MSFS_INSTALL_PATH.current.get()), folder / lf_named(""));

    const fs::path file = folder / lf_named(".xml");
    EXPECT_TRUE(gf_writeTextFile("one", file, false));
    EXPECT_TRUE(gf_save1GenerationOf(file));
    EXPECT_TRUE(gf_writeTextFile("two", file, false));
    EXPECT_TRUE(gf_save1GenerationOf(file));
    EXPECT_EQ(read(lf_named("0.xml")), "two");

    EXPECT_TRUE(logHas(kName));
}

TEST_F(AnyScript, FoldersAreListedAndDataFilesReadAndFetched) {
    const fs::path plain = lf_named(".xml"), enciphered = lf_named(".enc");
    write(plain, "<root/>");
    EXPECT_TRUE(gf_streamEncrypt(plain, enciphered));
    fs::remove(plain);
    EXPECT_TRUE(gf_streamDecrypt(enciphered, plain));
    EXPECT_EQ(read(plain), "<root/>");

    std::vector<std::string> names;
    for (const FolderEntry& entry : gf_listFolder(gf_pathToUtf8(folder)).entries) names.push_back(entry.name);
    EXPECT_THAT(names, testing::IsSupersetOf({gf_pathToUtf8(enciphered), gf_pathToUtf8(plain)}));

    const test::Variable base("HALCYRANE_DATA_BASE", test::fileUrl(folder).c_str());
    const CurlHandle handle = gf_openCurl();
    EXPECT_TRUE(gf_download(handle.get(), test::fileUrl(plain), "fetched.xml", true));
    EXPECT_EQ(read("fetched.xml"), "<root/>");
}

/// Windows allows them to programs that say they can deal with them, where the user has switched it on.
TEST_F(AnyScript, APathMayBeLongerThanWindowsUsedToAllow) {
    fs::path deep = folder;
    for (int i = 0; i < 8; ++i) deep /= std::string(40, static_cast<char>('a' + i));
    fs::create_directories(deep);
    const fs::path file = deep / lf_named(".xml");
    EXPECT_TRUE(gf_writeTextFile("one", file, false));
    EXPECT_TRUE(gf_save1GenerationOf(file));
    std::string text;
    EXPECT_EQ(gf_readText(file, 100, text), TextRead::fine);
    EXPECT_EQ(text, "one");
    EXPECT_EQ(gf_listFolder(gf_pathToUtf8(deep)).entries.size(), 2U);
}

}  // namespace
}  // namespace hcr
