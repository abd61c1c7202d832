#pragma once

#include <filesystem>
#include <string_view>
#include <system_error>

namespace hcr {

// What std::filesystem doesn't do alike on both systems. Any thread.

/// The full path, with the separators that the system's own calls want. Shared folders ("\\server\share") stay what
/// they are. Empty with `error` set when there is none.
std::filesystem::path gf_absolutePath(const std::filesystem::path& path, std::error_code& error);
/// Moves a file onto another one, which it replaces as a whole. Where a program that only looks at a file keeps others
/// from moving it, it is tried again for half a second.
void gf_moveOnto(const std::filesystem::path& from, const std::filesystem::path& to, std::error_code& error);
/// Writes a file anew. On a failure `error` has the system's reason, and what was written stays.
void gf_writeFile(const std::filesystem::path& path, std::string_view bytes, std::error_code& error);
/// Whether a write failed because there is no room left for the user's files.
bool gf_isDiskFull(const std::error_code& error);

}  // namespace hcr
