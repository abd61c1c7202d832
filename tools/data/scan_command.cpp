#include <fmt/format.h>

#include <cstdio>
#include <filesystem>
#include <stdexcept>

#include "commands.h"
#include "liveries/dbase.h"
#include "liveries/scan.h"
#include "liveries/scan_pool.h"
#include "platform/files.h"
#include "platform/system.h"
#include "shell/file_names.h"
#include "shell/log.h"
#include "shell/parameters.h"
#include "shell/run_stop.h"
#include "shell/text.h"

using namespace hcr;

namespace {

struct ScanArguments {
    std::filesystem::path community, work;
    std::string selector;  ///< empty for the program's default
    bool prioritize = true;
    std::vector<std::string> folders;
};

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

ScanArguments parseArguments(const std::vector<std::string>& arguments) {
    ScanArguments result;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& option = arguments[i];
        if (option == "--no-prioritize") {
            result.prioritize = false;
            continue;
        }
        const bool isKnown = option == "--community" || option == "--work" || option == "--selector" ||
                             option == "--folder";
        if (!isKnown) throw UsageError{fmt::format("unknown option {}", option)};
        if (i + 1 == arguments.size() || arguments[i + 1].empty()) {
            throw UsageError{fmt::format("{} needs a value", option)};
        }
        const std::string& value = arguments[++i];
        if (option == "--community") result.community = absolutePath(value);
        if (option == "--work") result.work = absolutePath(value);
        if (option == "--selector") result.selector = spacedSelector(value);
        if (option == "--folder") result.folders.push_back(gf_pathToUtf8(absolutePath(value)));
    }
    if (result.work.empty()) throw UsageError{"--work is needed"};
    const bool isManual = !result.folders.empty();
    if (result.community.empty() && !isManual) throw UsageError{"--community or --folder is needed"};
    if (isManual && !(result.community.empty() && result.selector.empty())) {
        throw UsageError{"--folder scans without a Community folder: leave --community and --selector out"};
    }
    return result;
}

/// The settings of this process only; nothing is written into the user's file.
void setParameters(const ScanArguments& arguments) {
    const std::vector<StringParameter*> manual = {&lfolder0, &lfolder1, &lfolder2, &lfolder3, &lfolder4,
                                                  &lfolder5, &lfolder6, &lfolder7, &lfolder8, &lfolder9};
    if (arguments.folders.size() > manual.size()) {
        throw UsageError{fmt::format("--folder can be given {} times", manual.size())};
    }
    for (std::size_t i = 0; i < arguments.folders.size(); ++i) manual[i]->current.set(arguments.folders[i]);
    if (!arguments.selector.empty()) AI_PACKAGE_SELECTOR.current.set(arguments.selector);
    LIG_AUTOMATIC.current = arguments.folders.empty();
    LIG_PRIORITIZE.current = arguments.prioritize;
}

}  // namespace

int runScan(const std::vector<std::string>& arguments) {
    const ScanArguments parsed = parseArguments(arguments);
    setParameters(parsed);
    std::error_code error;
    std::filesystem::current_path(parsed.work, error);
    if (error) throw std::runtime_error(fmt::format("{}: {}", gf_pathToUtf8(parsed.work), gf_errorText(error)));
    std::filesystem::create_directories(gFiles().info);
    gf_openLogOnStandardOutput();
    gf_onTerminate(gStop);
    if (!gf_readDbase()) throw std::runtime_error("the reference data can't be read");
    gf_prepareScans();
    gf_findLiveries(parsed.community);
    const int code = gf_stopAsked() ? kExitFailed : kExitGood;
    if (code != kExitGood) {
        gf_logFlush();
        fmt::print(stderr, "halcyrane-data: the scan was stopped; the old results are removed, no new ones written\n");
    }
    if (!gf_awaitScanWorkers()) gf_leaveProcess(code);
    return code;
}
