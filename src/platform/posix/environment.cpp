#include "platform/environment.h"

#include <cstdlib>

namespace hcr {

std::string gf_environmentText(const char* name) {
    const char* value = std::getenv(name);
    return value != nullptr ? value : "";
}

}  // namespace hcr
