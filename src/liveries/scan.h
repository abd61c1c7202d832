#pragma once

#include <filesystem>

#include "liveries/scan_folders.h"

namespace hcr {

// The scan of the installed AI packages. Run thread. A stop of the run is answered within a second: the
// scan then returns with nothing written.

/// The scan as a run does it: of the chosen simulator's packages, with the settings and controls kept up to date.
/// Throws UserErrorException when nothing is found.
void gf_scanLiveries();
/// The scan itself: walks the packages of the Community folder, or the lfolder parameters, and writes
/// LiveriesScanned.xml and the reports. `community` is empty when it isn't known. Throws UserErrorException 43, 48, 53,
/// 143, 243.
void gf_findLiveries(const std::filesystem::path& community);

/// Scans the folders and writes the results. False when no livery was found; true when a stop was asked for.
bool lf_scanFolders(const FolderList& folders);
}  // namespace hcr
