#pragma once

#include <filesystem>

namespace hcr {

/// The user's roaming application data: %APPDATA%, or $XDG_CONFIG_HOME (default ~/.config).
std::filesystem::path gf_roamingFolder();
/// The user's local application data: %LOCALAPPDATA%, or $XDG_DATA_HOME (default ~/.local/share).
std::filesystem::path gf_localFolder();
/// Takes these folders for the two above, empty ones for the system's again; for tests. No other thread may run.
void gf_useUserFolders(const std::filesystem::path& roaming, const std::filesystem::path& local);

}  // namespace hcr
