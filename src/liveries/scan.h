#pragma once

#include <atomic>
#include <filesystem>
#include <vector>

#include "platform/types.h"

namespace hcr {

// The scan of the installed AI packages. Run thread, but for the two counters. A stop of the run is answered within a
// second: the scan then returns with nothing written.

/// Workers of the scan that run. The one that takes a file counts itself; its reader lowers the count as its last act.
extern std::atomic<i32> scanThreadsActive;
/// Number of hardware threads, read at a run's start: so many workers may run at once.
extern i32 scanThreadLimit;

/// Sets the two above, at a run's start.
void gf_prepareScans();
/// The scan as a run does it: of the chosen simulator's packages, with the settings and controls kept up to date.
/// Throws UserErrorException when nothing is found.
void gf_scanLiveries();
/// The scan itself: walks the packages of the Community folder, or the lfolder parameters, and writes
/// LiveriesScanned.xml and the reports. `community` is empty when it isn't known. Throws UserErrorException 43, 48, 53,
/// 143, 243.
void gf_findLiveries(const std::filesystem::path& community);

using FolderList = std::vector<std::filesystem::path>;

/// Appends the folders of the packages that AI_PACKAGE_SELECTOR names, in its order. Throws std::runtime_error when the
/// parameter has none of its values.
void lf_findAutoFolders(const std::filesystem::path& community, FolderList& folders);
/// Appends the folders of the lfolder parameters. Throws UserErrorException 243 when one doesn't exist.
void lf_findManualFolders(FolderList& folders);
/// Scans the folders and writes the results. False when no livery was found; true when a stop was asked for.
bool lf_scanFolders(const FolderList& folders);
/// Adds the liveries of one folder to the scan list. `folderOrder` counts from 1.
void lf_scanFolder(i32 folderOrder, const std::filesystem::path& folder);

}  // namespace hcr
