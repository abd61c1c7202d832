#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "shell/stream_cipher.h"
#include "tools/data/match_report.h"

inline constexpr int kExitGood = 0;
inline constexpr int kExitFailed = 1;  ///< the work could not be done
inline constexpr int kExitUsage = 2;   ///< the arguments make no sense

/// Wrong arguments: the text tells what is wrong with them.
struct UsageError {
    std::string text;
};

struct CipherArguments {
    std::filesystem::path in, out;
    hcr::CipherKey key = hcr::gf_cipherKey();
};

struct ScanArguments {
    std::filesystem::path community, work;  ///< absolute
    std::string selector;                   ///< empty for the program's default
    bool prioritize = true;
    std::vector<std::filesystem::path> folders;  ///< absolute; scanned in place of the Community folder
};

struct MatchArguments {
    hcr::MatchQuestion question;
    std::filesystem::path work = ".";
    hcr::i32 depth = 0;  ///< 0: as the settings say
    std::vector<std::string> refused;
};

// The results are exit codes.
int runEncipher(const CipherArguments& arguments);
int runDecipher(const CipherArguments& arguments);
int runScan(const ScanArguments& arguments);
int runMatch(const MatchArguments& arguments);

/// All that the program does with its arguments. Throws UsageError, and std::runtime_error for work that can't be done.
int runCommandLine(const std::vector<std::string>& arguments);
