#include "liveries/scan.h"

#include <fmt/format.h>

#include <algorithm>
#include <string>
#include <system_error>
#include <tuple>

#include "liveries/livery_data.h"
#include "liveries/regcodes.h"
#include "liveries/reports.h"
#include "liveries/results.h"
#include "liveries/scan_pool.h"
#include "liveries/scan_threads.h"
#include "liveries/scan_walk.h"
#include "liveries/scanned_file.h"
#include "platform/clock.h"
#include "platform/system.h"
#include "scenery/install.h"
#include "shell/controls.h"
#include "shell/file_names.h"
#include "shell/log.h"
#include "shell/messages.h"
#include "shell/parameter_file.h"
#include "shell/run_stop.h"
#include "shell/settings.h"
#include "shell/text.h"
#include "shell/version.h"
#include "shell/window_state.h"

namespace hcr {

namespace {

constexpr i32 kNoPackage = 43, kNoManualFolder = 48, kNoManualLivery = 53, kNoPackagedLivery = 143;
constexpr i32 kLastFolderOrder = 10;
constexpr std::size_t kUsualFolders = 10;
constexpr i64 kLookAroundMs = 50;

/// The choice of packages can't be changed while they are scanned.
struct SelectorLock {
    SelectorLock() { gf_enableControl(AI_PACKAGE_SELECTOR, false); }
    ~SelectorLock() { gf_enableControl(AI_PACKAGE_SELECTOR, true); }
    SelectorLock(const SelectorLock&) = delete;
    SelectorLock& operator=(const SelectorLock&) = delete;
};

[[noreturn]] void lf_failWithoutFolders() {
    if (LIG_AUTOMATIC.current) {
        const std::string advice =
            gf_settingAdvice("AI_PACKAGE_SELECTOR", "FSLTL") +
            "; for folders of your own set LIG_AUTOMATIC to false and lfolder0 to the first of them";
        throw UserErrorException(kNoPackage,
                                 gf_withAdvice("Automatic scan has not found any AI packages, choose a different "
                                               "selection (or go to Manual mode, see Manual 5.2)",
                                               advice));
    }
    gf_openForUser(gFiles().docs / "Manual.pdf");
    gf_openForUser(gFiles().configurationFolder);
    throw UserErrorException(kNoManualFolder, fmt::format("Exit {} first!   Then set one or more lfolder parameters "
                                                          "to your liveries, see Manual 5.2",
                                                          kProgramName));
}

[[noreturn]] void lf_failWithoutLiveries() {
    if (LIG_AUTOMATIC.current) {
        throw UserErrorException(kNoPackagedLivery,
                                 "Automatic scan has not found any liveries, choose a different selection, or switch "
                                 "off automatic and set lfolder parameter(-s)");
    }
    throw UserErrorException(kNoManualLivery, "no liveries found");
}

FolderList lf_findFolders(const std::filesystem::path& community) {
    FolderList folders;
    folders.reserve(kUsualFolders);
    if (!LIG_AUTOMATIC.current) {
        lf_findManualFolders(folders);
    } else if (!community.empty()) {
        lf_findAutoFolders(community, folders);
    }
    if (folders.empty()) lf_failWithoutFolders();
    return folders;
}

void lf_readUnusedTitles() {
    try {
        gf_readDontUseTitles();
    } catch (const std::exception& fault) {
        gf_logError(fmt::format("exception: {}", fault.what()));
    }
}

/// Whether the path is a folder; anything else is told.
bool lf_isFolder(const std::filesystem::path& path) {
    if (path.empty()) return false;
    std::error_code error;
    const std::filesystem::file_status status = std::filesystem::status(path, error);
    if (std::filesystem::is_directory(status)) return true;
    gf_log(
        fmt::format("{}{}", gf_shownPath(path),
                    std::filesystem::exists(status) ? " is not a folder name, skipped!" : " does not exist, skipped!"));
    return false;
}

/// The number of liveries that the folder has added.
std::size_t lf_scanOne(i32 folderOrder, const std::filesystem::path& folder) {
    const std::size_t before = gScanList.size();
    lf_scanFolder(folderOrder, folder);
    const std::size_t added = gScanList.size() - before;
    const std::string where = "found in " + gf_shownPath(folder);
    gf_log(added == 0 ? fmt::format("No liveries {}", where)
                      : fmt::format("{} liverie{} {}", added, gf_plural(added), where));
    return added;
}

std::size_t lf_scanAll(const FolderList& folders) {
    std::size_t total = 0;
    i32 folderOrder = 0;
    for (const std::filesystem::path& folder : folders) {
        if (!lf_isFolder(folder)) continue;
        folderOrder = std::min(folderOrder + 1, kLastFolderOrder);
        if (!gf_stopAsked()) total += lf_scanOne(folderOrder, folder);
    }
    return total;
}

std::string lf_pairKey(const LiveryData& livery) {
    return livery.airl + '\0' + livery.type;
}

/// Of each pair of airline and type only the first package's liveries stay.
void lf_prioritize() {
    TextMap<i32> firstOrder;
    for (const LiveryData& livery : gScanList) {
        const auto [entry, isNew] = firstOrder.try_emplace(lf_pairKey(livery), livery.folderOrder);
        if (!isNew) entry->second = std::min(entry->second, livery.folderOrder);
    }
    std::erase_if(gScanList, [&](const LiveryData& livery) {
        return livery.folderOrder > firstOrder.find(lf_pairKey(livery))->second;
    });
}

void lf_sortAndDropDoubles() {
    std::stable_sort(gScanList.begin(), gScanList.end(), [](const LiveryData& a, const LiveryData& b) {
        return std::tie(a.airl, a.type, a.title) < std::tie(b.airl, b.type, b.title);
    });
    const auto equal = [](const LiveryData& a, const LiveryData& b) {
        return std::tie(a.title, a.airl, a.type, a.atcid, a.cargo) ==
               std::tie(b.title, b.airl, b.type, b.atcid, b.cargo);
    };
    gScanList.erase(std::unique(gScanList.begin(), gScanList.end(), equal), gScanList.end());
}

void lf_clearLists() {
    gf_clearScanLists();
    if (gf_scanWorkersEnded()) dontUseTitles = {};
}

void lf_writeResults() {
    gf_applyDbaseToLiveries();
    if (LIG_PRIORITIZE.current) lf_prioritize();
    lf_sortAndDropDoubles();
    gf_writeScannedLiveries();
    gScanList = {};
    gf_writeScanReports();
    lf_clearLists();
    gf_clearMessage();
}

/// As long as a worker of an older scan reads a slow file, it looks into dontUseTitles. False when a stop has come
/// first.
bool lf_awaitOlderScan() {
    if (!gf_scanWorkersEnded()) gf_showMessage("Waiting for a file of the last scan to be read ...", false);
    while (!gf_scanWorkersEnded()) {
        if (gf_stopAsked()) return false;
        gf_sleepMs(kLookAroundMs);
    }
    return true;
}

void lf_keepScanOff() {
    SCAN_LIVERIES.current = false;
    gf_storeParameter(SCAN_LIVERIES);
    gf_showInControl(SCAN_LIVERIES);
    gf_repaint(Band::whole);
}

}  // namespace

bool lf_scanFolders(const FolderList& folders) {
    if (!lf_awaitOlderScan()) return true;
    scanThreadsActive = 0;
    gScanList = {};
    lf_clearLists();
    gf_removeOldScanFiles();
    lf_readUnusedTitles();
    const std::size_t total = lf_scanAll(folders);
    if (gf_stopAsked()) {
        gScanList = {};
        return true;
    }
    if (gScanList.empty()) {
        gf_writeScanReports();  // they tell why
        lf_clearLists();
        gWindow.liveryCount = 0;
        gf_repaint(Band::liveries);
        return false;
    }
    if (folders.size() > 1) gf_log(fmt::format("{} in total", total));
    lf_writeResults();
    return true;
}

void gf_findLiveries(const std::filesystem::path& community) {
    gf_showMessage(fmt::format("Scanning {}for liveries ...", LIG_PRIORITIZE.current ? "prioritized " : ""), false);
    gf_log(fmt::format("\n++++++++++++++++++++++++ liveries scan {} starts ++++++++++++++++++++++++++++++++",
                       LIG_AUTOMATIC.current ? "automatic" : "manual"));
    if (!lf_scanFolders(lf_findFolders(community))) lf_failWithoutLiveries();
    gf_log("\n++++++++++++++++++++++++ liveries scan ends ++++++++++++++++++++++++++++++++\n");
    gf_logFlush();
}

void gf_scanLiveries() {
    if (gf_stopAsked()) return;
    const SelectorLock lock;
    gf_findLiveries(gf_simulatorPath(gFiles().community));
    gf_clearLiveryTables();
    // A scan that was stopped or couldn't write has left no results: the next run has to try again.
    std::error_code error;
    if (!gf_stopAsked() && std::filesystem::exists(gFiles().liveriesScanned, error)) lf_keepScanOff();
}

}  // namespace hcr
