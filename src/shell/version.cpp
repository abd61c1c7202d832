#include "shell/version.h"

#include <fmt/format.h>

#include <charconv>
#include <regex>
#include <stdexcept>

#include "shell/log.h"

namespace hcr {
namespace {

i32 lf_versionNumber(const std::string& digits) {
    i32 value = 0;
    const char* end = digits.data() + digits.size();
    const auto [stop, error] = std::from_chars(digits.data(), end, value);
    if (error != std::errc() || stop != end) throw std::runtime_error("parse error in version string");
    return value;
}

}  // namespace

VersionData::VersionData(i32 majorNumber, i32 minorNumber, i32 patchNumber)
    : major(majorNumber), minor(minorNumber), patch(patchNumber) {}

VersionData::VersionData(const std::string& versionText) {
    if (versionText.empty()) return;
    // Longer texts are no versions, and the expression would walk them recursively.
    constexpr std::size_t kLongestVersion = 256;
    static const std::regex pattern(R"((\d+).(\d+).(\d+))");
    std::smatch match;
    try {
        if (versionText.size() > kLongestVersion || !std::regex_search(versionText, match, pattern)) {
            throw std::runtime_error("parse error in version string");
        }
        major = lf_versionNumber(match[1]);
        minor = lf_versionNumber(match[2]);
        patch = lf_versionNumber(match[3]);
    } catch (const std::exception& e) {
        gf_log(fmt::format("{} exception: {}", "VersionData", e.what()));
    }
}

std::string VersionData::text() const {
    return fmt::format("{}.{}.{}", major, minor, patch);
}

const VersionData& gf_programVersion() {
    static const VersionData version(HALCYRANE_VERSION);
    return version;
}

}  // namespace hcr
