#pragma once

#include <array>
#include <filesystem>
#include <istream>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>

#include "platform/types.h"

namespace hcr {

// Enciphered data files: a header of 24 bytes, then chunks of 4096 bytes of plain text with 17 bytes of authentication
// each (the last one may be shorter, and says that it is the last). Memory use doesn't depend on the file's size. Any
// thread.

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
/// The two without files; they throw std::runtime_error "Invalid header or key" and "Decryption failed".
/// gf_decipher tells whether `in` is whole: the chunk that says that it is the last one came, and nothing behind it.
bool gf_decipher(std::istream& in, std::ostream& out, const CipherKey& key);
void gf_encipher(std::istream& in, std::ostream& out, const CipherKey& key);

/// What is wrong with an enciphered data file, read to its end; empty when it is whole. Gives up when a stop of the run
/// is asked for.
std::string gf_dataFileFault(const std::filesystem::path& path, const CipherKey& key = gf_cipherKey());
/// Why gf_streamDecrypt failed for a data file, with the way out.
std::string gf_decryptFaultText(const std::filesystem::path& path);

/// Removes an existing file; a failure is logged.
void gf_removeIfPresent(const std::filesystem::path& path);

}  // namespace hcr
