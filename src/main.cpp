#include <fmt/format.h>

#include <cstdio>
#include <exception>
#include <filesystem>
#include <stdexcept>
#include <string>

#include "core/run/load.h"
#include "core/run/outcome.h"
#include "feed/readers.h"
#include "liveries/scan_pool.h"
#include "platform/files.h"
#include "platform/library.h"
#include "platform/system.h"
#include "scenery/install.h"
#include "shell/command_line.h"
#include "shell/file_names.h"
#include "shell/log.h"
#include "shell/log_start.h"
#include "shell/parameter_file.h"
#include "shell/settings.h"
#include "shell/text.h"
#include "shell/version.h"
#include "shell/window/headless.h"
#include "shell/window_state.h"
#include "sim/port/sandbox/sandbox.h"
#include "sim/port/simconnect/simconnect.h"

namespace {

constexpr int kSecondInstance = -1;
constexpr int kBadCommandLine = 2;
constexpr int kStartFailed = 1;

/// The simulator itself, where it can run or its library was named, unless the built-in one is asked for.
bool lf_wantsSandbox(const hcr::CommandLine& commandLine) {
    return commandLine.sandboxAsked || (commandLine.simConnect.empty() && !hcr::gf_simulatorRunsHere());
}

void lf_chooseSimulator(const hcr::CommandLine& commandLine) {
    if (lf_wantsSandbox(commandLine)) {
        const hcr::Scenario scenario =
            commandLine.sandbox.empty() ? hcr::gf_defaultScenario() : hcr::gf_readScenario(commandLine.sandbox);
        hcr::gf_startSandbox(scenario, commandLine.trace);
        return;
    }
    if (!commandLine.trace.empty())
        throw std::runtime_error("--trace works with the built-in simulator; add --sandbox");
    const hcr::Library library =
        hcr::gf_loadSimConnect(commandLine.simConnect.empty() ? hcr::gf_simConnectName() : commandLine.simConnect);
    hcr::gf_log("Simulator reached by " + hcr::gf_shownPath(library.file));
}

/// A box would wait for somebody to click it away.
void lf_tell(const hcr::CommandLine& commandLine, const std::string& text) {
    if (commandLine.headless) {
        std::fprintf(stderr, "%s: %s\n", hcr::kProgramName, text.c_str());
    } else {
        hcr::gf_showAlert(hcr::kProgramName, text);
    }
}

void lf_makeAbsolute(std::filesystem::path& path) {
    std::error_code error;
    if (!path.empty()) path = hcr::gf_absolutePath(path, error);
}

/// Some ways to start a program, as an administrator for instance, leave it in a folder of the system.
void lf_enterOwnFolder(hcr::CommandLine& commandLine) {
    std::error_code error;
    const std::filesystem::path own = hcr::gf_programFolder();
    if (std::filesystem::is_directory(hcr::gFiles().docs, error) ||
        !std::filesystem::is_directory(own / hcr::gFiles().docs, error)) {
        return;
    }
    for (std::filesystem::path* path : {&commandLine.sandbox, &commandLine.trace, &commandLine.simConnect}) {
        if (path->has_parent_path() || path != &commandLine.simConnect) lf_makeAbsolute(*path);
    }
    std::filesystem::current_path(own, error);
}

/// --settings: what is stored, changed by --set, and no run.
int lf_listSettings(const hcr::CommandLine& commandLine) {
    bool stored = true;
    if (commandLine.settings.empty()) {
        std::error_code error;
        if (!hcr::gf_peekParameters() && std::filesystem::exists(hcr::gFiles().settings, error)) {
            std::fprintf(stderr, "The settings can't be read, these are the defaults.\n");
        }
    } else {
        hcr::gf_makeConfigurationFolder();
        if (hcr::gf_loadParameters()) hcr::gf_chooseFoundSimulator();
        stored = hcr::gf_storeSettings(commandLine.settings);
    }
    std::fputs(hcr::gf_settingsText().c_str(), stdout);
    if (!stored) throw std::runtime_error(hcr::gf_currentMessage());
    return 0;
}

int lf_refuseSecondInstance(const hcr::CommandLine& commandLine) {
    if (!commandLine.settings.empty()) {
        lf_tell(commandLine, fmt::format("{} is running: close it first. No setting was stored.", hcr::kProgramName));
    }
    return kSecondInstance;
}

/// The settings are read as the run will read them, so that a first start or a new version comes before the changes.
bool lf_storeSettings(const hcr::CommandLine& commandLine) {
    std::error_code error;
    if (commandLine.settings.empty() || !std::filesystem::is_directory(hcr::gFiles().docs, error)) return true;
    hcr::gf_loadSettings();
    return hcr::gf_storeSettings(commandLine.settings);
}

int lf_start(hcr::CommandLine commandLine) {
    if (commandLine.listSettings && commandLine.settings.empty()) return lf_listSettings(commandLine);
    if (!hcr::gf_claimSingleInstance("Local\\$Halcy$")) return lf_refuseSecondInstance(commandLine);
    if (commandLine.listSettings) return lf_listSettings(commandLine);
    lf_enterOwnFolder(commandLine);
    hcr::gf_openLog();
    hcr::gf_makeConfigurationFolder();
    if (!lf_storeSettings(commandLine)) throw std::runtime_error(hcr::gf_currentMessage());
    lf_chooseSimulator(commandLine);
    hcr::gf_setFeedPorts(commandLine.trafficPort, commandLine.weatherPort);
    hcr::gProduction = commandLine.production;
    const int code = hcr::gf_runHeadless(
        {.tableSeconds = commandLine.tableSeconds, .seconds = commandLine.seconds, .alerts = !commandLine.headless});
    hcr::gf_stopSandbox();
    if (!hcr::gf_awaitScanWorkers()) hcr::gf_leaveProcess(code);
    return code;
}

}  // namespace

int main(int argc, char** argv) {
    hcr::gf_prepareConsole();
    const hcr::CommandLine commandLine = hcr::gf_readCommandLine(hcr::gf_arguments(argc, argv));
    if (commandLine.help) {
        std::fputs(hcr::gf_commandLineHelp().c_str(), stdout);
        return 0;
    }
    if (!commandLine.error.empty()) {
        lf_tell(commandLine, fmt::format("{}\n\n{}", commandLine.error, hcr::gf_commandLineHelp()));
        return kBadCommandLine;
    }
    try {
        return lf_start(commandLine);
    } catch (const std::exception& e) {
        hcr::gf_logError(e.what());
        lf_tell(commandLine, e.what());
        return kStartFailed;
    }
}
