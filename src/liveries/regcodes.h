#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace hcr {

// Which livery stands for which real airframe. Run thread.

/// One line of a source.
struct RegcodeEntry {
    std::string title;
    std::vector<std::string> regs;  ///< sorted, unique; empty for a title that must not be used
    bool special = false;           ///< the livery is reserved for these registrations
};

bool gf_readAigRegcodes(std::vector<RegcodeEntry>& entries);
bool gf_readRegcodeFiles(const std::filesystem::path& folder, std::vector<RegcodeEntry>& entries);
void gf_readDontUseTitles();
void gf_mergeInlineRegcodes();
void gf_mergeRegcodes(const std::vector<RegcodeEntry>& entries);
void gf_processOfflineRegcodes();

}  // namespace hcr
