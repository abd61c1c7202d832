#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "shell/parameters.h"

namespace hcr {

// Where the chosen simulator keeps its packages: the folder that holds Community and Official (MSFS 2020) or
// Official2024 (MSFS 2024). Run thread, unless said otherwise.

/// The parameter that holds the package folder of the chosen simulator. Any thread.
StringParameter& gf_installParameter();
/// `name` below the package folder that the parameter holds; empty when it holds none. Any thread.
std::filesystem::path gf_simulatorPath(const std::filesystem::path& name);

/// The simulator's settings file UserCfg.opt, the last candidate when there is none. Throws filesystem_error when a
/// candidate can't be looked at.
std::filesystem::path gf_findUserCfg();
/// The package folder of an installation by Steam, empty when there is none.
std::filesystem::path gf_steamPackagesPath();
/// The folder that UserCfg.opt names, empty when there is none. Throws filesystem_error.
std::filesystem::path gf_installedPackagesPath();
/// Whether Community and the official packages stand in the folder.
bool gf_isValidPackageFolder(const std::filesystem::path& path);
/// Finds the package folder of the chosen simulator by itself; empty when nothing was found. Throws filesystem_error.
std::filesystem::path gf_detectInstallPath();

/// For the first start: SIM_CHOICE becomes the simulator whose package folder is found when the other one's isn't, and
/// is stored.
void gf_chooseFoundSimulator();

/// The user's own entry: a Community folder, or the folder that holds it. A good one is stored and asks for a new run;
/// anything wrong is shown. Window's thread.
void gf_enterInstallPath(StringParameter& parameter, std::string_view text);

}  // namespace hcr
