#pragma once

#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string_view>

#include "shell/version.h"

namespace hcr {

/// Compares versions.json of the data server with what is held here and fetches what is newer. False when a new
/// program version was fetched and the program must end. Run thread, at the start of a run that is no restart.
/// Without a data server nothing is asked for. Throws std::runtime_error, which names the server and the likely reason,
/// when it sends something else than a list of versions.
bool gf_updateData();

/// The version of one entry of versions.json; nothing when there is no such entry. Throws what the parser throws, or
/// std::out_of_range, when one of its three integers is missing or is none that a version can hold.
std::optional<VersionData> gf_webVersion(const nlohmann::json& versions, std::string_view key);

}  // namespace hcr
