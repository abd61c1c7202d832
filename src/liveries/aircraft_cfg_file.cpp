#include "liveries/aircraft_cfg_file.h"

#include <algorithm>
#include <charconv>

#include "liveries/regcodes.h"
#include "shell/log.h"
#include "shell/text.h"
#include "shell/text_files.h"

namespace hcr {
namespace {

/// Files with hundreds of liveries stay below one megabyte. What is larger is no aircraft.cfg, and two workers must be
/// able to hold and convert one each.
constexpr u64 kLargestFileBytes = 8 * 1024 * 1024;
/// Numbers go from 0 to kLargestFltSim, so more sections can't be told apart.
constexpr std::size_t kMostSections = kLargestFltSim + 1;
/// Nobody reads on behind so many lines about one file.
constexpr std::size_t kMostReportsOfAFile = 10000;
constexpr std::size_t kLongestShownBytes = 250;
/// The simulator takes a title in a field of 256 bytes that ends in a zero.
constexpr std::size_t kLongestTitleBytes = 255;
constexpr std::size_t kLongestRegistration = 12;

/// The lines of a text that hold a "[" and no key before it, each with its place.
struct BracketLines {
    std::string_view text;
    std::size_t from = 0;

    struct Line {
        std::size_t begin = 0, end = 0;
    };

    /// False behind the last one.
    bool next(Line& line) {
        for (;;) {
            const std::size_t bracket = text.find('[', from);
            if (bracket == std::string_view::npos) return false;
            const std::size_t before = text.substr(from, bracket - from).rfind('\n');
            line.begin = before == std::string_view::npos ? from : from + before + 1;
            line.end = std::min(text.find('\n', bracket), text.size());
            from = std::min(line.end + 1, text.size());
            if (!gf_endsInCfgValue(text.substr(line.begin, bracket - line.begin))) return true;
        }
    }

