#pragma once

#include <compare>
#include <string>

#include "platform/types.h"

namespace hcr {

/// The program's name as people read it.
inline constexpr const char* kProgramName = "Halcyrane";

/// A version of the program or of its data.
struct VersionData {
    i32 major = 0, minor = 0, patch = 0;

    VersionData() = default;
    VersionData(i32 majorNumber, i32 minorNumber, i32 patchNumber);
    /// From "11.10.5"; an empty text gives 0.0.0, a number that can't be read is logged.
    explicit VersionData(const std::string& text);
    std::string text() const;
    auto operator<=>(const VersionData&) const = default;
};

/// The program's own. Any thread.
const VersionData& gf_programVersion();

}  // namespace hcr
