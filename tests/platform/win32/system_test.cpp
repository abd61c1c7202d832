#include "platform/system.h"

#include <gtest/gtest.h>

#include <atomic>
#include <functional>

#include "platform/code_page.h"
#include "platform/environment.h"
#include "platform/files.h"
#include "platform/user_folders.h"
#include "platform/win32/windows_header.h"
#include "shell/generations.h"
#include "shell/text.h"
#include "support/environment.h"
#include "support/temp_folder.h"

using namespace hcr;

namespace fs = std::filesystem;

TEST(System, TheUsersFoldersAreThereAndNotTheSame) {
    for (const fs::path& folder : {gf_roamingFolder(), gf_localFolder(), gf_programFolder()}) {
        EXPECT_TRUE(fs::is_directory(folder)) << folder;
    }
    EXPECT_NE(gf_roamingFolder(), gf_localFolder());
}

TEST(System, ASecondClaimOfTheMarkIsRefused) {
    EXPECT_TRUE(gf_claimSingleInstance("Local\\halcyrane-test-\xE2\x9C\x88"));
    EXPECT_FALSE(gf_claimSingleInstance("Local\\halcyrane-test-\xE2\x9C\x88"));
}

TEST(System, TheEnvironmentIsReadInAnyScript) {
    const test::Variable variable("HALCYRANE_TEST", "Fl\xC3\xBCge \xE8\x88\xAA\xE7\xA9\xBA");
    EXPECT_EQ(gf_environment("HALCYRANE_TEST"), "Fl\xC3\xBCge \xE8\x88\xAA\xE7\xA9\xBA");
    const test::Variable empty("HALCYRANE_TEST", "");
    EXPECT_EQ(gf_environment("HALCYRANE_TEST"), "");
    const test::Variable none("HALCYRANE_TEST", nullptr);
    EXPECT_EQ(gf_environment("HALCYRANE_TEST"), std::nullopt);
}

/// What the simulator's library is given must lead to the file, as its narrow calls open it.
TEST(System, ANarrowPathOpensTheFile) {
    const test::TempFolder folder;
    for (const char* name : {"plain.pln", "Z\xC3\xBCrich.pln"}) {
        test::writeFile(folder.path / gf_pathFromUtf8(name), "here");
        const std::string narrow = gf_narrowPath(folder.path / gf_pathFromUtf8(name));
        const HANDLE file = CreateFileA(narrow.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
        EXPECT_NE(file, INVALID_HANDLE_VALUE) << narrow;
        if (file != INVALID_HANDLE_VALUE) CloseHandle(file);
    }
    // Without a short form a sign is replaced, and the simulator reports the file as missing.
    EXPECT_FALSE(gf_narrowPath(folder.path / gf_pathFromUtf8("\xE8\x88\xAA.pln")).empty());
}

TEST(System, WhatIsntThereIsNotOpened) {
    EXPECT_FALSE(gf_openForUser("C:\\no\\such\\file"));
}

TEST(System, ItsMemoryIsKnown) {
    EXPECT_GT(gf_residentBytes(), 1'000'000U);
}

namespace {

/// What comes at once unless it never comes.
bool lf_comes(const std::function<bool()>& condition) {
    constexpr int kMostPolls = 10'000;
    for (int i = 0; i < kMostPolls && !condition(); ++i) Sleep(1);
    return condition();
}

/// This process's own; other programs of the family have one, too.
HWND lf_endOfSessionWindow() {
    HWND window = nullptr;
    DWORD process = 0;
    do {
        window = FindWindowExW(nullptr, window, L"HalcyraneEndOfSession", nullptr);
        if (window != nullptr) GetWindowThreadProcessId(window, &process);
    } while (window != nullptr && process != GetCurrentProcessId());
    return window;
}

}  // namespace

TEST(System, TheEndOfTheUsersSessionIsTheEndOfTheRun) {
    static std::atomic<bool> ended{false};  // the handler stays until the process ends
    gf_onTerminate(ended);
    HWND window = nullptr;
    ASSERT_TRUE(lf_comes([&] { return (window = lf_endOfSessionWindow()) != nullptr; }));
    PostMessageW(window, WM_ENDSESSION, FALSE, 0);  // another program has said no
    EXPECT_NE(SendMessageW(window, WM_QUERYENDSESSION, 0, 0), 0);
    EXPECT_FALSE(ended);
    PostMessageW(window, WM_ENDSESSION, TRUE, 0);
    EXPECT_TRUE(lf_comes([] { return ended.load(); }));
}

TEST(System, APathIsMadeAbsoluteAsTheSystemMeansIt) {
    std::error_code error;
    EXPECT_EQ(gf_absolutePath(L"\\\\server\\share\\a", error), fs::path(L"\\\\server\\share\\a"));
    EXPECT_EQ(gf_absolutePath(L"C:/a/../b.dll", error).native(), L"C:\\b.dll");
    const fs::path deep = gf_absolutePath(std::wstring(300, L'x'), error);
    EXPECT_EQ(deep.filename().native().size(), 300U);
    EXPECT_FALSE(error);
}

TEST(System, AFileThatSomebodyHoldsIsKept) {
    const test::TempFolder folder;
    const fs::path held = folder.path / "held.xml";
    test::writeFile(held, "old");
    const HANDLE file = CreateFileW(held.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(file, INVALID_HANDLE_VALUE);
    std::error_code error;
    EXPECT_FALSE(gf_writeInPlace(held, "new", error));
    EXPECT_TRUE(error);
    CloseHandle(file);
    EXPECT_EQ(test::readFile(held), "old");
    EXPECT_FALSE(fs::exists(folder.path / "held.xml.part"));
    EXPECT_TRUE(gf_writeInPlace(held, "new", error));
    EXPECT_EQ(test::readFile(held), "new");
}
