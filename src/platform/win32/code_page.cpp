#include "platform/code_page.h"

#include <climits>

#include "platform/win32/wide_text.h"
#include "platform/win32/windows_header.h"

namespace hcr {
namespace {

/// What the code page has no sign for comes back as "?"; nothing then, when it must be exact.
std::optional<std::string> lf_encode(const std::wstring& wide, bool exact) {
    if (wide.size() > INT_MAX) return std::nullopt;
    const int units = static_cast<int>(wide.size());
    // UTF-8 as the code page has a sign for everything, and allows neither flags nor questions.
    if (GetACP() == CP_UTF8) return gf_systemWideToUtf8(wide);
    const DWORD flags = exact ? WC_NO_BEST_FIT_CHARS : 0;
    BOOL isReplaced = FALSE;
    const int size = WideCharToMultiByte(CP_ACP, flags, wide.data(), units, nullptr, 0, nullptr, &isReplaced);
    if (size <= 0 || (exact && isReplaced != FALSE)) return std::nullopt;
    std::string narrow(static_cast<std::size_t>(size), '\0');
    WideCharToMultiByte(CP_ACP, flags, wide.data(), units, narrow.data(), size, nullptr, nullptr);
    return narrow;
}

}  // namespace

std::optional<std::string> gf_decodeCodePage(std::string_view bytes, bool strict) {
    const auto wide = gf_systemDecode(CP_ACP, strict ? MB_ERR_INVALID_CHARS : 0, bytes);
    return wide ? gf_systemWideToUtf8(*wide) : std::nullopt;
}

std::string gf_narrowPath(const std::filesystem::path& path) {
    const std::wstring& wide = path.native();
    if (auto narrow = lf_encode(wide, true)) return *std::move(narrow);
    // The short form of the path holds plain characters only, where the volume keeps short forms.
    std::wstring shortForm(GetShortPathNameW(wide.c_str(), nullptr, 0), L'\0');
    const DWORD length = GetShortPathNameW(wide.c_str(), shortForm.data(), static_cast<DWORD>(shortForm.size()));
    if (length > 0 && length < shortForm.size()) {
        shortForm.resize(length);
        if (auto narrow = lf_encode(shortForm, true)) return *std::move(narrow);
    }
    return lf_encode(wide, false).value_or("");
}

}  // namespace hcr
