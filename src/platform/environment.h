#pragma once

#include <optional>
#include <string>

namespace hcr {

/// An environment variable as UTF-8; nothing when it isn't set, or no text. `name` is plain ASCII. Any thread, as long
/// as none changes the environment.
std::optional<std::string> gf_environment(const char* name);
/// The same, with an empty text for nothing.
inline std::string gf_environmentText(const char* name) {
    return gf_environment(name).value_or("");
}

}  // namespace hcr
