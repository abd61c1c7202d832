#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "platform/types.h"

namespace hcr {

// Strict conversions; they throw std::runtime_error "utf8_to_wide: invalid UTF-8" or "wide_to_utf8: invalid UTF-16".
// Wide texts are UTF-16 where wchar_t has 16 bits, else UTF-32.
std::wstring gf_utf8ToWide(std::string_view text);
std::string gf_wideToUtf8(std::wstring_view text);
/// UTF-16 code units to UTF-8, whatever the size of wchar_t. Throws like gf_wideToUtf8.
std::string gf_utf16ToUtf8(std::u16string_view text);
/// Whether the text is whole, valid UTF-8.
bool gf_isUtf8(std::string_view text);
/// Between a path and its UTF-8; throws std::runtime_error for what isn't valid.
std::filesystem::path gf_pathFromUtf8(std::string_view text);
/// The same for paths that people and the simulator's files write: a backslash separates folders on every system.
std::filesystem::path gf_pathFromAnySeparators(std::string_view text);
std::string gf_pathToUtf8(const std::filesystem::path& path);
/// For messages: gf_pathToUtf8, but a name that is no valid text gives a stand-in instead of an exception.
std::string gf_shownPath(const std::filesystem::path& path);
/// Bytes of the system's code page: strict, else tolerant, else empty.
std::string gf_ansiToUtf8(std::string_view text);

/// A text from outside as the log may hold it: at most `longest` bytes of it, cut between two characters, then "...".
/// Control bytes, which would break lines or steer a terminal, and what is no UTF-8 stand in it as '?'.
std::string gf_quoted(std::string_view text, std::size_t longest = 200);

/// The system's words for an error as UTF-8; it may give them in the user's language and code page.
std::string gf_errorText(const std::error_code& error);

/// Without leading and trailing blanks, tabs, line feeds and carriage returns.
std::string_view gf_trim(std::string_view text);
/// Split at every comma (every `separator`), untrimmed; "" gives one empty piece.
std::vector<std::string_view> gf_splitCommas(std::string_view text);
/// The same with another separator.
std::vector<std::string_view> gf_split(std::string_view text, char separator);
/// ASCII upper case.
std::string gf_upper(std::string_view text);
/// "s" unless the count is 1.
const char* gf_plural(u64 count);
/// 100 * part / whole to the nearest integer, 0 when whole is below 1.
i32 gf_percentage(i64 part, i64 whole);
/// The code, a blank, and its text; codes are Winsock's on every system.
std::string gf_winsockMessage(i32 code);

}  // namespace hcr
