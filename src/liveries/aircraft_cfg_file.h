#pragma once

#include <fmt/format.h>

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "liveries/cfg_content.h"
#include "liveries/cfg_keys.h"
#include "liveries/livery_data.h"
#include "liveries/reports.h"

namespace hcr {

// What the two readers of aircraft.cfg files share. Any number of threads, each with a file of its own.

/// The file that a reader works on.
struct CfgFile {
    i32 folderOrder = 0;  ///< place of the package folder
    std::filesystem::path path;
    std::string shownPath;  ///< UTF-8
    std::string folder;     ///< UTF-8
    std::string type;       ///< of all its sections
    std::string text;       ///< UTF-8; sections are pieces of it
    CfgContent content;     ///< what was found so far
};
/// A file before it is read; `folderOrder` counts the package folders.
CfgFile lf_cfgFile(i32 folderOrder, const std::filesystem::path& path);

/// Fills `text`. False for a file that isn't there any more, silently, and for one that can't be read, which is logged.
bool lf_readCfgText(CfgFile& file);

/// A line of a report, unless the file has filled the reports with enough of them.
void lf_report(CfgFile& file, ReportList& list, std::string line);
/// A text of the file for a report or the log: cut when it is too long to be shown.
std::string lf_shown(std::string_view text);

/// False if the sections' numbers make the file unusable, which is reported.
bool lf_checkSectionNumbers(CfgFile& file);

/// The livery of one section, which starts with its header line; nothing if it has none that can be used.
using SectionReader = std::optional<FoundLivery> (*)(CfgFile& file, std::string_view text);
/// Hands each section to the reader and appends what it finds to the content.
void lf_splitSections(CfgFile& file, SectionReader reader);

/// What the lines of a section tell.
struct CfgSection {
    CfgFile& file;
    std::string_view text;
    std::string_view header;  ///< its first line
    std::string title{}, airline{}, parkingTypes{}, atcid{}, texture{};

    /// A fault of the section. The first two places in its text are the folder and the header line.
    template <typename... Args>
    std::string fault(fmt::format_string<const std::string&, const std::string&, const Args&...> words,
                      const Args&... args) const {
        const std::string shownHeader = lf_shown(header);
        return fmt::vformat(words, fmt::make_format_args(file.folder, shownHeader, args...));
    }
    template <typename... Args>
    void report(fmt::format_string<const std::string&, const std::string&, const Args&...> words,
                const Args&... args) const {
        lf_report(file, gIncompleteSections, fault(words, args...));
    }
};
/// What a line means for the rest of its section.
enum class NextLine { read, giveUp };

/// Takes a line into what is known; the first rule that applies to a line ends the work on it.
using LineTaker = NextLine (*)(CfgSection& section, std::string_view line);
/// All lines of a section, up to the one that makes it useless.
NextLine lf_takeLines(CfgSection& section, LineTaker taker);
/// Whether this stands in the line, which makes it the second line of a key, be it one or not.
bool lf_mentions(std::string_view line, std::string_view key);
/// A section before its lines are taken.
CfgSection lf_cfgSection(CfgFile& file, std::string_view text);
/// Keeps the first title, trimmed; a second one, and one that the simulator can't be asked for, are faults.
NextLine lf_takeTitle(CfgSection& section, std::string_view value);
/// Whether a title says of itself that it isn't to be used.
bool lf_isDontUseTitle(std::string_view title);
/// False if a registration of the comma list is impossible. `result` is the registration, empty if there are several:
/// a livery of several airframes names none of them.
bool lf_checkAtcId(std::string_view value, std::string& result);
/// A value with blanks in it is taken for a comma list, and each piece trimmed.
std::string lf_normalized(std::string_view value);
/// Reports an airline that nobody knows.
void lf_reportAirline(CfgFile& file, std::string_view code, std::string_view header);
/// The livery of a section that is good.
LiveryData lf_livery(const CfgSection& section, bool cargo);

}  // namespace hcr
