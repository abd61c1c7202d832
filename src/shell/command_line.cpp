#include "shell/command_line.h"

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <exception>

#include "shell/options.h"
#include "shell/settings.h"
#include "shell/text.h"
#include "shell/version.h"

namespace hcr {
namespace {

constexpr f64 kLongestSeconds = 30. * 86400;
constexpr f64 kHighestPort = 65535;
constexpr f64 kLongestTableSeconds = 3600;

void lf_addSimulatorOptions(CLI::App& app, CommandLine& result) {
    const auto takeScenario = [&result](const std::string& file) {
        result.sandboxAsked = true;
        result.sandbox = gf_pathFromUtf8(file);
    };
    gf_addText(app, "--sandbox", "[SCENARIO]",
               "fly in the built-in simulator, parked at Amsterdam or as this scenario file tells", takeScenario)
        ->expected(0, 1);
    gf_addPath(app, "--simconnect", "FILE", "reach the simulator by this client library instead of SimConnect.dll",
               result.simConnect);
    gf_addPath(app, "--trace", "FILE",
               "what the built-in simulator was told and what it shows,\none JSON object per line", result.trace);
}

void lf_addSettingOptions(CLI::App& app, CommandLine& result) {
    gf_addList(app, "--set", "NAME=VALUE", "store a setting, then run; any number of times",
               [&result](const std::string& assignment) { result.settings.push_back(assignment); })
        ->check(gf_settingFault);
    app.add_flag("--settings", result.listSettings,
                 "print all settings with meaning, bounds and value, and end;\ngoes with --set");
}

void lf_addOptions(CLI::App& app, CommandLine& result) {
    gf_prepareOptions(app);
    app.option_defaults()->ignore_case();
    app.set_help_flag("--help", "this text");
    app.add_flag("--headless", result.headless, "no window: message line and counters on standard output");
    gf_addNumber(app, "--table", "SECONDS", "with --headless: a table of the live aircraft every so many seconds", 1,
                 kLongestTableSeconds, result.tableSeconds);
    gf_addNumber(app, "--seconds", "N", "close by itself after N seconds", 1, kLongestSeconds, result.seconds);
    lf_addSimulatorOptions(app, result);
    gf_addNumber(app, "--traffic-port", "N", "UDP port of RealTraffic's traffic lines (49005)", 1, kHighestPort,
                 result.trafficPort);
    gf_addNumber(app, "--weather-port", "N", "UDP port of its weather (49004)", 1, kHighestPort, result.weatherPort);
    lf_addSettingOptions(app, result);
    const auto setProduction = [&result](bool on) { return [&result, on] { result.production = on; }; };
    app.add_flag_callback("--production", setProduction(true), "end behind the data load")->trigger_on_parse();
    app.add_flag_callback("--no-production", setProduction(false), "takes it back")->trigger_on_parse();
}

/// "/headless" is "--headless"; what no option is called may be a file.
std::vector<std::string> lf_withDashes(const CLI::App& app, std::vector<std::string> arguments) {
    for (std::string& argument : arguments) {
        if (argument == "/?") argument = "--help";
        const bool isSlashForm =
            argument.starts_with("/") && app.get_option_no_throw("--" + argument.substr(1)) != nullptr;
        if (isSlashForm) argument.replace(0, 1, "--");
    }
    return arguments;
}

std::string lf_about() {
    return fmt::format("{} {}, started in the program's folder", kProgramName, gf_programVersion().text());
}

}  // namespace

CommandLine gf_readCommandLine(const std::vector<std::string>& arguments) {
    CommandLine result;
    CLI::App app(lf_about(), "halcyrane");
    lf_addOptions(app, result);
    try {
        result.help = !gf_parseOptions(app, lf_withDashes(app, arguments)).empty();
    } catch (const std::exception& fault) {
        result.error = fault.what();
        result.headless = app.count("--headless") > 0;  // what tells where the fault is shown
    }
    if (result.error.empty() && result.sandboxAsked && !result.simConnect.empty()) {
        result.error = "--sandbox and --simconnect name two simulators, one is possible";
    }
    return result;
}

std::string gf_commandLineHelp() {
    CommandLine unused;
    CLI::App app(lf_about(), "halcyrane");
    lf_addOptions(app, unused);
    return app.help();
}

}  // namespace hcr
