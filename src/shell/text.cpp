#include "shell/text.h"

#include <fmt/format.h>
#include <utf8cpp/utf8.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <stdexcept>
#include <utility>

#include "platform/code_page.h"

namespace hcr {
namespace {

[[noreturn]] void lf_failUtf8() {
    throw std::runtime_error("utf8_to_wide: invalid UTF-8");
}

[[noreturn]] void lf_failUtf16() {
    throw std::runtime_error("wide_to_utf8: invalid UTF-16");
}

/// Neither the control bytes nor those above U+007F, which steer a terminal too. A tab does no harm.
bool lf_isShown(char32_t c) {
    constexpr char32_t kDelete = 0x7F, kBehindControls = 0xA0;
    return c == U'\t' || (c >= U' ' && c < kDelete) || c >= kBehindControls;
}

void lf_checkUtf8(std::string_view text) {
    if (!gf_isUtf8(text)) lf_failUtf8();
}

/// Code units of 16 or of 32 bits to UTF-8, as their size tells.
template <typename Unit>
std::string lf_toUtf8(std::basic_string_view<Unit> text) {
    std::string out;
    out.reserve(text.size());
    try {
        if constexpr (sizeof(Unit) == sizeof(char16_t)) {
            utf8::utf16to8(text.begin(), text.end(), std::back_inserter(out));
        } else {
            utf8::utf32to8(text.begin(), text.end(), std::back_inserter(out));
        }
    } catch (const utf8::exception&) {
        lf_failUtf16();
    }
    return out;
}

// A path's own text is narrow or wide, as the system has it.
[[maybe_unused]] std::string lf_nativeToUtf8(const std::wstring& native) {
    return gf_wideToUtf8(native);
}

[[maybe_unused]] std::string lf_nativeToUtf8(const std::string& native) {
    lf_checkUtf8(native);
    return native;
}

constexpr std::array<std::pair<i32, const char*>, 49> kWinsockTexts = {{
    {10004, "Interrupted system call"},
    {10009, "Bad file number"},
    {10013, "Permission denied"},
    {10014, "Bad address"},
    {10022, "Invalid argument"},
    {10024, "Too many open sockets"},
    {10035, "Operation would block"},
    {10036, "Operation now in progress"},
    {10037, "Operation already in progress"},
    {10038, "Socket operation on non-socket"},
    {10039, "Destination address required"},
    {10040, "Messenger too long"},
    {10041, "Protocol wrong type for socket"},
    {10042, "Bad protocol option"},
    {10043, "Protocol not supported"},
    {10044, "Socket type not supported"},
    {10045, "Operation not supported on socket"},
    {10046, "Protocol family not supported"},
    {10047, "Address family not supported"},
    {10048, "Address already in use"},
    {10049, "Can't assign requested address"},
    {10050, "Network is down"},
    {10051, "Network is unreachable"},
    {10052, "Net connection reset"},
    {10053, "Software caused connection abort"},
    {10054, "Connection reset by peer"},
    {10055, "No buffer space available"},
    {10056, "Socket is already connected"},
    {10057, "Socket is not connected"},
    {10058, "Can't send numLines socket shutdown"},
    {10059, "Too many references, can't splice"},
    {10060, "Connection timed out"},
    {10061, "Connection refused"},
    {10062, "Too many levels of symbolic links"},
    {10063, "File name too long"},
    {10064, "Host is down"},
    {10065, "No route to host"},
    {10066, "Directory not empty"},
    {10067, "Too many processes"},
    {10068, "Too many users"},
    {10069, "Disc quota exceeded"},
    {10070, "Stale NFS file handle"},
    {10071, "Too many levels of remote in path"},
    {10091, "Network system is unavailable"},
    {10092, "Winsock version out of range"},
    {10093, "WSAStartup not yet called"},
    {10101, "Graceful shutdown in progress"},
    {11001, "Host not found"},
    {11004, "No host data of that type was found"},
}};

}  // namespace

std::wstring gf_utf8ToWide(std::string_view text) {
    lf_checkUtf8(text);
    std::wstring out;
    out.reserve(text.size());
    if constexpr (sizeof(wchar_t) == sizeof(char16_t)) {
        utf8::unchecked::utf8to16(text.begin(), text.end(), std::back_inserter(out));
    } else {
        utf8::unchecked::utf8to32(text.begin(), text.end(), std::back_inserter(out));
    }
    return out;
}

std::string gf_wideToUtf8(std::wstring_view text) {
    return lf_toUtf8(text);
}

std::string gf_utf16ToUtf8(std::u16string_view text) {
    return lf_toUtf8(text);
}

bool gf_isUtf8(std::string_view text) {
    return utf8::is_valid(text.begin(), text.end());
}

std::string gf_quoted(std::string_view text, std::size_t longest) {
    // Whoever quotes the same endless text again and again must not have all of it looked at each time.
    constexpr std::size_t kLongestCharacter = 4;
    if (text.size() > longest && text.size() - longest > kLongestCharacter) {
        text = text.substr(0, longest + kLongestCharacter);
    }
    std::string quoted;
    const char* const end = text.data() + text.size();
    const char* bad = utf8::find_invalid(text.data(), end);
    for (const char* at = text.data(); at != end;) {
        const char* const begin = at;
        bool isShown = false;
        if (at == bad) {
            bad = utf8::find_invalid(++at, end);
        } else {
            isShown = lf_isShown(utf8::unchecked::next(at));
        }
        if (static_cast<std::size_t>(at - text.data()) > longest) return quoted + "...";
        if (isShown) {
            quoted.append(begin, at);
        } else {
            quoted += '?';
        }
    }
    return quoted;
}

std::filesystem::path gf_pathFromUtf8(std::string_view text) {
    lf_checkUtf8(text);
    return std::filesystem::path(std::u8string(text.begin(), text.end()));
}

std::filesystem::path gf_pathFromAnySeparators(std::string_view text) {
    std::string native(text);
    constexpr char kSeparator = static_cast<char>(std::filesystem::path::preferred_separator);
    std::replace_if(
        native.begin(), native.end(), [](char c) { return c == '\\' || c == '/'; }, kSeparator);
    return gf_pathFromUtf8(native);
}

std::string gf_pathToUtf8(const std::filesystem::path& path) {
    return lf_nativeToUtf8(path.native());
}

std::string gf_shownPath(const std::filesystem::path& path) {
    try {
        return gf_pathToUtf8(path);
    } catch (const std::exception&) {
        return "(a name that is no text)";
    }
}

std::string gf_ansiToUtf8(std::string_view text) {
    if (auto strict = gf_decodeCodePage(text, true)) return *std::move(strict);
    return gf_decodeCodePage(text, false).value_or("");
}

std::string gf_errorText(const std::error_code& error) {
    const std::string text = error.message();
    return gf_isUtf8(text) ? text : gf_ansiToUtf8(text);
}

std::string_view gf_trim(std::string_view text) {
    constexpr const char* kBlanks = " \t\n\r";
    const std::size_t first = text.find_first_not_of(kBlanks);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

std::vector<std::string_view> gf_split(std::string_view text, char separator) {
    std::vector<std::string_view> pieces;
    std::size_t begin = 0;
    for (std::size_t end = text.find(separator); end != std::string_view::npos; end = text.find(separator, begin)) {
        pieces.push_back(text.substr(begin, end - begin));
        begin = end + 1;
    }
    pieces.push_back(text.substr(begin));
    return pieces;
}

std::vector<std::string_view> gf_splitCommas(std::string_view text) {
    return gf_split(text, ',');
}

std::string gf_upper(std::string_view text) {
    std::string out(text);
    for (char& c : out) {
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    }
    return out;
}

const char* gf_plural(u64 count) {
    return count == 1 ? "" : "s";
}

i32 gf_percentage(i64 part, i64 whole) {
    if (whole < 1) return 0;
    constexpr f64 kLargest = 2'147'483'647.0;
    const f64 percentage = std::round(100.0 * static_cast<f64>(part) / static_cast<f64>(whole));
    return static_cast<i32>(std::clamp(percentage, -kLargest, kLargest));
}

std::string gf_winsockMessage(i32 code) {
    const auto found = std::ranges::find(kWinsockTexts, code, &std::pair<i32, const char*>::first);
    return fmt::format("{} {}", code, found == kWinsockTexts.end() ? "Unknown errror code" : found->second);
}

}  // namespace hcr
