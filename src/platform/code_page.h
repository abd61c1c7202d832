#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace hcr {

/// Text of a path in the narrow code page that the simulator's library expects. Any thread.
std::string gf_narrowPath(const std::filesystem::path& path);
/// Decodes bytes of the system's code page (Windows-1252 where there is none) to UTF-8. Strict: nothing when a byte
/// has no meaning; tolerant: such a byte becomes U+FFFD. Any thread.
std::optional<std::string> gf_decodeCodePage(std::string_view bytes, bool strict);

}  // namespace hcr
