#pragma once

#include <cstddef>
#include <cstring>
#include <optional>
#include <string_view>
#include <type_traits>
#include <vector>

#include "platform/types.h"

namespace hcr {

// The texts between the commas of a traffic line. Every line takes this road, so nothing here allocates but the first
// split. Any thread.

/// The bytes of a text of up to eight, for comparing short texts as one number; 0 for an empty or a longer one. Texts
/// of the feed hold no NUL that would make two of them look alike: such a text would be none of those looked for.
constexpr u64 gf_shortText(std::string_view text) {
    u64 word = 0;
    if (text.size() > sizeof word) return 0;
    if (!std::is_constant_evaluated() && text.size() >= sizeof(u32)) {  // two halves that may overlap, and no loop
        u32 low = 0, high = 0;
        std::memcpy(&low, text.data(), sizeof low);
        std::memcpy(&high, text.data() + text.size() - sizeof high, sizeof high);
        return low | u64{high} << (8 * (text.size() - sizeof high));
    }
    for (std::size_t i = 0; i < text.size(); ++i) word |= u64{static_cast<unsigned char>(text[i])} << (8 * i);
    return word;
}

/// A field of text, empty for "null".
inline std::string_view gf_fieldText(std::string_view field) {
    return field.size() == 4 && gf_shortText(field) == gf_shortText("null") ? std::string_view{} : field;
}

/// The number at the start of a field, with no blank and no "+" before it; nothing when there is none, or it isn't
/// finite. `textEnd` is where the line ends that holds the field: bytes up to there are looked at.
std::optional<f64> gf_fieldNumber(std::string_view field, const char* textEnd);

/// Whether a control character stands in the text, those of the upper range (U+0080 to U+009F) too, or bytes that are
/// no UTF-8: a terminal may be steered by either.
bool gf_holdsControls(std::string_view text);

/// The fields of a text between its commas, as views into it; at most `highestCount`, what follows is left out.
void gf_splitFields(std::string_view text, std::size_t highestCount, std::vector<std::string_view>& fields);

}  // namespace hcr
