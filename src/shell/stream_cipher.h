#pragma once

#include <array>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "platform/types.h"

namespace hcr {

using CipherKey = std::array<u8, 32>;

/// The key of this build.
const CipherKey& gf_cipherKey();
/// A key from 64 hexadecimal digits, nothing if the text isn't that.
std::optional<CipherKey> gf_cipherKeyFromHex(std::string_view hex);

/// Turns an enciphered data file into its plain form. A failure is logged, leaves no target, and gives false.
bool gf_streamDecrypt(const std::filesystem::path& source, const std::filesystem::path& target,
                      const CipherKey& key = gf_cipherKey());
/// The other direction, for people who publish data. Same failures.
bool gf_streamEncrypt(const std::filesystem::path& source, const std::filesystem::path& target,
                      const CipherKey& key = gf_cipherKey());
/// Removes an existing file; a failure is logged.
void gf_removeIfPresent(const std::filesystem::path& path);

}  // namespace hcr
