#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace hcr {

/// Where what is learned at the airport of this file is kept, relative to the working folder; empty when there is no
/// such place. Any thread, like the one below.
std::filesystem::path gf_learnedPath(std::string_view airportPath, std::string_view publisher);
/// A text of a path as the name of a folder: "%XX" decoded, what no file system takes turned into blanks.
std::string gf_cleanedName(std::string_view text);

}  // namespace hcr
