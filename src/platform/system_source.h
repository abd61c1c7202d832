#pragma once

#include <filesystem>

namespace hcr {

// The system's side of system.h. Only user_folders.cpp calls these.

std::filesystem::path gf_systemRoamingFolder();
std::filesystem::path gf_systemLocalFolder();

}  // namespace hcr
