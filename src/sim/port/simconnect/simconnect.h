#pragma once

#include <filesystem>

#include "platform/library.h"

namespace hcr {

// The simulator itself behind SimPort: its client library, loaded at run time, so that the program starts without it
// and one build serves every version of the simulator.

/// The client library's usual name on this system.
std::filesystem::path gf_simConnectName();

/// Loads the client library (see gf_openLibrary) and puts it behind gSimPort. It must stay loaded as long as gSimPort
/// may be used; the program keeps it until the process ends. Throws std::runtime_error with a text that tells the user
/// what is wrong with which file and what to do; gSimPort is then as it was. Before the first run.
Library gf_loadSimConnect(const std::filesystem::path& name);

}  // namespace hcr
