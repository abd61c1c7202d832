#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <exception>

#include "commands.h"
#include "platform/system.h"

namespace {

constexpr std::array kCommands{
    Command{"encipher", "IN OUT [--key HEX]", "make the form in which a data file travels", runEncipher},
    Command{"decipher", "IN OUT [--key HEX]", "turn an enciphered data file into its plain form", runDecipher},
    Command{"scan", "--community DIR --work DIR [--selector \"AIG, FSLTL\"] [--no-prioritize] [--folder DIR ...]",
            "find the installed liveries: data sets from WORK/input, results below WORK/output", runScan},
    Command{"match",
            "[--airline KLM] [--type B738] [--reg PH-BXA] [--callsign KLM1023] [--cargo] [--from EHAM] [--to LFPG]\n"
            "        [--depth 1..4] [--refused TITLE] [--all] [--work DIR]",
            "tell which livery such an aircraft gets, live and parked, and why; --depth in place of MATCHING_DEPTH,\n"
            "      --refused a title that the simulator can't create, --all every candidate, --work the program's folder",
            runMatch},
};

constexpr const char* kAboutKey = "\nWithout --key (64 hexadecimal digits) the key of this build is used.\n";

std::string usage() {
    std::string text = "usage: halcyrane-data COMMAND ARGUMENTS\n\n";
    for (const Command& command : kCommands) {
        text += fmt::format("  {} {}\n      {}\n", command.name, command.arguments, command.purpose);
    }
    return text + kAboutKey + "halcyrane-data COMMAND --help tells about one of them.\n";
}

std::string usageOf(const Command& command) {
    const bool takesKey = command.arguments.find("--key") != std::string_view::npos;
    return fmt::format("usage: halcyrane-data {} {}\n      {}\n{}", command.name, command.arguments, command.purpose,
                       takesKey ? kAboutKey : "");
}

bool asksForHelp(const std::string& argument) {
    return argument == "--help" || argument == "-h";
}

int runCommand(const std::vector<std::string>& arguments) {
    if (arguments.empty()) throw UsageError{"no command"};
    if (asksForHelp(arguments[0]) || arguments[0] == "help") {
        fmt::print("{}", usage());
        return kExitGood;
    }
    for (const Command& command : kCommands) {
        if (command.name != arguments[0]) continue;
        if (std::ranges::any_of(arguments, asksForHelp)) {
            fmt::print("{}", usageOf(command));
            return kExitGood;
        }
        return command.run({arguments.begin() + 1, arguments.end()});
    }
    throw UsageError{fmt::format("unknown command {}", arguments[0])};
}

}  // namespace

int main(int argc, char** argv) {
    hcr::gf_prepareConsole();
    try {
        return runCommand(hcr::gf_arguments(argc, argv));
    } catch (const UsageError& e) {
        fmt::print(stderr, "halcyrane-data: {}\n\n{}", e.text, usage());
        return kExitUsage;
    } catch (const std::exception& e) {
        std::fflush(stdout);
        fmt::print(stderr, "halcyrane-data: {}\n", e.what());
        return kExitFailed;
    }
}
