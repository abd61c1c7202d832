#pragma once

#include <filesystem>

namespace hcr {

// The system's side of user_folders.h. Only user_folders.cpp calls these.

/// Folder of the user's settings, and of his data on this computer; empty when the system tells none. Any thread.
std::filesystem::path gf_systemRoamingFolder();
std::filesystem::path gf_systemLocalFolder();

}  // namespace hcr
