#include "tools/data/match_data.h"

#include <fmt/format.h>

#include <fstream>
#include <random>
#include <stdexcept>

#include "liveries/dbase_reader.h"
#include "liveries/match_memory.h"
#include "liveries/results.h"
#include "shell/file_names.h"
#include "shell/log.h"
#include "shell/log_start.h"
#include "shell/parameter_file.h"
#include "shell/text.h"
#include "sim/aircraft.h"

namespace fs = std::filesystem;

namespace hcr {
namespace {

constexpr std::string_view kFaultMark = "==> ";
constexpr const char* kLogFile = "Log.txt";

void lf_copyNeeded(const fs::path& work, const fs::path& file, const char* what) {
    std::error_code error;
    fs::copy_file(work / file, file, error);
    if (!error) return;
    throw std::runtime_error(
        fmt::format("{} can't be read: {}. It holds {}; --work names the folder in which the "
                    "program works.",
                    gf_shownPath(work / file), gf_errorText(error), what));
}

void lf_copyIfThere(const fs::path& source, const fs::path& target) {
    if (fs::exists(source)) fs::copy(source, target, fs::copy_options::recursive);
}

void lf_copyFiles(const fs::path& work) {
    const FileNames& files = gFiles();
    for (const fs::path& folder : {files.input, files.info, files.errors}) fs::create_directories(folder);
    lf_copyNeeded(work, files.dbaseEnc, "the types, airlines and airframes");
    lf_copyNeeded(work, files.liveriesScanned, "the liveries that the last scan has found");
    lf_copyIfThere(work / files.aigEnc, files.aigEnc);
    lf_copyIfThere(work / files.myRegcodes, files.myRegcodes);
}

void lf_readSettings() {
    const fs::path users = gFiles().settings;
    const fs::path copies = fs::absolute("settings");
    fs::create_directories(copies);
    gf_useConfigurationFolder(copies);
    lf_copyIfThere(users, gFiles().settings);
    gf_loadParameters();
}

/// What the simulator refused in the last run, whose log still stands in the folder.
void lf_readRefusedTitles(const fs::path& work) {
    failedTitles.clear();
    std::ifstream log(work / kLogFile, std::ios::binary);
    for (std::string line; std::getline(log, line);) {
        if (const std::string_view title = gf_refusedTitle(gf_trim(line)); !title.empty()) failedTitles.emplace(title);
    }
}

std::vector<std::string> lf_loggedFaults() {
    std::vector<std::string> faults;
    std::ifstream log(kLogFile, std::ios::binary);
    for (std::string line; std::getline(log, line);) {
        if (line.starts_with(kFaultMark)) faults.push_back(line.substr(kFaultMark.size()));
    }
    return faults;
}

void lf_load() {
    if (!gf_readDbase()) throw std::runtime_error("the reference data in dbase.enc can't be read");
    gf_clearLiveryTables();
    gf_openLog(kLogFile);  // behind the reference data, whose faults nobody here can mend
    gf_loadScanResults();
    gf_closeLog();
}

}  // namespace

ScratchFolder::ScratchFolder()
    : before(fs::current_path()),
      path(fs::temp_directory_path() / fmt::format("halcyrane-match-{:08x}", std::random_device{}())) {
    fs::create_directories(path);
    fs::current_path(path);
}

ScratchFolder::~ScratchFolder() {
    gf_closeLog();
    gf_rebuildFileNames();
    std::error_code ignored;
    fs::current_path(before, ignored);
    fs::remove_all(path, ignored);
}

MatchData::MatchData(const fs::path& work) {
    const fs::path source = folder.before / work;
    lf_copyFiles(source);
    lf_readSettings();
    lf_load();
    faults = lf_loggedFaults();
    lf_readRefusedTitles(source);
}

}  // namespace hcr
