#include "shell/update_options.h"

#include <fmt/format.h>

#include <array>
#include <exception>
#include <filesystem>
#include <vector>

#include "shell/controls.h"
#include "shell/file_names.h"
#include "shell/log.h"
#include "shell/parameter_file.h"
#include "shell/text.h"
#include "shell/version.h"

namespace fs = std::filesystem;

namespace hcr {
namespace {

/// Older files hold texts where there are lists of numbers now.
const VersionData kOldestConvertible(11, 0, 2);

constexpr std::array kFormerParameters{"CALLSIGN_OBJECTIDS",
                                       "PARK_FAKE",
                                       "SUPPRESS_STUB",
                                       "LOG",
                                       "LEARN_SOFT",
                                       "PROGRAM_INSTALL_PATH",
                                       "LATERAL_RANGE",
                                       "CUSTOM_MAX_PARK",
                                       "MAX_LIVE",
                                       "AIRPORT_RANGE",
                                       "AUTO_RANGE_ABOVE_HEIGHT",
                                       "AIRPORT_HEIGHT",
                                       "MSFS_2020",
                                       "AI_PACKAGE_ORDER"};
constexpr const char* kFormerCallsignFile = "Callsign2ObjectId.txt";
constexpr const char* kFormerLearnFolder = "TO_BE_LEARNED_OFFLINE";
constexpr std::size_t kAirportCodeLength = 4;

/// Former versions kept airport files in the working folder itself.
void lf_removeFormerAirportFiles() {
    const fs::path folder = fs::current_path();
    gf_log(gf_pathToUtf8(folder));
    std::vector<fs::path> files;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
        const bool airport =
            entry.path().extension() == ".xml" && entry.path().stem().native().size() == kAirportCodeLength;
        if (airport && entry.is_regular_file()) files.push_back(entry.path());
    }
    for (const fs::path& file : files) fs::remove(file);
}

void lf_removeFormerThings() {
    for (const char* name : kFormerParameters) gf_removeParameter(name);
    fs::remove(kFormerCallsignFile);
    fs::remove_all(kFormerLearnFolder);
    fs::remove(gFiles().versionsJson);
    lf_removeFormerAirportFiles();
    fs::remove(gFiles().airportsMsfs);
    fs::remove(gFiles().airportsMsfsNames);
    fs::remove_all(gFiles().newVersion);
}

void lf_switchOn(CheckBox& box) {
    box.current = true;
    gf_storeParameter(box);
    gf_showInControl(box);
}

}  // namespace

bool updateOptions() {
    const VersionData& program = gf_programVersion();
    const std::string storedText = PROGRAM_VERSION.current.get();
    const VersionData stored(storedText);
    if (storedText.empty() || stored != program) {
        PROGRAM_VERSION.current.set(program.text());
        gf_storeParameter(PROGRAM_VERSION);
    }
    if (storedText.empty() || stored >= program) return false;
    gf_log(fmt::format("This is a version update from {} -> {}", stored.text(), program.text()));
    if (stored < kOldestConvertible) return true;
    try {
        lf_removeFormerThings();
    } catch (const std::exception& e) {
        gf_logError(fmt::format("{} exception:{}", "updateOptions", e.what()));
    }
    return false;
}

bool updateOptionsWrapped(bool keepCurrent) {
    try {
        if (gf_loadParameters(keepCurrent)) {
            lf_switchOn(SCAN_LIVERIES);
            lf_switchOn(SCAN_AIRPORTS);
            return true;
        }
        if (updateOptions()) {
            gf_log(
                "\nYour previous version was too old to convert the old text box parameters to the new"
                "dropbox values.");
            gf_log(fmt::format("{} re-starts with default parameter values ...\n", kProgramName));
            gf_saveParameters(true);
        }
    } catch (const std::exception& e) {
        gf_logError(fmt::format("{} exception:{}", "updateOptionsWrapped", e.what()));
    }
    return false;
}

}  // namespace hcr
