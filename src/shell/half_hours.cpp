#include "shell/half_hours.h"

#include <fmt/format.h>

#include <charconv>
#include <vector>

#include "platform/types.h"
#include "shell/log.h"
#include "shell/text.h"

namespace hcr {
namespace {

constexpr std::size_t kHalfHours = HalfHours().size();

std::string_view lf_trimSpace(std::string_view text) {
    constexpr const char* kSpace = " \t\n\v\f\r";
    const std::size_t first = text.find_first_not_of(kSpace);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(kSpace) - first + 1);
}

/// The half hour that a piece begins with; what stands behind its digits doesn't count.
std::optional<u32> lf_parseHalfHour(std::string_view piece, std::string_view wholeText) {
    const std::string_view trimmed = lf_trimSpace(piece);
    u32 value = 0;
    const auto result = std::from_chars(trimmed.data(), trimmed.data() + trimmed.size(), value);
    if (result.ec == std::errc{} && value < kHalfHours) return value;
    gf_logError(fmt::format("{} invalid hour '{}' in {}", "operator ()", trimmed, wholeText));
    return std::nullopt;
}

HalfHours lf_rangeOf(const std::vector<u32>& numbers, std::string_view text) {
    HalfHours bits;
    if (numbers.empty()) {
        gf_logError(fmt::format("{} invalid range format in {}", "gf_hours2bitset", text));
    } else if (numbers.front() > numbers.back()) {
        gf_logError(fmt::format("{} descending range not allowed ({}:{} in {})", "gf_hours2bitset", numbers.front(),
                                numbers.back(), text));
    } else {
        for (u32 n = numbers.front(); n <= numbers.back(); ++n) bits.set(n);
    }
    return bits;
}

HalfHours lf_parseRange(std::string_view text) {
    std::vector<u32> numbers;
    bool isWrong = false;
    for (const std::string_view piece : gf_split(text, ':')) {
        if (numbers.size() == 2) {
            gf_logError(fmt::format("{} more than one colon char in: {}", "gf_hours2bitset", text));
            return {};
        }
        if (const auto number = lf_parseHalfHour(piece, text)) {
            numbers.push_back(*number);
        } else {
            isWrong = true;
        }
    }
    return isWrong ? HalfHours() : lf_rangeOf(numbers, text);
}

}  // namespace

HalfHours gf_hours2bitset(std::string_view text) {
    if (text.find(':') != std::string_view::npos) return lf_parseRange(text);
    HalfHours bits;
    if (text.empty()) return bits;
    for (const std::string_view piece : gf_splitCommas(text)) {
        if (const auto number = lf_parseHalfHour(piece, text)) bits.set(*number);
    }
    return bits;
}

std::optional<std::string> gf_bitset2hours(const HalfHours& bits) {
    if (bits.none()) return std::nullopt;
    std::size_t first = 0;
    while (!bits[first]) ++first;
    const std::size_t last = first + bits.count() - 1;
    for (std::size_t n = first; n <= last; ++n) {
        if (!bits[n]) return std::nullopt;
    }
    return first == last ? fmt::format("{}", first) : fmt::format("{}:{}", first, last);
}

}  // namespace hcr
