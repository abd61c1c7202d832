#pragma once

#include <filesystem>

namespace hcr {

/// Keeps three generations of the file and opens it anew, with its first line. Throws std::runtime_error
/// "Failed to write file ", the path, its folder, the reason and what to do. `path` is relative to the working folder.
/// Any thread.
void gf_openLog(const std::filesystem::path& path = "Log.txt");

}  // namespace hcr
