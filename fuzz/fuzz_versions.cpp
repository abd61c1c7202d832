#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <exception>
#include <nlohmann/json.hpp>
#include <optional>

#include "shell/data_update.h"

// A version file of any content gives versions of numbers that aren't negative, or an exception.

namespace {

void lf_readEntry(const nlohmann::json& versions, const char* key) {
    try {
        const std::optional<hcr::VersionData> version = hcr::gf_webVersion(versions, key);
        if (version && (version->major < 0 || version->minor < 0 || version->patch < 0)) std::abort();
    } catch (const std::exception&) {
        // a damaged entry
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    nlohmann::json versions;
    try {
        versions = nlohmann::json::parse(data, data + size);
    } catch (const nlohmann::json::exception&) {
        return 0;
    }
    for (const char* key : {"msfs", "simaddon", "airports", "aig", "liveries", "addons", "dbase"}) {
        lf_readEntry(versions, key);
    }
    return 0;
}
