#include "platform/code_page.h"

#include <utf8cpp/utf8.h>

#include <iterator>

#include "platform/types.h"

namespace hcr {
namespace {

constexpr u8 kFirstSpecial = 0x80, kBehindSpecial = 0xA0;
constexpr char16_t kReplacement = 0xFFFD;

/// Code points of the bytes 80 to 9F in Windows-1252; 0 where the byte has none. All other bytes are their own.
constexpr char16_t kSpecial[] = {
    0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0,      0x017D, 0,      0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178,
};
static_assert(std::size(kSpecial) == kBehindSpecial - kFirstSpecial);

}  // namespace

std::string gf_narrowPath(const std::filesystem::path& path) {
    return path.native();
}

std::optional<std::string> gf_decodeCodePage(std::string_view bytes, bool strict) {
    std::string out;
    out.reserve(bytes.size());
    for (const char byte : bytes) {
        const auto value = static_cast<u8>(byte);
        const bool isSpecial = value >= kFirstSpecial && value < kBehindSpecial;
        const char16_t c = isSpecial ? kSpecial[value - kFirstSpecial] : value;
        if (isSpecial && c == 0 && strict) return std::nullopt;
        utf8::append(isSpecial && c == 0 ? kReplacement : c, std::back_inserter(out));
    }
    return out;
}

}  // namespace hcr
