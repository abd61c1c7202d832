#include "shell/shell_world.h"

#include <cstdlib>
#include <fstream>
#include <iterator>

#include "shell/file_names.h"
#include "shell/log.h"
#include "shell/parameters.h"
#include "shell/run_stop.h"

namespace fs = std::filesystem;

namespace hcr::test {

void ShellWorld::SetUp() {
    before = fs::current_path();
    std::string name = (fs::temp_directory_path() / "halcyrane-shell-XXXXXX").string();
    ASSERT_NE(mkdtemp(name.data()), nullptr);
    folder = name;
    fs::current_path(folder);
    const char* config = std::getenv("XDG_CONFIG_HOME");
    configBefore = config != nullptr ? config : "";
    setenv("XDG_CONFIG_HOME", (folder / "config").c_str(), 1);
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
    if (configBefore.empty()) {
        unsetenv("XDG_CONFIG_HOME");
    } else {
        setenv("XDG_CONFIG_HOME", configBefore.c_str(), 1);
    }
    gf_rebuildFileNames();
    fs::current_path(before);
    fs::remove_all(folder);
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
