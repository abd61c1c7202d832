#include "platform/system.h"

#include <gtest/gtest.h>

#include "platform/environment.h"
#include "platform/win32/windows_header.h"
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
