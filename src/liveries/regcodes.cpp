#include "liveries/regcodes.h"

#include <fmt/format.h>

#include <algorithm>
#include <pugixml.hpp>

#include "liveries/livery_tables.h"
#include "shell/file_names.h"
#include "shell/log.h"
#include "shell/stream_cipher.h"
#include "shell/text.h"
#include "shell/text_files.h"
#include "shell/xml.h"

namespace hcr {

std::vector<std::string> dontUseTitles;

namespace {

using Entries = std::vector<RegcodeEntry>;
using Lines = std::vector<std::string>;

constexpr std::size_t kShortestRegistration = 3, kLongestRegistration = 12;
constexpr const char* kSpecialMark = "#";
constexpr std::size_t kLinesOfAFile = 1024;
constexpr u64 kLargestFile = u64{8} * 1048576;  // bytes: more than all liveries there are; lines take several times it

/// The trimmed pieces of a comma list, sorted and unique; an empty piece is none.
Lines lf_registrations(std::string_view list) {
    Lines registrations;
    for (const std::string_view piece : gf_splitCommas(list)) {
        if (const std::string_view trimmed = gf_trim(piece); !trimmed.empty()) registrations.emplace_back(trimmed);
    }
    std::sort(registrations.begin(), registrations.end());
    registrations.erase(std::unique(registrations.begin(), registrations.end()), registrations.end());
    return registrations;
}

const char* lf_liveries(std::size_t count) {
    return count == 1 ? "livery" : "liveries";
}

/// False if any registration has an impossible length; such are logged and dropped.
bool lf_dropWrongLengths(Lines& registrations, const std::string& path) {
    const auto isWrong = [&path](const std::string& registration) {
        const bool wrong = registration.size() < kShortestRegistration || registration.size() > kLongestRegistration;
        if (wrong) gf_logError(fmt::format("wrong regcode length '{}' in {}", registration, path));
        return wrong;
    };
    const auto end = std::remove_if(registrations.begin(), registrations.end(), isWrong);
    const bool fine = end == registrations.end();
    registrations.erase(end, registrations.end());
    return fine;
}

/// A line of a title, its registrations and perhaps the mark of a special livery.
bool lf_readRegistrationLine(const std::vector<std::string_view>& fields, const std::string& path, Entries& entries) {
    RegcodeEntry entry{std::string(fields[0]), lf_registrations(fields[1]), false};
    if (entry.regs.empty()) return true;
    const bool single = entry.regs.size() == 1;
    entry.special = single || (fields.size() == 3 && fields[2] == kSpecialMark);
    const bool fine = lf_dropWrongLengths(entry.regs, path);
    if (!entry.regs.empty()) {
        entries.push_back(std::move(entry));
    } else if (!single) {
        gf_logError(fmt::format("{} ; regs empty?", path));
    }
    return fine;
}

bool lf_readLine(const std::string& line, const std::string& path, Entries& entries) {
    std::vector<std::string_view> fields = gf_split(line, ';');
    for (std::string_view& field : fields) field = gf_trim(field);
    if (fields.size() == 1) {
        if (!fields[0].empty()) entries.push_back({std::string(fields[0]), {}, false});
        return true;
    }
    if (fields.size() <= 3) return lf_readRegistrationLine(fields, path, entries);
    gf_logError(fmt::format("{}: wrong format '{}'", path, line));
    return false;
}

bool lf_readFile(const std::filesystem::path& file, Entries& entries) {
    const std::string path = gf_shownPath(file);
    gf_log(fmt::format("Processing regcodes file '{}'", path));
    std::error_code error;
    if (const std::uintmax_t size = std::filesystem::file_size(file, error); !error && size > kLargestFile) {
        gf_logError(fmt::format("{}: too large, {} bytes", path, size));
        return false;
    }
    Lines lines;
    lines.reserve(kLinesOfAFile);
    if (!gf_readTextFileLines(gf_detectCharset(file), file, lines)) return false;
    bool fine = true;
    for (const std::string& line : lines) {
        if (!line.empty() && !lf_readLine(line, path, entries)) fine = false;
    }
    return fine;
}

/// The text files of the folder, sorted, so that the same files give the same result on every system.
std::vector<std::filesystem::path> lf_textFilesIn(const std::filesystem::path& folder) {
    std::vector<std::filesystem::path> files;
    for (const std::filesystem::directory_entry& entry : std::filesystem::directory_iterator(folder)) {
        std::error_code error;  // of a link in a circle, say, which must not keep the other files from being read
        if (entry.is_regular_file(error) && gf_upper(gf_shownPath(entry.path().extension())) == ".TXT") {
            files.push_back(entry.path());
        }
    }
    std::sort(files.begin(), files.end());
    return files;
}

std::size_t lf_addDontUseTitles(const Entries& entries) {
    std::size_t added = 0;
    for (const RegcodeEntry& entry : entries) {
        if (!entry.regs.empty()) continue;
        dontUseTitles.push_back(entry.title);
        ++added;
    }
    return added;
}

/// The lines of OfflineRegcodes.txt, between the first and the last step of gf_processOfflineRegcodes.
Lines gReport;

struct MergeCounts {
    std::size_t fresh = 0, replaced = 0, special = 0;
};

void lf_mergeRegistration(const std::string& registration, std::string_view title, MergeCounts& counts) {
    const auto entry = regcodeTitles.find(registration);
    if (entry == regcodeTitles.end()) {
        regcodeTitles.emplace(gf_keepText(registration), title);
        ++counts.fresh;
    } else if (entry->second != title) {
        gReport.push_back(
            fmt::format("   regcode {} for '{}', instead of the same for '{}'", registration, title, entry->second));
        entry->second = title;
        ++counts.replaced;
    }
}

void lf_mergeEntry(const RegcodeEntry& entry, MergeCounts& counts) {
    if (entry.regs.empty()) return;
    const std::string_view title = gf_findTitle(entry.title);
    if (title.empty()) return;
    for (const std::string& registration : entry.regs) lf_mergeRegistration(registration, title, counts);
    if (!entry.special) return;
    if (entry.regs.size() == 1) uniqueRegcodes.insert(entry.regs.front());
    specialTitles.push_back(title);
    ++counts.special;
}

std::string lf_countText(const MergeCounts& counts) {
    std::string text = fmt::format("{} new regcode{} added", counts.fresh, gf_plural(counts.fresh));
    if (counts.replaced > 0) {
        text += fmt::format(", {} regcode{} replaced", counts.replaced, gf_plural(counts.replaced));
    }
    if (counts.special > 0) {
        text += fmt::format(", {} regcode{} defined as special", counts.special, gf_plural(counts.special));
    }
    return text;
}

/// A line for InlineRegcodes.txt; empty when the registration has its livery now.
std::string lf_mergeInline(const ScannedLivery& livery) {
    if (livery.title.empty()) {
        return fmt::format("==> [{:3} {:4}] {} '{}' not available, system error, should not happen?", livery.airl,
                           livery.type, livery.atcid, livery.title);
    }
    const auto holder = regcodeTitles.find(livery.atcid);
    if (holder == regcodeTitles.end()) {
        regcodeTitles.emplace(gf_keepText(livery.atcid), livery.title);
        return {};
    }
    if (holder->second == livery.title) return {};
    return fmt::format("{} '{}' => already in use by '{}'", livery.atcid, livery.title, holder->second);
}

void lf_writeReport(const Lines& lines, const std::filesystem::path& path) {
    std::string text;
    for (const std::string& line : lines) text += line + '\n';
    std::error_code error;
    std::filesystem::create_directories(path.parent_path(), error);
    if (!gf_writeTextFile(text, path, false)) gf_logError(fmt::format("Error writing file {}", gf_shownPath(path)));
}

void lf_processAigFile() {
    const FileNames& files = gFiles();
    gReport.push_back(fmt::format("Processing file {}", gf_pathToUtf8(files.aigXml)));
    gReport.emplace_back();
    Entries entries;
    if (!gf_readAigRegcodes(entries)) {
        gReport.push_back(fmt::format("There were errors processing the AIG-regcode file '{}', see Log.txt",
                                      gf_pathToUtf8(files.aigXml)));
    }
    gf_mergeRegcodes(entries);
    gf_removeIfPresent(files.aigXml);
}

void lf_processRegcodeFolder(const std::filesystem::path& folder) {
    gReport.push_back(fmt::format("Processing files in {}", gf_pathToUtf8(folder)));
    gReport.emplace_back();
    Entries entries;
    if (!gf_readRegcodeFiles(folder, entries)) {
        gReport.push_back(fmt::format("There were errors processing the regcode files in folder '{}', see Log.txt",
                                      gf_pathToUtf8(folder)));
    }
    gf_mergeRegcodes(entries);
}

void lf_writeOfflineReport() {
    const std::filesystem::path& path = gFiles().offlineRegcodes;
    gf_removeIfPresent(path);
    if (gReport.empty()) return;
    lf_writeReport(gReport, path);
    gReport = {};
    gf_log(fmt::format("Offline regcode files processed, results can be found in '{}'", gf_pathToUtf8(path)));
    if (!specialTitles.empty()) gf_log(fmt::format("{} special liveries", specialTitles.size()));
    if (!uniqueRegcodes.empty()) gf_log(fmt::format("{} unique liveries", uniqueRegcodes.size()));
}

bool lf_isFolder(const std::filesystem::path& path) {
    std::error_code error;
    return std::filesystem::is_directory(path, error);
}

}  // namespace

bool gf_readAigRegcodes(std::vector<RegcodeEntry>& entries) {
    const std::filesystem::path& path = gFiles().aigXml;
    pugi::xml_document document;
    if (!gf_loadXmlDocument(document, path)) {
        gf_logError(fmt::format("Failed to load {}", gf_pathToUtf8(path)));
        gf_removeIfPresent(path);
        return false;
    }
    bool fine = true;
    std::size_t read = 0;
    for (const pugi::xml_node node : gf_rootOf(document).child("AIG-regcodes").children("livery")) {
        const std::string_view title = node.attribute("title").value();
        if (title.empty()) continue;
        if (read > 0 && entries.back().title == title) {
            gf_logError(fmt::format("SAME AS PREVIOUS title '{}'", title));
            fine = false;
            continue;
        }
        entries.push_back(
            {std::string(title), lf_registrations(node.attribute("reg").value()), node.attribute("special").as_bool()});
        ++read;
    }
    gf_log(fmt::format("{} {} read from AIG-regcodes", read, lf_liveries(read)));
    return fine;
}

bool gf_readRegcodeFiles(const std::filesystem::path& folder, std::vector<RegcodeEntry>& entries) {
    const std::size_t before = entries.size();
    bool fine = true;
    try {
        for (const std::filesystem::path& file : lf_textFilesIn(folder)) {
            if (!lf_readFile(file, entries)) fine = false;
        }
    } catch (const std::filesystem::filesystem_error& fault) {
        gf_logError(fmt::format("{}: {}", gf_shownPath(folder), fault.what()));
        fine = false;
    }
    const std::size_t read = entries.size() - before;
    gf_log(fmt::format("{} {}", read, lf_liveries(read)));
    return fine;
}

void gf_readDontUseTitles() {
    const FileNames& files = gFiles();
    if (gf_streamDecrypt(files.aigEnc, files.aigXml)) {
        Entries entries;
        gf_readAigRegcodes(entries);
        const std::size_t added = lf_addDontUseTitles(entries);
        gf_log(fmt::format("{} don't use title{} read", added, gf_plural(added)));
        gf_removeIfPresent(files.aigXml);
    }
    if (lf_isFolder(files.myRegcodes)) {
        Entries entries;
        gf_readRegcodeFiles(files.myRegcodes, entries);
        const std::size_t added = lf_addDontUseTitles(entries);
        gf_log(fmt::format("{} don't use title{} read from files in {}", added, gf_plural(added),
                           gf_pathToUtf8(files.myRegcodes)));
    }
}

void gf_mergeInlineRegcodes(const std::vector<ScannedLivery>& liveries) {
    Lines clashes;
    const auto named = std::count_if(liveries.begin(), liveries.end(),
                                     [](const ScannedLivery& livery) { return !livery.atcid.empty(); });
    regcodeTitles.reserve(static_cast<std::size_t>(named));
    for (const ScannedLivery& livery : liveries) {
        if (livery.atcid.empty()) continue;
        if (std::string clash = lf_mergeInline(livery); !clash.empty()) clashes.push_back(std::move(clash));
    }
    if (clashes.empty()) return;
    const std::filesystem::path& path = gFiles().inlineRegcodes;
    lf_writeReport(clashes, path);
    gf_log(fmt::format("{} in-line regcode clashes, see '{}'", clashes.size(), gf_pathToUtf8(path)));
}

void gf_mergeRegcodes(const std::vector<RegcodeEntry>& entries) {
    MergeCounts counts;
    for (const RegcodeEntry& entry : entries) lf_mergeEntry(entry, counts);
    gReport.push_back(lf_countText(counts));
}

void gf_processOfflineRegcodes() {
    const FileNames& files = gFiles();
    gReport.clear();
    if (!gf_streamDecrypt(files.aigEnc, files.aigXml)) {
        std::error_code ignored;
        if (std::filesystem::exists(files.aigEnc, ignored)) gf_logError(gf_decryptFaultText(files.aigEnc));
        return;
    }
    lf_processAigFile();
    if (lf_isFolder(files.myRegcodes)) lf_processRegcodeFolder(files.myRegcodes);
    lf_writeOfflineReport();
}

}  // namespace hcr
