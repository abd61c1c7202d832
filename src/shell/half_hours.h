#pragma once

#include <bitset>
#include <optional>
#include <string>
#include <string_view>

namespace hcr {

/// Bit n is half hour n of a day, 0..47.
using HalfHours = std::bitset<48>;

HalfHours gf_hours2bitset(std::string_view text);
/// "7" or "3:5" for one contiguous run, else nothing.
std::optional<std::string> gf_bitset2hours(const HalfHours& bits);

}  // namespace hcr