    std::string_view at(const Line& line) const {
        std::string_view content = text.substr(line.begin, line.end - line.begin);
        if (content.ends_with('\r')) content.remove_suffix(1);
        return content;
    }
};

/// Nothing for what isn't a number of 32 bits.
std::optional<i32> lf_number(std::string_view digits) {
    i32 number = 0;
    const auto [end, fault] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    if (fault != std::errc{} || end != digits.data() + digits.size()) return std::nullopt;
    return number;
}

/// What no XML file can hold.
bool lf_holdsControls(std::string_view text) {
    return std::any_of(text.begin(), text.end(), [](char c) { return static_cast<u8>(c) < ' ' && c != '\t'; });
}

bool lf_isRegistration(std::string_view piece) {
    return !piece.empty() && piece.size() <= kLongestRegistration && piece.find('*') == std::string_view::npos &&
           !lf_holdsControls(piece);
}

bool lf_isUsableTitle(std::string_view title) {
    return title.size() <= kLongestTitleBytes && !lf_holdsControls(title);
}

bool lf_refuseTooLarge(CfgFile& file) {
    std::string line = fmt::format("{} is larger than {} MB and can't be an aircraft.cfg", file.shownPath,
                                   kLargestFileBytes / 1024 / 1024);
    gf_logError(line);
    lf_report(file, gInvalidFiles, std::move(line));
    return false;
}

}  // namespace

CfgFile lf_cfgFile(i32 folderOrder, const std::filesystem::path& path) {
    CfgFile file;
    file.folderOrder = folderOrder;
    file.path = path;
    file.shownPath = gf_shownPath(path);
    file.folder = gf_shownPath(path.parent_path());
    return file;
}

bool lf_readCfgText(CfgFile& file) {
    switch (gf_readText(file.path, kLargestFileBytes, file.text)) {
        case TextRead::fine:
            return true;
        case TextRead::tooLarge:
            return lf_refuseTooLarge(file);
        case TextRead::failed:
            gf_log(fmt::format("! Failed reading {}", file.shownPath));
            return false;
        case TextRead::notOpened:
            break;
    }
    // It may have gone since the walk.
    std::error_code error;
    if (std::filesystem::exists(file.path, error) || error) {
        gf_logError(fmt::format("! No text encoding detected for {}", file.shownPath));
    }
    return false;
}

void lf_report(CfgFile& file, ReportList& list, std::string line) {
    std::vector<ReportLine>& reports = file.content.reports;
    if (reports.size() < kMostReportsOfAFile) {
        reports.push_back({&list, std::move(line)});
    } else if (reports.size() == kMostReportsOfAFile) {
        reports.push_back({&gInvalidFiles, fmt::format("{} has more than {} faults, the others aren't listed",
                                                       file.shownPath, kMostReportsOfAFile)});
    }
}

std::string lf_shown(std::string_view text) {
    return gf_quoted(text, kLongestShownBytes);
}

bool lf_checkSectionNumbers(CfgFile& file) {
    BracketLines lines{file.text};
    std::size_t sections = 0;
    i32 largest = 0;
    for (BracketLines::Line line; lines.next(line);) {
        const FltSimHeader header = gf_fltSimHeader(lines.at(line));
        if (!header.isHeader) continue;
        const std::optional<i32> number = lf_number(header.number);
        if (!number) {
            gf_logError(fmt::format("fltsim num {} incorrect", lf_shown(lines.at(line))));
            return false;
        }
        ++sections;
        largest = std::max(largest, *number);
    }
    if (sections == 0) {
        lf_report(file, gFilesWithoutSections, file.shownPath);
    } else if (largest > kLargestFltSim) {
        lf_report(
            file, gInvalidFiles,
            fmt::format("{} contains a [fltsim.x] section with a number < 0 or > {}", file.shownPath, kLargestFltSim));
        return false;
    } else if (sections > kMostSections) {
        std::string line = fmt::format("{} contains more than {} [fltsim.x] sections", file.shownPath, kMostSections);
        gf_logError(line);
        lf_report(file, gInvalidFiles, std::move(line));
        return false;
    }
    return true;
}

void lf_splitSections(CfgFile& file, SectionReader reader) {
    constexpr std::size_t kNone = std::string_view::npos;
    const std::string_view text = file.text;
    std::size_t begin = kNone;  // of the open section
    const auto close = [&](std::size_t end) {
        if (begin == kNone) return;
        if (std::optional<FoundLivery> livery = reader(file, text.substr(begin, end - begin))) {
            file.content.liveries.push_back(std::move(*livery));
        }
        begin = kNone;
    };
    BracketLines lines{text};
    for (BracketLines::Line line; lines.next(line);) {
        close(line.begin);
        if (gf_fltSimHeader(lines.at(line)).isHeader) begin = line.begin;
    }
    close(text.size());
}

CfgSection lf_cfgSection(CfgFile& file, std::string_view text) {
    std::string_view header;
    TextLines{text}.next(header);
    return {file, text, header};
}

NextLine lf_takeLines(CfgSection& section, LineTaker taker) {
    CfgKeyLines lines{section.text};
    for (std::string_view line; lines.next(line);) {
        if (taker(section, line) == NextLine::giveUp) return NextLine::giveUp;
    }
    return NextLine::read;
}

bool lf_mentions(std::string_view line, std::string_view key) {
    return line.find(key) != std::string_view::npos && !gf_isCfgComment(line);
}

NextLine lf_takeTitle(CfgSection& section, std::string_view value) {
    if (!section.title.empty()) {
        section.report("{} {} has more than one title key");
        return NextLine::giveUp;
    }
    const std::string_view title = gf_trim(value);
    if (!lf_isUsableTitle(title)) {
        section.report("{} {} has a title that is too long or holds control characters");
        return NextLine::giveUp;
    }
    section.title = title;
    return NextLine::read;
}

bool lf_isDontUseTitle(std::string_view title) {
    return std::find(dontUseTitles.begin(), dontUseTitles.end(), title) != dontUseTitles.end();
}

bool lf_checkAtcId(std::string_view value, std::string& result) {
    std::string_view first;
    std::size_t pieces = 0;
    for (std::size_t begin = 0; begin != std::string_view::npos; ++pieces) {
        const std::size_t comma = value.find(',', begin);
        const std::string_view piece = gf_trimCfg(value.substr(begin, comma - begin));
        if (!lf_isRegistration(piece)) return false;
        if (pieces == 0) first = piece;
        begin = comma == std::string_view::npos ? comma : comma + 1;
    }
    result = pieces == 1 ? first : std::string_view();
    return true;
}

std::string lf_normalized(std::string_view value) {
    if (!gf_holdsCfgBlank(value)) return std::string(value);
    std::string normalized;
    for (std::size_t begin = 0; begin != std::string_view::npos;) {
        const std::size_t comma = value.find(',', begin);
        if (begin > 0) normalized += ',';
        normalized += gf_trimCfg(value.substr(begin, comma - begin));
        begin = comma == std::string_view::npos ? comma : comma + 1;
    }
    return normalized;
}

void lf_reportAirline(CfgFile& file, std::string_view code, std::string_view header) {
    lf_report(file, gInvalidAirlines, fmt::format("{:12} in {} {}", lf_shown(code), file.shownPath, lf_shown(header)));
}

LiveryData lf_livery(const CfgSection& section, bool cargo) {
    return {section.airline, section.file.type, section.title, section.atcid, section.file.folderOrder, cargo};
}

}  // namespace hcr
