#include "scenery/install.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <mutex>
#include <stdexcept>
#include <system_error>

#include "platform/user_folders.h"
#include "shell/controls.h"
#include "shell/file_names.h"
#include "shell/log.h"
#include "shell/messages.h"
#include "shell/parameter_file.h"
#include "shell/run_stop.h"
#include "shell/text.h"
#include "shell/text_files.h"
#include "shell/version.h"
#include "shell/window_state.h"

namespace hcr {
namespace {

namespace fs = std::filesystem;

constexpr const char* kLocalCache = "LocalCache";
constexpr const char* kUserCfg = "UserCfg.opt";
constexpr const char* kPackages = "Packages";
constexpr const char* kBoxedPackages = "MSFSPackages";
constexpr const char* kSteamDashboard = "Microsoft.FlightDashboard_8wekyb3d8bbwe";
constexpr std::string_view kPathKey = "InstalledPackagesPath";
constexpr std::size_t kUsualLines = 32;
constexpr i32 kRestartSeconds = 3;  // time to read the message

/// What the chosen simulator calls its folders.
struct SimulatorNames {
    const char* storeFamily;
    const char* roamingFolder;
};

const SimulatorNames& lf_names() {
    static constexpr SimulatorNames kMsfs2020 = {"Microsoft.FlightSimulator_8wekyb3d8bbwe",
                                                 "Microsoft Flight Simulator"};
    static constexpr SimulatorNames kMsfs2024 = {"Microsoft.Limitless_8wekyb3d8bbwe",
                                                 "Microsoft Flight Simulator 2024"};
    return gf_sim2024Chosen() ? kMsfs2024 : kMsfs2020;
}

struct Candidate {
    const char* name;
    fs::path path;
};

std::array<Candidate, 4> lf_userCfgCandidates() {
    const fs::path local = gf_localFolder(), roaming = gf_roamingFolder();
    const SimulatorNames& names = lf_names();
    return {{{"Store", local / kPackages / names.storeFamily / kLocalCache / kUserCfg},
             {"Steam1", roaming / names.roamingFolder / kUserCfg},
             {"Steam2", local / kPackages / kSteamDashboard / kLocalCache / kUserCfg},
             {"Boxed", local / kBoxedPackages / kUserCfg}}};
}

bool lf_isThere(const fs::path& path) {
    std::error_code ignored;
    return !path.empty() && fs::exists(path, ignored);
}

/// For a path that a file names, whatever that is: throws when the system can't tell, but for a text that can be the
/// name of nothing.
bool lf_isNamedPathThere(const fs::path& path) {
    if (path.empty() || path.native().find(fs::path::value_type{}) != fs::path::string_type::npos) return false;
    std::error_code error;
    const fs::file_status status = fs::status(path, error);
    const bool isNoName = error == std::errc::filename_too_long || error == std::errc::invalid_argument;
    if (status.type() == fs::file_type::not_found || isNoName) return false;
    if (error) throw fs::filesystem_error("cannot access install path", path, error);
    return true;
}

/// Between the first and the second quote; the whole line without any.
std::string_view lf_quotedValue(std::string_view line) {
    const std::size_t open = line.find('"');
    if (open == std::string_view::npos) return line;
    const std::size_t close = line.find('"', open + 1);
    return close == std::string_view::npos ? std::string_view() : line.substr(open + 1, close - open - 1);
}

/// The path in the lines of UserCfg.opt, empty when it names none that exists.
fs::path lf_namedPackagesPath(const std::vector<std::string_view>& lines) {
    const auto line = std::find_if(lines.begin(), lines.end(), [](std::string_view candidate) {
        return candidate.find(kPathKey) != std::string_view::npos;
    });
    if (line == lines.end()) return {};
    const std::string_view value = lf_quotedValue(*line);
    fs::path path = gf_pathFromAnySeparators(gf_isUtf8(value) ? std::string(value) : gf_ansiToUtf8(value));
    return lf_isNamedPathThere(path) ? path : fs::path();
}

fs::path lf_withoutTrailingSeparators(fs::path path) {
    while (!path.has_filename() && path.has_relative_path()) path = path.parent_path();
    return path;
}

/// The package folder for what the user typed, as text for the parameter; empty, with the reason shown, when it's none.
std::string lf_packageFolder(std::string_view text) {
    const fs::path& community = gFiles().community;
    const fs::path path = lf_withoutTrailingSeparators(gf_pathFromAnySeparators(text));
    if (gf_upper(gf_shownPath(path.filename())) != gf_upper(gf_shownPath(community))) {
        if (lf_isThere(path / community)) return std::string(text);
        gf_showMessage("This path exists but is not a path to Community ...", true);
        return {};
    }
    const fs::path parent = lf_withoutTrailingSeparators(path.parent_path());
    if (!parent.empty() && lf_isThere(parent / community)) return gf_pathToUtf8(parent);
    gf_showMessage("This path does not contain a valid Community folder (unexpected).", true);
    return {};
}

/// Whether the path that the user typed exists; anything else is shown.
bool lf_isTypedPathThere(std::string_view text) {
    std::string fault;
    try {
        if (lf_isNamedPathThere(gf_pathFromAnySeparators(text))) return true;
    } catch (const fs::filesystem_error& error) {
        fault = gf_errorText(error.code());
    } catch (const std::exception& error) {
        fault = error.what();
    }
    gf_showMessage(fault.empty() ? fmt::format("This install path does not exist: {}", text)
                                 : fmt::format("Cannot access install path '{}': {}", text, fault),
                   true);
    return false;
}

void lf_clearMessageLines() {
    {
        const std::lock_guard lock(gWindow.mutex);
        gWindow.fatalMessage.clear();
    }
    gf_clearMessage();
}

/// What can't be looked at isn't found; the detection for the run tells more about it.
bool lf_isDetected() {
    try {
        return !gf_detectInstallPath().empty();
    } catch (const fs::filesystem_error& fault) {
        gf_log(fmt::format("MSFS detection: {}", gf_errorText(fault.code())));
        return false;
    }
}

void lf_store(StringParameter& parameter, std::string_view value) {
    parameter.current.set(value);
    gf_storeParameter(parameter);
}

}  // namespace

StringParameter& gf_installParameter() {
    return gf_sim2024Chosen() ? MSFS_2024_INSTALL_PATH : MSFS_INSTALL_PATH;
}

fs::path gf_simulatorPath(const fs::path& name) {
    const std::string folder = gf_installParameter().current.get();
    return folder.empty() ? fs::path() : gf_pathFromAnySeparators(folder) / name;
}

fs::path gf_findUserCfg() {
    std::array<Candidate, 4> candidates = lf_userCfgCandidates();
    for (const Candidate& candidate : candidates) {
        if (fs::exists(candidate.path)) return candidate.path;
        gf_log(fmt::format("MSFS detection, no {}:{}", candidate.name, gf_shownPath(candidate.path)));
    }
    return candidates.back().path;
}

fs::path gf_steamPackagesPath() {
    fs::path packages = gf_roamingFolder() / lf_names().roamingFolder / kPackages;
    gf_log(fmt::format("Steam packages:{}", gf_shownPath(packages)));
    std::error_code ignored;
    return fs::is_directory(packages, ignored) ? packages : fs::path();
}

fs::path gf_installedPackagesPath() {
    LineReader reader;
    reader.path = gf_findUserCfg();
    if (!fs::exists(reader.path)) {
        gf_log("No UserCfg.opt found?");
        return {};
    }
    std::string error;
    fs::path packages;
    if (gf_readFileLines(reader, kUsualLines, error)) packages = lf_namedPackagesPath(reader.lines);
    gf_log(fmt::format("UserCfg.opt: InstalledPackagesPath={}", packages.empty() ? "???" : gf_shownPath(packages)));
    return packages;
}

bool gf_isValidPackageFolder(const fs::path& path) {
    const FileNames& files = gFiles();
    return lf_isThere(path) && lf_isThere(path / files.community) &&
           lf_isThere(path / (gf_sim2024Chosen() ? files.official2024 : files.official));
}

fs::path gf_detectInstallPath() {
    fs::path packages = gf_steamPackagesPath();
    if (gf_isValidPackageFolder(packages)) return packages;
    packages = gf_installedPackagesPath();
    return gf_isValidPackageFolder(packages) ? packages : fs::path();
}

void gf_chooseFoundSimulator() {
    const std::string before = SIM_CHOICE.current.get();
    std::vector<std::string> found;
    for (const std::string& simulator : SIM_CHOICE.values) {
        SIM_CHOICE.current.set(simulator);  // by it all names of folders go
        if (lf_isDetected()) found.push_back(simulator);
    }
    SIM_CHOICE.current.set(before);
    if (found.size() != 1 || found.front() == before) return;
    gf_log(fmt::format("Only {} is found here, SIM_CHOICE begins with it", found.front()));
    lf_store(SIM_CHOICE, found.front());
    gf_showInControl(SIM_CHOICE);
}

void gf_enterInstallPath(StringParameter& parameter, std::string_view text) {
    lf_clearMessageLines();
    if (text.empty()) {
        if (!parameter.current.empty()) lf_store(parameter, {});
        return;
    }
    if (!lf_isTypedPathThere(text)) return;
    const std::string folder = lf_packageFolder(text);
    if (folder.empty()) return;
    lf_store(parameter, folder);
    gf_showMessage(fmt::format("Community path found, {} will restart ...", kProgramName), true);
    gf_requestStop(ExitReason::newSettings, kRestartSeconds);
}

}  // namespace hcr
