#include "shell/shell_world.h"

#include <fmt/format.h>

#include <fstream>
#include <iterator>
#include <random>

#include "platform/user_folders.h"
#include "shell/file_names.h"
#include "shell/log.h"
#include "shell/log_start.h"
#include "shell/parameters.h"
#include "shell/run_stop.h"
#include "shell/text.h"

namespace fs = std::filesystem;

namespace hcr::test {

void ShellWorld::SetUp() {
    before = fs::current_path();
    // A random part keeps processes apart that run at the same time.
    std::random_device device;
    const std::string name = fmt::format("halcyrane-shell-{:08x}{:08x}{}", device(), device(), nameEnd);
    folder = fs::temp_directory_path() / gf_pathFromUtf8(name);
    fs::create_directories(folder);
    fs::current_path(folder);
    gf_useUserFolders(folder / "config", folder / "data");
    gf_rebuildFileNames();
    gf_makeConfigurationFolder();
    gf_resetParameters();
    gStop = false;
    gUserStop = false;
    gf_openLog();
}

void ShellWorld::TearDown() {
    gf_closeLog();
    gf_resetParameters();
    gf_useUserFolders({}, {});
    gf_rebuildFileNames();
    fs::current_path(before);
    std::error_code ignored;  // the library for Windows doesn't reach paths beyond 260 characters here
    fs::remove_all(folder, ignored);
}

std::string ShellWorld::log() {
    gf_logFlush();
    return read("Log.txt");
}

bool ShellWorld::logHas(const std::string& piece) {
    return log().find(piece) != std::string::npos;
}

std::string ShellWorld::read(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void ShellWorld::write(const fs::path& path, const std::string& text) {
    if (path.has_parent_path()) fs::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << text;
}

}  // namespace hcr::test
