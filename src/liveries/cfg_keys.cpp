#include "liveries/cfg_keys.h"

#include <algorithm>
#include <array>

namespace hcr {
namespace {

constexpr std::string_view kNoNumber = "10000";

struct KeyName {
    std::string_view name;
    CfgKey key;
};

constexpr KeyName kKeyNames[] = {
    {"title", CfgKey::title},
    {"texture", CfgKey::texture},
    {"base_container", CfgKey::baseContainer},
    {"icao_type_designator", CfgKey::typeDesignator},
    {"atc_id", CfgKey::atcId},
    {"icao_airline", CfgKey::airline},
    {"atc_parking_types", CfgKey::parkingTypes},
};

char lf_lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool lf_isBlank(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

std::string_view lf_trimLeft(std::string_view text) {
    while (!text.empty() && lf_isBlank(text.front())) text.remove_prefix(1);
    return text;
}

/// `name` in lower case.
bool lf_startsWith(std::string_view text, std::string_view name) {
    return text.size() >= name.size() &&
           std::equal(name.begin(), name.end(), text.begin(), [](char a, char b) { return a == lf_lower(b); });
}

/// Nearly all lines are of other keys and end here, most of them at their first letter.
const KeyName* lf_findName(std::string_view text) {
    if (text.empty()) return nullptr;
    const char first = lf_lower(text.front());
    for (const KeyName& candidate : kKeyNames) {
        if (candidate.name.front() == first && lf_startsWith(text, candidate.name)) return &candidate;
    }
    return nullptr;
}

constexpr std::size_t kBlock = 64, kMark = 4;

/// The first of kBlock places where four letters out of "atc_id", "atc_parking_types", "icao_airline", "title" or
/// "texture" begin, in any case. All of a file goes through this loop. It has no branches and calls nothing, so that
/// the compiler makes it look at many places at once.
std::size_t lf_firstMark(const char* block) {
    constexpr u8 kLowerBit = 0x20;
    const auto is = [](u8 letter, char wanted) { return static_cast<u8>(letter == static_cast<u8>(wanted)); };
    std::array<char, kBlock> marks;
    u8 any = 0;
    for (std::size_t i = 0; i < kBlock; ++i) {
        const auto a = static_cast<u8>(block[i] | kLowerBit), b = static_cast<u8>(block[i + 1]);
        const auto c = static_cast<u8>(block[i + 2] | kLowerBit), d = static_cast<u8>(block[i + 3] | kLowerBit);
        const u8 atc = is(a, 'c') & ((is(c, 'i') & is(d, 'd')) | (is(c, 'p') & is(d, 'a')));
        const u8 airline = is(a, 'o') & is(c, 'a') & is(d, 'i');
        const u8 title = (is(b, 'i') | is(b, 'I')) & is(c, 't') & is(d, 'l');
        const u8 texture = (is(b, 'e') | is(b, 'E')) & is(c, 'x') & is(d, 't');
        const u8 mark = (is(b, '_') & (atc | airline)) | (is(a, 't') & (title | texture));
        marks[i] = static_cast<char>(mark);
        any |= mark;
    }
    return any == 0 ? std::string_view::npos : std::string_view(marks.data(), kBlock).find('\1');
}

std::size_t lf_nextMark(std::string_view text, std::size_t from) {
    for (; from + kBlock + kMark <= text.size(); from += kBlock) {
        if (const std::size_t mark = lf_firstMark(text.data() + from); mark != std::string_view::npos)
            return from + mark;
    }
    if (from >= text.size()) return std::string_view::npos;
    std::array<char, 2 * kBlock> tail{};
    text.substr(from).copy(tail.data(), kBlock + kMark);
    const std::size_t mark = lf_firstMark(tail.data());
    return mark == std::string_view::npos ? mark : from + mark;
}

/// Empty when a quote has no partner.
std::string_view lf_withoutQuotes(std::string_view value) {
    const std::size_t first = value.find('"');
    if (first == std::string_view::npos) return value;
    const std::size_t second = value.find('"', first + 1);
    return second == std::string_view::npos ? std::string_view() : value.substr(first + 1, second - first - 1);
}

}  // namespace

std::string_view gf_trimCfg(std::string_view text) {
    text = lf_trimLeft(text);
    while (!text.empty() && lf_isBlank(text.back())) text.remove_suffix(1);
    return text;
}

bool gf_holdsCfgBlank(std::string_view text) {
    return std::any_of(text.begin(), text.end(), lf_isBlank);
}

CfgLine gf_cfgLine(std::string_view line) {
    line = lf_trimLeft(line);
    const KeyName* name = lf_findName(line);
    if (name == nullptr) return {};
    line = lf_trimLeft(line.substr(name->name.size()));
    if (!line.starts_with('=')) return {};
    const std::string_view whole = gf_trimCfg(line.substr(1));
    // A lone carriage return inside ends the line for some editors and not for others: such a line means nothing.
    if (whole.empty() || whole.find('\r') != std::string_view::npos) return {};
    const std::string_view value = lf_withoutQuotes(whole);
    if (value.empty() && name->key != CfgKey::airline) return {};
    return {name->key, value};
}

bool gf_endsInCfgValue(std::string_view lineStart) {
    const std::size_t equals = lineStart.find('=');
    if (equals == std::string_view::npos) return false;
    const std::size_t first = lineStart.find_first_not_of(" \t\v\f\r/;");
    return first < equals;
}

bool gf_isCfgComment(std::string_view line) {
    return lf_trimLeft(line).starts_with("//");
}

bool CfgKeyLines::next(std::string_view& line) {
    const std::size_t mark = lf_nextMark(text, from);
    if (mark == std::string_view::npos) return false;
    const std::size_t before = text.substr(from, mark - from).rfind('\n');
    const std::size_t begin = before == std::string_view::npos ? from : from + before + 1;
    const std::size_t end = std::min(text.find('\n', mark), text.size());
    line = text.substr(begin, end - begin);
    if (line.ends_with('\r')) line.remove_suffix(1);
    from = std::min(end + 1, text.size());
    return true;
}

FltSimHeader gf_fltSimHeader(std::string_view line) {
    constexpr std::string_view kStart = "[fltsim.", kStartCapitals = "[FLTSIM.";
    if (gf_isCfgComment(line)) return {};
    const std::string_view whole = gf_trimCfg(line);
    if (lf_startsWith(whole, kStart) && whole.ends_with(']')) {
        const std::string_view number = whole.substr(kStart.size(), whole.size() - kStart.size() - 1);
        const bool isNumber =
            !number.empty() && std::all_of(number.begin(), number.end(), [](char c) { return c >= '0' && c <= '9'; });
        if (isNumber) return {true, number};
    }
    const bool isHeader =
        line.find(kStart) != std::string_view::npos || line.find(kStartCapitals) != std::string_view::npos;
    return {isHeader, isHeader ? kNoNumber : std::string_view()};
}

}  // namespace hcr
