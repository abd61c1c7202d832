#include "liveries/scan_walk.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <deque>
#include <stdexcept>
#include <string>
#include <string_view>

#include "liveries/aircraft_cfg.h"
#include "liveries/scan_threads.h"
#include "liveries/scanned_file.h"
#include "platform/clock.h"
#include "platform/folders.h"
#include "shell/log.h"
#include "shell/messages.h"
#include "shell/run_stop.h"
#include "shell/text.h"

namespace hcr {

CfgReaders gCfgReaders{lf_searchLiveriesinFile, lf_searchLiveriesinIVAOFile};

namespace {

/// Packages without AI aircraft, most of them large sceneries, and the copies that a converter leaves.
constexpr std::array<std::string_view, 9> kNotEntered = {
    "airport", "lvfr", "mkstudios", "simwings", "fsdreamteam", "navigraph", "flytampa", "inibuilds", "_CVT_"};
constexpr std::array<std::string_view, 2> kIvaoPackages = {"ivao_x-csl", "IVAO_MTL"};
constexpr std::size_t kPathBytes = 250;  // a folder below would pass what many programs take for the longest path
constexpr std::string_view kFileName = "AIRCRAFT.CFG";
/// Files handed out beyond those being read, for each worker: so many that no worker waits for the walker, so few that
/// the liveries come in as they are found.
constexpr std::size_t kFilesAhead = 16;
constexpr i64 kLongestReadUs = 10'000'000;
constexpr i64 kProgressUs = 200'000;                  // five times a second
constexpr std::chrono::milliseconds kLookAround{50};  // while a file is awaited: for a stop, for progress
constexpr char kSeparator = static_cast<char>(std::filesystem::path::preferred_separator);

/// The walk of one folder.
struct Walk {
    i32 folderOrder = 0;
    std::string folder;  ///< as the user sees it
    ScanPool pool{scanThreadLimit};
    std::deque<ScanFuture> futures;  ///< in the order of their start
    std::size_t filesRead = 0, before = gScanList.size();
    i64 nextProgress = gf_steadyUs() + kProgressUs;
};

struct Level {
    std::size_t pathLength;  ///< of the folder, in the walk's path
    std::vector<FolderEntry> entries;
    std::size_t next = 0;
};

template <std::size_t N>
bool lf_holdsAny(std::string_view path, const std::array<std::string_view, N>& texts) {
    return std::any_of(texts.begin(), texts.end(),
                       [&](std::string_view text) { return path.find(text) != std::string_view::npos; });
}

bool lf_isAircraftCfg(std::string_view name) {
    return std::equal(name.begin(), name.end(), kFileName.begin(), kFileName.end(),
                      [](char c, char upper) { return std::toupper(static_cast<unsigned char>(c)) == upper; });
}

void lf_logAborted(const std::string& path, const char* cause) {
    gf_logError(fmt::format("liveries search in {} aborted, cause: {}", path, cause));
}

void lf_showProgress(Walk& walk) {
    const i64 now = gf_steadyUs();
    if (now < walk.nextProgress) return;
    walk.nextProgress = now + kProgressUs;
    const std::size_t found = gScanList.size() - walk.before;
    gf_showMessage(fmt::format("Scanning {} for liveries: {} file{} read, {} liverie{} found", walk.folder,
                               walk.filesRead, gf_plural(walk.filesRead), found, gf_plural(found)),
                   false);
}

/// False when a stop has come first. Throws when the file takes too long, from the moment when a worker has begun it.
bool lf_await(Walk& walk, ScanFuture& future) {
    i64 deadline = 0;
    while (future.content.wait_for(kLookAround) != std::future_status::ready) {
        if (gf_stopAsked()) return false;
        lf_showProgress(walk);
        if (!future.job->begun) continue;
        if (deadline == 0) deadline = gf_steadyUs() + kLongestReadUs;
        if (gf_steadyUs() < deadline) continue;
        gf_log(fmt::format("{} takes too long", gf_shownPath(future.job->path)));
        throw std::runtime_error("Future wait timed out after 10 seconds");
    }
    return true;
}

/// Takes over what the oldest file gives.
void lf_collectOldest(Walk& walk, const char* complaint) {
    ScanFuture oldest = std::move(walk.futures.front());
    walk.futures.pop_front();
    try {
        if (!lf_await(walk, oldest)) return;
        gf_takeOver(oldest.content.get(), gScanList);
    } catch (const std::exception& fault) {
        gf_logError(fmt::format("{} {}", complaint, fault.what()));
    }
    ++walk.filesRead;
    lf_showProgress(walk);
}

void lf_readFile(Walk& walk, const std::string& path) {
    const ScanReader reader = lf_holdsAny(path, kIvaoPackages) ? gCfgReaders.ivao : gCfgReaders.usual;
    walk.futures.push_back(gf_startReading(walk.pool, reader, walk.folderOrder, gf_pathFromUtf8(path)));
    if (walk.futures.size() > static_cast<std::size_t>(scanThreadLimit) * kFilesAhead) {
        lf_collectOldest(walk, "liveries inner search aborted:");
    }
}

/// The folder at the end of the path; one that can't be read is told and counts as empty.
Level lf_openFolder(const std::string& path) {
    FolderListing listing = gf_listFolder(path);
    if (!listing.error.empty()) lf_logAborted(path, listing.error.c_str());
    return {path.size(), std::move(listing.entries)};
}

bool lf_isEntered(const std::string& path) {
    return path.size() < kPathBytes && !lf_holdsAny(path, kNotEntered);
}

void lf_visit(Walk& walk, const FolderEntry& entry, const std::string& path, std::vector<Level>& levels) {
    if (entry.kind == EntryKind::folder && lf_isEntered(path)) {
        if (!gf_isUtf8(entry.name)) throw std::runtime_error("the name of a folder is no valid text");
        levels.push_back(lf_openFolder(path));
    } else if (entry.kind == EntryKind::file && lf_isAircraftCfg(entry.name)) {
        lf_readFile(walk, path);
    }
}

/// Depth first, each folder in the byte order of its names, so that two scans go the same way.
void lf_walk(Walk& walk, std::string path) {
    std::vector<Level> levels;
    levels.push_back(lf_openFolder(path));
    while (!levels.empty() && !gf_stopAsked()) {
        Level& level = levels.back();
        if (level.next == level.entries.size()) {
            levels.pop_back();
            continue;
        }
        const FolderEntry entry = std::move(level.entries[level.next++]);
        path.resize(level.pathLength);
        if (path.back() != kSeparator) path += kSeparator;
        const std::size_t folderLength = path.size();
        path += entry.name;
        try {
            lf_visit(walk, entry, path, levels);
        } catch (const std::exception& fault) {
            lf_logAborted(gf_isUtf8(entry.name) ? path : path.substr(0, folderLength), fault.what());
        }
        lf_showProgress(walk);
    }
}

}  // namespace

void lf_scanFolder(i32 folderOrder, const std::filesystem::path& folder) {
    Walk walk;
    walk.folderOrder = folderOrder;
    walk.folder = gf_shownPath(folder.filename().empty() ? folder.parent_path().filename() : folder.filename());
    const std::string path = gf_pathToUtf8(folder);
    if (!lf_isEntered(path)) {
        gf_log(fmt::format("{}: the folders in it aren't entered: its path is too long or that of a scenery", path));
    }
    lf_walk(walk, path);
    while (!walk.futures.empty() && !gf_stopAsked()) lf_collectOldest(walk, "liveries search aborted, futs outer,");
    gf_endScanPool(walk.pool);
}

}  // namespace hcr
