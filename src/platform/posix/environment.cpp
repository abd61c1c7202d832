#include "platform/environment.h"

#include <cstdlib>

namespace hcr {

std::optional<std::string> gf_environment(const char* name) {
    const char* value = std::getenv(name);
    return value != nullptr ? std::optional<std::string>(value) : std::nullopt;
}

}  // namespace hcr
