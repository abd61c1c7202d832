#pragma once

#include <string>

namespace hcr {

/// An environment variable as UTF-8; empty when it isn't set, or no text. `name` is plain ASCII. Any thread, as long as
/// none changes the environment.
std::string gf_environmentText(const char* name);

}  // namespace hcr
