#include "tools/replay/work_folder.h"

#include <fmt/format.h>

#include <random>
#include <stdexcept>
#include <vector>

#include "platform/system.h"
#include "platform/user_folders.h"
#include "shell/file_names.h"
#include "shell/parameter_file.h"
#include "shell/parameters.h"
#include "shell/text.h"
#include "shell/version.h"

namespace fs = std::filesystem;

namespace hcr {
namespace {

/// The folder that holds the data files, inside the program's folder or in the build's.
fs::path lf_dataFolder(const fs::path& work) {
    std::vector<fs::path> places;
    if (!work.empty()) {
        places = {work / "input"};
    } else {
        places = {fs::current_path() / "input", gf_programFolder() / "input", gf_programFolder() / "data-set"};
    }
    for (const fs::path& place : places) {
        if (fs::exists(place / "dbase.enc")) return place;
    }
    throw std::runtime_error(fmt::format("{} holds no dbase.enc; --work names a folder in which the program works",
                                         gf_shownPath(places.front())));
}

void lf_writeSettings(const fs::path& packages) {
    gf_makeConfigurationFolder();
    gf_resetParameters();
    PROGRAM_VERSION.current.set(gf_programVersion().text());
    MSFS_INSTALL_PATH.current.set(gf_pathToUtf8(packages));
    SCAN_LIVERIES.current = false;
    SCAN_AIRPORTS.current = false;
    AUTO_RANGE.current = false;
    gf_saveParameters(false);
}

}  // namespace

ReplayFolder::ReplayFolder(const fs::path& work) : before(fs::current_path()) {
    const fs::path data = lf_dataFolder(work.empty() ? work : fs::absolute(work));
    path = fs::temp_directory_path() / fmt::format("halcyrane-replay-{:08x}", std::random_device{}());
    for (const char* folder : {"docs", "input/my_regcodes", "output/info"}) fs::create_directories(path / folder);
    for (const char* name : {"dbase.enc", "airports.enc", "AIG-regcodes.enc"}) {
        if (fs::exists(data / name)) fs::copy_file(data / name, path / "input" / name);
    }
    const fs::path liveries = data.parent_path() / "output" / "LiveriesScanned.xml";
    hasLiveries = fs::exists(liveries);
    if (hasLiveries) fs::copy_file(liveries, path / "output" / "LiveriesScanned.xml");
    fs::current_path(path);
    gf_useUserFolders(path / "config", path / "data");
    gf_rebuildFileNames();
    lf_writeSettings(path / "packages");
}

ReplayFolder::~ReplayFolder() {
    std::error_code ignored;
    fs::current_path(before, ignored);
    fs::remove_all(path, ignored);
}

}  // namespace hcr
