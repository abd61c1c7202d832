#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "liveries/scanned_file.h"

namespace hcr {

// Which livery stands for which real airframe. Run thread.

extern std::vector<std::string> dontUseTitles;  ///< titles that a scan passes over

/// One line of a source.
struct RegcodeEntry {
    std::string title;
    std::vector<std::string> regs;  ///< sorted, unique; empty for a title that must not be used
    bool special = false;           ///< the livery is reserved for these registrations
};

/// Adds the entries of the shipped file, which must be there in its plain form. False if anything was wrong.
bool gf_readAigRegcodes(std::vector<RegcodeEntry>& entries);
/// Adds the entries of the user's text files. False if anything was wrong.
bool gf_readRegcodeFiles(const std::filesystem::path& folder, std::vector<RegcodeEntry>& entries);
/// Fills dontUseTitles from both sources, before a scan.
void gf_readDontUseTitles();
/// The registrations that the liveries themselves name; the first livery of a registration keeps it. The titles are
/// those of liveryIndex.
void gf_mergeInlineRegcodes(const std::vector<ScannedLivery>& liveries);
/// One source into the tables: it wins over what stands there.
void gf_mergeRegcodes(const std::vector<RegcodeEntry>& entries);
/// Both sources into the tables, with a report.
void gf_processOfflineRegcodes();

}  // namespace hcr
