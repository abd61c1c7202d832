#pragma once

#include <filesystem>

#include "liveries/scan_pool.h"

namespace hcr {

/// What a scan reads its files with: those of the IVAO package and all others. Changed by tests only, between scans.
struct CfgReaders {
    ScanReader usual, ivao;
};
extern CfgReaders gCfgReaders;

/// Adds the liveries of one folder to the scan list. `folderOrder` counts from 1. Run
/// thread.
void lf_scanFolder(i32 folderOrder, const std::filesystem::path& folder);

}  // namespace hcr
