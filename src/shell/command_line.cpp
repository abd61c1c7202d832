#include "shell/command_line.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <optional>

#include "shell/parameters.h"
#include "shell/settings.h"
#include "shell/text.h"

namespace hcr {
namespace {

constexpr i64 kLongestSeconds = 30LL * 86400;
constexpr i64 kHighestPort = 65535;

/// "--headless" and "/Headless" are "HEADLESS"; a text that is no option gives nothing.
std::optional<std::string> lf_optionName(std::string_view argument) {
    if (argument.starts_with("--")) return gf_upper(argument.substr(2));
    const bool slashOption = argument.starts_with("/") && argument.find('/', 1) == std::string_view::npos;
    if (slashOption) return gf_upper(argument.substr(1));
    return std::nullopt;
}

std::optional<i64> lf_number(std::string_view text, i64 lowest, i64 highest) {
    i64 value = 0;
    const auto [end, fault] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (fault != std::errc{} || end != text.data() + text.size()) return std::nullopt;
    if (value < lowest || value > highest) return std::nullopt;
    return value;
}

struct Reader {
    const std::vector<std::string>& arguments;
    std::size_t at = 0;
    CommandLine& result;

    bool next(std::string_view option, std::string& value) {
        if (at + 1 >= arguments.size()) {
            result.error = fmt::format("{} needs a value", option);
            return false;
        }
        value = arguments[++at];
        return true;
    }
};

/// True for what is written as an option and is one, so that it isn't taken for a file.
bool lf_isOption(const std::string& argument) {
    constexpr std::string_view kNames[] = {"PRODUCTION",   "NO-PRODUCTION", "HEADLESS", "HELP",    "?",
                                           "SANDBOX",      "SIMCONNECT",    "TRACE",    "SECONDS", "TABLE",
                                           "TRAFFIC-PORT", "WEATHER-PORT",  "SET",      "SETTINGS"};
    if (argument.starts_with("--")) return true;
    const std::optional<std::string> name = lf_optionName(argument);
    return name && std::find(std::begin(kNames), std::end(kNames), *name) != std::end(kNames);
}

void lf_readSandbox(Reader& reader) {
    reader.result.sandboxAsked = true;
    const bool isLast = reader.at + 1 >= reader.arguments.size();
    if (isLast || lf_isOption(reader.arguments[reader.at + 1])) return;
    reader.result.sandbox = gf_pathFromUtf8(reader.arguments[++reader.at]);
}

void lf_readPath(Reader& reader, std::string_view option, std::filesystem::path& path) {
    std::string value;
    if (reader.next(option, value)) path = gf_pathFromUtf8(value);
}

template <typename Number>
void lf_readNumber(Reader& reader, std::string_view option, i64 lowest, i64 highest, Number& target) {
    std::string value;
    if (!reader.next(option, value)) return;
    if (const auto number = lf_number(value, lowest, highest)) {
        target = static_cast<Number>(*number);
    } else {
        reader.result.error = fmt::format("{}: '{}' is no number from {} to {}", option, value, lowest, highest);
    }
}

void lf_readSetting(Reader& reader, std::string_view option) {
    std::string text;
    if (!reader.next(option, text)) return;
    const std::string fault = gf_settingFault(text);
    if (!fault.empty()) reader.result.error = fmt::format("{}: {}", option, fault);
    reader.result.settings.push_back(std::move(text));
}

void lf_readOption(Reader& reader, const std::string& argument) {
    CommandLine& result = reader.result;
    const std::string name = lf_optionName(argument).value_or("");
    if (name == "PRODUCTION") {
        result.production = true;
    } else if (name == "NO-PRODUCTION") {
        result.production = false;
    } else if (name == "HEADLESS") {
        result.headless = true;
    } else if (name == "HELP" || name == "?") {
        result.help = true;
    } else if (name == "SANDBOX") {
        lf_readSandbox(reader);
    } else if (name == "SIMCONNECT") {
        lf_readPath(reader, argument, result.simConnect);
    } else if (name == "TRACE") {
        lf_readPath(reader, argument, result.trace);
    } else if (name == "TRAFFIC-PORT") {
        lf_readNumber(reader, argument, 1, kHighestPort, result.trafficPort);
    } else if (name == "WEATHER-PORT") {
        lf_readNumber(reader, argument, 1, kHighestPort, result.weatherPort);
    } else if (name == "TABLE") {
        lf_readNumber(reader, argument, 1, 3600, result.tableSeconds);
    } else if (name == "SET") {
        lf_readSetting(reader, argument);
    } else if (name == "SETTINGS") {
        result.listSettings = true;
    } else if (name == "SECONDS") {
        lf_readNumber(reader, argument, 1, kLongestSeconds, result.seconds);
    } else {
        result.error = fmt::format("unknown argument '{}'", argument);
    }
}

}  // namespace

CommandLine gf_readCommandLine(const std::vector<std::string>& arguments) {
    CommandLine result;
    Reader reader{arguments, 0, result};
    for (; reader.at < arguments.size() && result.error.empty(); ++reader.at) {
        lf_readOption(reader, arguments[reader.at]);
    }
    // Who doesn't get the rest right needs it most.
    result.help = result.help || std::ranges::find(arguments, "--help") != arguments.end();
    if (result.error.empty() && result.sandboxAsked && !result.simConnect.empty()) {
        result.error = "--sandbox and --simconnect name two simulators, one is possible";
    }
    return result;
}

std::string gf_commandLineHelp() {
    return fmt::format(
        "{} {}\n"
        "usage: halcyrane [options], started in the program's folder\n"
        "  --headless           no window: message line and counters on standard output\n"
        "  --table SECONDS      with --headless: a table of the live aircraft every so many seconds\n"
        "  --seconds N          close by itself after N seconds\n"
        "  --sandbox [SCENARIO] fly in the built-in simulator, parked at Amsterdam or as this scenario file tells\n"
        "  --simconnect FILE    reach the simulator by this client library instead of SimConnect.dll\n"
        "  --trace FILE         what the built-in simulator was told and what it shows, one JSON object per line\n"
        "  --traffic-port N     UDP port of RealTraffic's traffic lines (49005); --weather-port N of its weather "
        "(49004)\n"
        "  --set NAME=VALUE     store a setting, then run; any number of times\n"
        "  --settings           print all settings with meaning, bounds and value, and end; goes with --set\n"
        "  --production         end behind the data load; --no-production takes it back\n"
        "  --help               this text\n",
        kProgramName, gf_programVersion().text());
}

}  // namespace hcr
