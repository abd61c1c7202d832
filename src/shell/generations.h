#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <system_error>

namespace hcr {

/// Copies the file to the same name with "0" before its last dot. True when copied or when there is no file.
bool gf_save1GenerationOf(const std::filesystem::path& path);
/// Keeps up to three backups, with "0", "00" and "000" before the dot.
void gf_saveUpto3GenerationsOf(const std::filesystem::path& path);
/// Copies over an existing target if the source exists; failures are logged. True when copied or there is no source.
bool gf_copyIfExists(const std::filesystem::path& source, const std::filesystem::path& target);

/// Writes a file anew; on a failure `error` has the system's reason.
using MakeFile = std::function<void(const std::filesystem::path& file, std::error_code& error)>;
/// Lets `make` write a file beside `path` and puts that in its place in one step, so that no reader ever sees half of
/// it. False with the reason in `error`: the old file is then as it was and nothing lies beside it, no more than when
/// `make` throws.
bool gf_makeInPlace(const std::filesystem::path& path, const MakeFile& make, std::error_code& error);
/// The same for bytes that are there.
bool gf_writeInPlace(const std::filesystem::path& path, std::string_view bytes, std::error_code& error);
/// The system's reason for a failed write; of a full disk it tells what helps.
std::string gf_writeFaultText(const std::error_code& error);
/// Logs that the file couldn't be written and why; a full disk stands in the message line as well.
void gf_tellWriteFault(const std::filesystem::path& path, const std::error_code& error);

}  // namespace hcr
