#pragma once

#include <filesystem>
#include <vector>

namespace hcr {

// Which folders a scan walks. Run thread.

using FolderList = std::vector<std::filesystem::path>;

/// Appends the folders of the packages that AI_PACKAGE_SELECTOR names, in its order. Throws std::runtime_error when the
/// parameter has none of its values.
void lf_findAutoFolders(const std::filesystem::path& community, FolderList& folders);
/// Appends the folders of the lfolder parameters. Throws UserErrorException 243 when one doesn't exist.
void lf_findManualFolders(FolderList& folders);

}  // namespace hcr
