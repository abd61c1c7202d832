#include "feed/field_text.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstring>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

#include "shell/text.h"

namespace hcr {
namespace {

constexpr std::ptrdiff_t kExactDigits = 15;
constexpr std::array<f64, kExactDigits + 1> kPowers{1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                    1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};

// A number without an exponent and with few enough digits that dividing its digits by a power of ten rounds as it
// should; nothing for any other text. Nearly all numbers of the feed are such, and from_chars takes longer.
std::optional<f64> lf_plainNumber(const char* at, const char* end) {
    u64 digits = 0;
    const auto takeDigits = [&] {
        const char* const begin = at;
        for (; at != end && *at >= '0' && *at <= '9'; ++at) digits = digits * 10 + static_cast<u64>(*at - '0');
        return at - begin;
    };
    const bool negative = at != end && *at == '-';
    if (negative) ++at;
    const std::ptrdiff_t whole = takeDigits();
    if (whole == 0) return {};
    std::ptrdiff_t decimals = 0;
    if (at != end && *at == '.') {
        ++at;
        decimals = takeDigits();
    }
    const bool exponent = at != end && (*at == 'e' || *at == 'E');
    if (exponent || whole + decimals > kExactDigits) return {};
    f64 value = static_cast<f64>(static_cast<i64>(digits));  // as signed it converts faster
    if (decimals != 0) value /= kPowers[static_cast<std::size_t>(decimals)];
    return negative ? -value : value;
}

#ifdef __SSE2__
constexpr std::size_t kShortNumber = 15;                   // characters, sign and point included
constexpr std::size_t kReadAhead = 1 + kShortNumber + 16;  // bytes from its start that are looked at
constexpr std::size_t kWordDigits = sizeof(u64);

// The value of up to eight digits, without a decision that depends on their number: the first digit stands in the
// lowest byte; neighbours are added in pairs, then pairs of them, then the two halves.
u64 lf_digits(const char* at, unsigned count) {
    u64 word = 0;
    std::memcpy(&word, at, sizeof word);
    const unsigned unused = static_cast<unsigned>(kWordDigits) - count;
    word = ((word - 0x3030303030303030) << (4 * unused)) << (4 * unused);  // in two steps: a shift by 64 isn't defined
    word = word * 10 + (word >> 8);
    return (((word & 0x000000FF000000FF) * (100 + (1000000ULL << 32))) +
            (((word >> 16) & 0x000000FF000000FF) * (1 + (10000ULL << 32)))) >>
           32;
}

// The same as lf_plainNumber for most numbers; every length of their parts takes the same road, since a wrong guess of
// the processor costs more than all of it. kReadAhead bytes must be readable.
std::optional<f64> lf_shortNumber(const char* at, std::size_t length) {
    static constexpr std::array<u64, kWordDigits + 1> kWholePowers{1,      10,      100,      1000,     10000,
                                                                   100000, 1000000, 10000000, 100000000};
    const bool negative = *at == '-';
    at += negative;
    length -= negative;
    __m128i bytes;
    std::memcpy(&bytes, at, sizeof bytes);
    const __m128i values = _mm_sub_epi8(bytes, _mm_set1_epi8('0'));
    const __m128i isDigit = _mm_cmpeq_epi8(_mm_min_epu8(values, _mm_set1_epi8(9)), values);
    const u32 digits = static_cast<u32>(_mm_movemask_epi8(isDigit)) & ((1U << length) - 1);
    const unsigned whole = static_cast<unsigned>(std::countr_one(digits));
    const bool point = whole < length && at[whole] == '.';
    const unsigned decimals = point ? static_cast<unsigned>(std::countr_one(digits >> (whole + 1))) : 0;
    const bool isAll = whole + point + decimals == length;
    if (whole == 0 || whole > kWordDigits || decimals > kWordDigits || !isAll) return {};
    const u64 number = lf_digits(at, whole) * kWholePowers[decimals] + lf_digits(at + whole + point, decimals);
    const f64 value = static_cast<f64>(static_cast<i64>(number)) / kPowers[decimals];
    return negative ? -value : value;
}
#endif

constexpr std::size_t kBlock = 64;

// A bit for each of up to 64 characters, the first in the lowest: set for a comma.
u64 lf_commas(const char* characters, std::size_t count) {
    u64 commas = 0;
    for (std::size_t at = 0; at < count; ++at) commas |= u64{characters[at] == ','} << at;
    return commas;
}

#ifdef __SSE2__
// The same for a whole block.
u64 lf_commas(const char* characters) {
    constexpr std::size_t kVector = sizeof(__m128i);
    const __m128i comma = _mm_set1_epi8(',');
    u64 commas = 0;
    for (std::size_t at = 0; at < kBlock; at += kVector) {
        __m128i bytes;
        std::memcpy(&bytes, characters + at, sizeof bytes);
        commas |= u64{static_cast<u32>(_mm_movemask_epi8(_mm_cmpeq_epi8(bytes, comma)))} << at;
    }
    return commas;
}

// The commas of the block at `at`; the last one is read as the 64 characters up to the end.
u64 lf_commasAt(std::string_view text, std::size_t at) {
    const std::size_t left = text.size() - at;
    if (left >= kBlock) return lf_commas(text.data() + at);
    if (text.size() < kBlock) return lf_commas(text.data() + at, left);
    return lf_commas(text.data() + text.size() - kBlock) >> (kBlock - left);
}
#else
u64 lf_commasAt(std::string_view text, std::size_t at) {
    return lf_commas(text.data() + at, std::min(kBlock, text.size() - at));
}
#endif

bool lf_isControl(char c) {
    constexpr char kDelete = 0x7F;
    return static_cast<u8>(c) < ' ' || c == kDelete;
}

bool lf_holdsUpperControls(std::string_view text) {
    for (std::size_t at = text.find('\xC2'); at != std::string_view::npos; at = text.find('\xC2', at + 1)) {
        if (at + 1 < text.size() && static_cast<u8>(text[at + 1]) <= 0x9F) return true;
    }
    return !gf_isUtf8(text);
}

}  // namespace

std::optional<f64> gf_fieldNumber(std::string_view field, [[maybe_unused]] const char* textEnd) {
#ifdef __SSE2__
    const bool isShort = !field.empty() && field.size() <= kShortNumber;
    if (isShort && static_cast<std::size_t>(textEnd - field.data()) >= kReadAhead) {
        if (const std::optional<f64> number = lf_shortNumber(field.data(), field.size())) return number;
    }
#endif
    const char* const end = field.data() + field.size();
    if (const std::optional<f64> plain = lf_plainNumber(field.data(), end)) return plain;
    f64 value = 0;
    const auto result = std::from_chars(field.data(), end, value);
    if (result.ec != std::errc() || !std::isfinite(value)) return {};
    return value;
}

bool gf_holdsControls(std::string_view text) {
#ifdef __SSE2__
    constexpr std::size_t kVector = sizeof(__m128i);
    if (text.size() >= kVector) {
        __m128i found = _mm_setzero_si128(), high = found;
        const auto look = [&](std::size_t at) {
            __m128i bytes;
            std::memcpy(&bytes, text.data() + at, sizeof bytes);
            const __m128i low = _mm_cmpeq_epi8(_mm_min_epu8(bytes, _mm_set1_epi8(' ' - 1)), bytes);
            high = _mm_or_si128(high, bytes);
            found = _mm_or_si128(found, _mm_or_si128(low, _mm_cmpeq_epi8(bytes, _mm_set1_epi8(0x7F))));
        };
        for (std::size_t at = 0; at + kVector < text.size(); at += kVector) look(at);
        look(text.size() - kVector);  // some bytes again, which costs less than a loop for the rest
        if (_mm_movemask_epi8(found) != 0) return true;
        return _mm_movemask_epi8(high) != 0 && lf_holdsUpperControls(text);
    }
#endif
    u8 high = 0;
    for (const char c : text) {
        if (lf_isControl(c)) return true;
        high |= static_cast<u8>(c);
    }
    return (high & 0x80) != 0 && lf_holdsUpperControls(text);
}

// Finds the commas of 64 characters at once, without a decision that depends on them: a search for each one, a comma
// every five characters, costs three times as much. What stands behind the last field that is used isn't looked at.
void gf_splitFields(std::string_view text, std::size_t highestCount, std::vector<std::string_view>& fields) {
    const char* const data = text.data();
    fields.resize(highestCount);
    std::string_view* field = fields.data();
    const std::string_view* const end = field + highestCount;
    std::size_t begin = 0;
    for (std::size_t at = 0; at < text.size() && field != end; at += kBlock) {
        for (u64 commas = lf_commasAt(text, at); commas != 0 && field != end; commas &= commas - 1) {
            const std::size_t comma = at + static_cast<std::size_t>(std::countr_zero(commas));
            *field++ = std::string_view(data + begin, comma - begin);
            begin = comma + 1;
        }
    }
    if (field != end) *field++ = text.substr(begin);
    fields.resize(static_cast<std::size_t>(field - fields.data()));
}

}  // namespace hcr
