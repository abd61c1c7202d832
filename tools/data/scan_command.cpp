#include <fmt/format.h>

#include <cstdio>
#include <filesystem>
#include <stdexcept>

#include "commands.h"
#include "liveries/dbase_reader.h"
#include "liveries/scan.h"
#include "liveries/scan_pool.h"
#include "liveries/scan_threads.h"
#include "platform/system.h"
#include "shell/file_names.h"
#include "shell/log.h"
#include "shell/parameters.h"
#include "shell/run_stop.h"
#include "shell/text.h"

using namespace hcr;

namespace {

/// The settings of this process only; nothing is written into the user's file.
void setParameters(const ScanArguments& arguments) {
    const std::vector<StringParameter*> manual = {&lfolder0, &lfolder1, &lfolder2, &lfolder3, &lfolder4,
                                                  &lfolder5, &lfolder6, &lfolder7, &lfolder8, &lfolder9};
    for (std::size_t i = 0; i < arguments.folders.size(); ++i)
        manual[i]->current.set(gf_pathToUtf8(arguments.folders[i]));
    if (!arguments.selector.empty()) AI_PACKAGE_SELECTOR.current.set(arguments.selector);
    LIG_AUTOMATIC.current = arguments.folders.empty();
    LIG_PRIORITIZE.current = arguments.prioritize;
}

}  // namespace

int runScan(const ScanArguments& arguments) {
    setParameters(arguments);
    std::error_code error;
    std::filesystem::current_path(arguments.work, error);
    if (error) throw std::runtime_error(fmt::format("{}: {}", gf_pathToUtf8(arguments.work), gf_errorText(error)));
    std::filesystem::create_directories(gFiles().info);
    gf_openLogOnStandardOutput();
    gf_onTerminate(gStop);
    if (!gf_readDbase()) throw std::runtime_error("the reference data can't be read");
    gf_prepareScans();
    gf_findLiveries(arguments.community);
    const int code = gf_stopAsked() ? kExitFailed : kExitGood;
    if (code != kExitGood) {
        gf_logFlush();
        fmt::print(stderr, "halcyrane-data: the scan was stopped; the old results are removed, no new ones written\n");
    }
    if (!gf_awaitScanWorkers()) gf_leaveProcess(code);
    return code;
}
