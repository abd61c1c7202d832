#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <exception>
#include <stdexcept>

#include "commands.h"
#include "platform/files.h"
#include "shell/options.h"
#include "shell/parameters.h"
#include "shell/text.h"

using namespace hcr;

namespace {

constexpr std::size_t kMostFolders = 10;  // so many the settings hold

/// All commands' arguments, and what was asked for.
struct DataArguments {
    CipherArguments cipher;
    ScanArguments scan;
    MatchArguments match;
};

std::string emptyFault(const std::string& text) {
    return text.empty() ? "needs a value" : "";
}

void addCipherOptions(CLI::App& command, CipherArguments& cipher) {
    gf_addPath(command, "IN", "", "the file to read", cipher.in)->required();
    gf_addPath(command, "OUT", "", "the file to write", cipher.out)->required();
    const auto fault = [](const std::string& text) {
        return gf_cipherKeyFromHex(text) ? "" : std::string("needs 64 hexadecimal digits");
    };
    gf_addText(command, "--key", "HEX", "64 hexadecimal digits; without it the key of this build is used",
               [&cipher](const std::string& text) { cipher.key = *gf_cipherKeyFromHex(text); })
        ->check(fault);
}

/// Absolute, since the working folder changes before it is used.
std::filesystem::path absolutePath(const std::string& text) {
    std::error_code error;
    return gf_absolutePath(gf_pathFromUtf8(text), error);
}

/// The program writes a blank behind each comma; people needn't.
std::string spacedSelector(const std::string& text) {
    std::string result;
    for (const std::string_view piece : gf_splitCommas(text)) {
        if (!result.empty()) result += ", ";
        result += gf_trim(piece);
    }
    return result;
}

void addScanOptions(CLI::App& command, ScanArguments& scan) {
    const auto path = [&command](const std::string& name, const std::string& about, std::filesystem::path& target) {
        return gf_addText(command, name, "DIR", about,
                          [&target](const std::string& text) { target = absolutePath(text); })
            ->check(emptyFault);
    };
    path("--work", "the program's folder: data sets come from `input`, results go to `output`", scan.work)->required();
    CLI::Option* const community = path("--community", "the simulator's packages", scan.community);
    CLI::Option* const selector =
        gf_addText(command, "--selector", "LIST", "which packages of AI aircraft, \"AIG, FSLTL\" for instance",
                   [&scan](const std::string& text) { scan.selector = spacedSelector(text); })
            ->check(emptyFault);
    command.add_flag_callback(
        "--no-prioritize", [&scan] { scan.prioritize = false; }, "one package's liveries don't go before another's");
    const auto takeFolder = [&scan](const std::string& folder) {
        if (scan.folders.size() == kMostFolders) {
            throw std::runtime_error(fmt::format("--folder can be given {} times", kMostFolders));
        }
        scan.folders.push_back(absolutePath(folder));
    };
    gf_addList(command, "--folder", "DIR",
               fmt::format("scan this folder instead of packages; up to {} times", kMostFolders), takeFolder)
        ->check(emptyFault)
        ->excludes(community)
        ->excludes(selector);
}

void addMatchOptions(CLI::App& command, MatchArguments& match) {
    MatchQuestion& question = match.question;
    const auto code = [&command](const std::string& name, const std::string& example, std::string& target) {
        gf_addText(command, name, "CODE", example,
                   [&target](const std::string& text) { target = gf_upper(gf_trim(text)); });
    };
    code("--airline", "KLM for instance", question.airline);
    code("--type", "B738; this or --reg is needed", question.type);
    code("--reg", "PH-BXA", question.registration);
    code("--callsign", "KLM1023", question.callsign);
    code("--from", "EHAM", question.from);
    code("--to", "LFPG", question.to);
    command.add_flag("--cargo", question.cargo, "it flies cargo");
    gf_addNumber(command, "--depth", "1..4", "in place of the setting MATCHING_DEPTH", MATCHING_DEPTH.lower,
                 MATCHING_DEPTH.upper, match.depth);
    gf_addList(command, "--refused", "TITLE", "a title that the simulator can't create; any number of times",
               [&match](const std::string& title) { match.refused.push_back(title); });
    command.add_flag("--all", question.allTitles, "every candidate");
    gf_addPath(command, "--work", "DIR", "the program's folder", match.work);
}

int runChosen(const std::string& command, const DataArguments& arguments) {
    if (command == "encipher") return runEncipher(arguments.cipher);
    if (command == "decipher") return runDecipher(arguments.cipher);
    if (command == "scan") {
        if (arguments.scan.community.empty() && arguments.scan.folders.empty()) {
            throw UsageError{"--community or --folder is needed"};
        }
        return runScan(arguments.scan);
    }
    const MatchQuestion& question = arguments.match.question;
    if (question.type.empty() && question.registration.empty()) throw UsageError{"--type or --reg is needed"};
    return runMatch(arguments.match);
}

}  // namespace

int runCommandLine(const std::vector<std::string>& arguments) {
    DataArguments parsed;
    CLI::App app("Makes, checks and explains data.", "halcyrane-data");
    gf_prepareOptions(app);
    app.require_subcommand(1);
    addCipherOptions(*app.add_subcommand("encipher", "make the form in which a data file travels"), parsed.cipher);
    addCipherOptions(*app.add_subcommand("decipher", "turn an enciphered data file into its plain form"),
                     parsed.cipher);
    addScanOptions(*app.add_subcommand("scan", "find the installed liveries, as a run does"), parsed.scan);
    addMatchOptions(*app.add_subcommand("match", "tell which livery such an aircraft gets, live and parked, and why"),
                    parsed.match);
    std::string help;
    try {
        const bool isWord = !arguments.empty() && arguments.front() == "help";
        help = gf_parseOptions(app, isWord ? std::vector<std::string>{"--help"} : arguments);
    } catch (const std::exception& fault) {
        throw UsageError{fault.what()};
    }
    if (help.empty()) return runChosen(app.get_subcommands().front()->get_name(), parsed);
    fmt::print("{}", help);
    return kExitGood;
}
