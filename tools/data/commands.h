#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

/// One thing that halcyrane-data can do.
struct Command {
    std::string_view name;
    std::string_view arguments;  ///< as the usage text shows them
    std::string_view purpose;
    /// Takes what stands behind the command's name; the result is the exit code. Throws UsageError.
    int (*run)(const std::vector<std::string>& arguments);
};

/// Wrong arguments: the text tells what is wrong with them.
struct UsageError {
    std::string text;
};

inline constexpr int kExitGood = 0;
inline constexpr int kExitFailed = 1;  ///< the work could not be done
inline constexpr int kExitUsage = 2;   ///< the arguments make no sense

int runEncipher(const std::vector<std::string>& arguments);
int runDecipher(const std::vector<std::string>& arguments);
int runScan(const std::vector<std::string>& arguments);
int runMatch(const std::vector<std::string>& arguments);
