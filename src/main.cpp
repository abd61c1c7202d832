#include <fmt/format.h>

#include <cstdio>
#include <exception>

#include "core/run/run.h"
#include "liveries/scan_pool.h"
#include "platform/system.h"
#include "shell/command_line.h"
#include "shell/file_names.h"
#include "shell/log.h"
#include "shell/parameters.h"
#include "shell/text.h"
#include "shell/window/headless.h"
#include "sim/port/sandbox/sandbox.h"

namespace {

constexpr int kSecondInstance = -1;
constexpr int kBadCommandLine = 2;
constexpr int kStartFailed = 1;

int lf_start(const hcr::CommandLine& commandLine) {
    if (!hcr::gf_claimSingleInstance("Local\\$Halcy$")) return kSecondInstance;
    hcr::gf_openLog();
    hcr::gf_makeConfigurationFolder();
    const hcr::Scenario scenario =
        commandLine.sandbox.empty() ? hcr::gf_defaultScenario() : hcr::gf_readScenario(commandLine.sandbox);
    hcr::gf_startSandbox(scenario, commandLine.trace);
    hcr::gProduction = commandLine.production;
    const int code = hcr::gf_runHeadless({.tableSeconds = commandLine.tableSeconds, .seconds = commandLine.seconds});
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
        hcr::gf_showAlert(hcr::kProgramName,
                          fmt::format("{}\n\n{}", commandLine.error, hcr::gf_commandLineHelp()));
        return kBadCommandLine;
    }
    try {
        return lf_start(commandLine);
    } catch (const std::exception& e) {
        hcr::gf_logError(e.what());
        hcr::gf_showAlert(hcr::kProgramName, e.what());
        return kStartFailed;
    }
}
