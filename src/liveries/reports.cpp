#include "liveries/reports.h"

#include <fmt/format.h>

#include <algorithm>
#include <stdexcept>

#include "shell/file_names.h"
#include "shell/log.h"
#include "shell/text.h"
#include "shell/text_files.h"

namespace hcr {

ReportList gInvalidAirlines, gInvalidTypes, gCodeFixes, gInvalidFiles, gIncompleteSections, gFilesWithoutSections;
ReportList gConversions;
std::set<std::string, std::less<>> seenTitles;

namespace {

/// Throws when the file can't be written; its folder is made when it is missing.
void lf_writeLines(const ReportList& lines, const std::filesystem::path& path) {
    std::filesystem::create_directories(path.parent_path());
    std::string text;
    for (const std::string& line : lines) {
        text += line;
        text += '\n';
    }
    if (!gf_writeTextFile(text, path, false)) throw std::runtime_error("the file can't be written");
}

/// The same for reports whose absence speaks for itself.
void lf_tryWriteLines(const ReportList& lines, const std::filesystem::path& path) {
    try {
        lf_writeLines(lines, path);
    } catch (const std::exception& fault) {
        gf_logError(fmt::format("Error writing file {}: {}", gf_pathToUtf8(path), fault.what()));
    }
}

void lf_writeSorted(ReportList& lines, const std::filesystem::path& path) {
    std::sort(lines.begin(), lines.end());
    lf_tryWriteLines(lines, path);
}

void lf_reportCodes(ReportList& lines, const std::filesystem::path& path, const char* what) {
    if (lines.empty()) return;
    lf_writeSorted(lines, path);
    gf_log(
        fmt::format("{} invalid {} code{}, see {}", lines.size(), what, gf_plural(lines.size()), gf_pathToUtf8(path)));
}

void lf_reportFixes(const ReportList& lines, const std::filesystem::path& path) {
    if (lines.empty()) return;
    try {
        lf_writeLines(lines, path);
        gf_log(fmt::format("{} code fixes, see {}", lines.size(), gf_pathToUtf8(path)));
    } catch (const std::exception& fault) {
        gf_logError(fmt::format("Error writing file {}: {}", gf_pathToUtf8(path), fault.what()));
    }
}

void lf_reportFiles(ReportList& lines, const std::filesystem::path& path, const char* what) {
    if (lines.empty()) return;
    lf_writeSorted(lines, path);
    gf_log(fmt::format("{} {} aircraft.cfg files, see {}", lines.size(), what, gf_pathToUtf8(path)));
}

void lf_reportIncompleteSections(ReportList& lines, const std::filesystem::path& path) {
    if (lines.empty()) return;
    const std::size_t faults = lines.size();  // the user wants to know how many sections there are, not how many lines
    std::sort(lines.begin(), lines.end());
    lines.erase(std::unique(lines.begin(), lines.end()), lines.end());
    lf_tryWriteLines(lines, path);
    gf_log(fmt::format("{} incomplete [fltsim.x] sections, see {}", faults, gf_pathToUtf8(path)));
}

void lf_reportConversions(const std::filesystem::path& path) {
    if (gConversions.empty()) return;
    lf_tryWriteLines(gConversions, path);
    gf_log(fmt::format("{} liveries updated with real live data from dbase, see {}", gConversions.size(),
                       gf_pathToUtf8(path)));
}

}  // namespace

void gf_writeScanReports() {
    const FileNames& files = gFiles();
    const bool faultless = gInvalidAirlines.empty() && gInvalidTypes.empty() && gCodeFixes.empty() &&
                           gInvalidFiles.empty() && gIncompleteSections.empty();
    gf_log(faultless ? "\nNo errors" : "\nErrors:");
    lf_reportCodes(gInvalidAirlines, files.invalidAirlines, "airline");
    lf_reportCodes(gInvalidTypes, files.invalidTypes, "model");
    lf_reportFixes(gCodeFixes, files.fixes);
    lf_reportFiles(gInvalidFiles, files.invalidFiles, "invalid");
    lf_reportIncompleteSections(gIncompleteSections, files.incompleteSections);
    gf_log("\nInformation:");
    lf_reportFiles(gFilesWithoutSections, files.noFltsimSection, "empty");
    lf_reportConversions(files.airlineModelConversions);
}

void gf_clearScanLists() {
    for (ReportList* list : {&gInvalidAirlines, &gInvalidTypes, &gCodeFixes, &gInvalidFiles, &gIncompleteSections,
                             &gFilesWithoutSections, &gConversions}) {
        *list = {};
    }
    seenTitles.clear();
}

void gf_removeOldScanFiles() {
    const FileNames& files = gFiles();
    const auto attempt = [](const auto& step) {
        try {
            step();
        } catch (const std::exception& fault) {
            gf_logError(fmt::format("problems with removing previous files: {}", fault.what()));
        }
    };
    for (const std::filesystem::path* path :
         {&files.noFltsimSection, &files.liveriesScanned, &files.inlineRegcodes, &files.invalidAirlines,
          &files.invalidTypes, &files.fixes, &files.invalidFiles, &files.incompleteSections}) {
        attempt([path] { std::filesystem::remove(*path); });
    }
    attempt([&files] {
        if (std::filesystem::is_directory(files.errors) && std::filesystem::is_empty(files.errors)) {
            std::filesystem::remove(files.errors);
        }
    });
}

}  // namespace hcr
