#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace hcr::test {

/// Base of the tests of settings and data: a fresh working folder with a configuration folder in it, an open log, all
/// parameters at their defaults. Everything is put back at the end.
struct ShellWorld : testing::Test {
    void SetUp() override;
    void TearDown() override;

    std::string nameEnd;  ///< UTF-8, for the last letters of the folder's name; to be set before SetUp
    std::filesystem::path folder;

    /// What was logged so far.
    static std::string log();
    static bool logHas(const std::string& piece);
    static std::string read(const std::filesystem::path& path);
    static void write(const std::filesystem::path& path, const std::string& text);

private:
    std::filesystem::path before;
};

}  // namespace hcr::test
