#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace hcr {

// Strict conversions at the system's border; nothing when the text is invalid.
std::optional<std::string> gf_systemWideToUtf8(std::wstring_view text);
std::optional<std::wstring> gf_systemUtf8ToWide(std::string_view text);

/// Bytes of any code page to wide; `flags` are those of MultiByteToWideChar.
std::optional<std::wstring> gf_systemDecode(unsigned codePage, unsigned long flags, std::string_view bytes);

}  // namespace hcr
