#include "platform/system.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <unistd.h>

#include <csignal>

#include "platform/user_folders.h"
#include "support/environment.h"
#include "support/temp_folder.h"

using namespace hcr;
using test::Variable;

namespace fs = std::filesystem;

TEST(System, FoldersFollowTheEnvironment) {
    const Variable home("HOME", "/home/somebody");
    const Variable data("XDG_DATA_HOME", "/data");
    EXPECT_EQ(gf_localFolder(), "/data");
    const Variable noData("XDG_DATA_HOME", nullptr);
    const Variable relative("XDG_CONFIG_HOME", "not/absolute");
    EXPECT_EQ(gf_roamingFolder(), "/home/somebody/.config");
    EXPECT_EQ(gf_localFolder(), "/home/somebody/.local/share");
    const Variable noHome("HOME", nullptr);
    EXPECT_TRUE(gf_roamingFolder().is_absolute());
    EXPECT_TRUE(fs::is_directory(gf_programFolder()));
}

TEST(System, ASignalSetsTheFlagAndTheProcessGoesOn) {
    std::atomic<bool> flag{false};
    struct sigaction interrupt {
    }, terminate{}, hangUp{}, pipe{};
    sigaction(SIGINT, nullptr, &interrupt);
    sigaction(SIGTERM, nullptr, &terminate);
    sigaction(SIGHUP, nullptr, &hangUp);
    sigaction(SIGPIPE, nullptr, &pipe);
    gf_onTerminate(flag);
    for (const int number : {SIGINT, SIGTERM}) {
        flag = false;
        std::raise(number);
        EXPECT_TRUE(flag);
    }
    std::raise(SIGPIPE);
    sigaction(SIGINT, &interrupt, nullptr);
    sigaction(SIGTERM, &terminate, nullptr);
    sigaction(SIGHUP, &hangUp, nullptr);
    sigaction(SIGPIPE, &pipe, nullptr);
}

TEST(System, OneProcessHoldsTheMarkOfARunningInstance) {
    const test::TempFolder folder;
    const Variable runtime("XDG_RUNTIME_DIR", folder.path.c_str());
    EXPECT_TRUE(gf_claimSingleInstance("some/name"));
    EXPECT_TRUE(gf_claimSingleInstance("some/name"));
    // A second opening of the file stands for a second process.
    const int other = open((folder.path / "some_name.lock").c_str(), O_RDWR | O_CLOEXEC);
    ASSERT_GE(other, 0);
    EXPECT_NE(flock(other, LOCK_EX | LOCK_NB), 0);
    close(other);
}

TEST(System, WhatIsntThereIsNotOpened) {
    EXPECT_FALSE(gf_openForUser("/no/such/file"));
}

TEST(System, ItsMemoryIsKnown) {
    EXPECT_GT(gf_residentBytes(), 1'000'000U);
}

TEST(System, ArgumentsComeWithoutTheProgramsName) {
    char program[] = "halcyrane", option[] = "--headless";
    char* arguments[] = {program, option, nullptr};
    EXPECT_EQ(gf_arguments(2, arguments), std::vector<std::string>{"--headless"});
    EXPECT_TRUE(gf_arguments(0, arguments).empty());
}
