#pragma once

#include <atomic>
#include <filesystem>
#include <string>
#include <vector>

#include "platform/types.h"

namespace hcr {

/// The folder of the running executable.
std::filesystem::path gf_programFolder();

/// Opens a file or folder in the user's file manager or viewer; false when that couldn't be started.
bool gf_openForUser(const std::filesystem::path& path);
/// Off in tests: gf_openForUser opens nothing then, on nobody's screen.
inline std::atomic<bool> gMayOpenForUser{true};
/// Shows a text that the user must see although there is no window yet: a message box, or standard error.
void gf_showAlert(const std::string& title, const std::string& text);
/// Takes the machine-wide mark of one running instance; false when another process holds it.
bool gf_claimSingleInstance(const std::string& name);
/// True when the process runs with an administrator's rights.
bool gf_isElevated();
/// Command-line arguments as UTF-8, without the program's name.
std::vector<std::string> gf_arguments(int argc, char** argv);
/// Makes standard output show UTF-8.
void gf_prepareConsole();
/// Ends the process at once, without waiting for its threads; what was written to its files is kept.
[[noreturn]] void gf_leaveProcess(int code);
/// Sets `flag` when the user ends the process from outside (SIGINT, SIGTERM, console closed).
void gf_onTerminate(std::atomic<bool>& flag);

/// Resident memory of this process in bytes, 0 where it can't be told.
u64 gf_residentBytes();

}  // namespace hcr
