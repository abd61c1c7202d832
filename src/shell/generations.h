#pragma once

#include <filesystem>

namespace hcr {

/// Copies the file to the same name with "0" before its last dot. True when copied or when there is no file.
bool gf_save1GenerationOf(const std::filesystem::path& path);
/// Keeps up to three backups, with "0", "00" and "000" before the dot.
void gf_saveUpto3GenerationsOf(const std::filesystem::path& path);
/// Copies over an existing target if the source exists; failures are logged. True when copied or there is no source.
bool gf_copyIfExists(const std::filesystem::path& source, const std::filesystem::path& target);

/// Replaces `path` by the file `temporary` in one step, so that no reader ever sees half of it. False on failure,
/// which is logged; the temporary file is removed then.
bool gf_replaceFile(const std::filesystem::path& temporary, const std::filesystem::path& path);

}  // namespace hcr
