#include "platform/win32/wide_text.h"

#include <climits>

#include "platform/win32/windows_header.h"

namespace hcr {

std::optional<std::wstring> gf_systemDecode(unsigned codePage, unsigned long flags, std::string_view bytes) {
    if (bytes.empty()) return std::wstring();
    if (bytes.size() > INT_MAX) return std::nullopt;
    const int size = static_cast<int>(bytes.size());
    const int units = MultiByteToWideChar(codePage, flags, bytes.data(), size, nullptr, 0);
    if (units <= 0) return std::nullopt;
    std::wstring wide(static_cast<std::size_t>(units), L'\0');
    if (MultiByteToWideChar(codePage, flags, bytes.data(), size, wide.data(), units) != units) return std::nullopt;
    return wide;
}

std::optional<std::wstring> gf_systemUtf8ToWide(std::string_view text) {
    return gf_systemDecode(CP_UTF8, MB_ERR_INVALID_CHARS, text);
}

std::optional<std::string> gf_systemWideToUtf8(std::wstring_view text) {
    if (text.empty()) return std::string();
    if (text.size() > INT_MAX) return std::nullopt;
    const int units = static_cast<int>(text.size());
    const DWORD flags = WC_ERR_INVALID_CHARS;
    const int size = WideCharToMultiByte(CP_UTF8, flags, text.data(), units, nullptr, 0, nullptr, nullptr);
    if (size <= 0) return std::nullopt;
    std::string utf8(static_cast<std::size_t>(size), '\0');
    WideCharToMultiByte(CP_UTF8, flags, text.data(), units, utf8.data(), size, nullptr, nullptr);
    return utf8;
}

}  // namespace hcr
