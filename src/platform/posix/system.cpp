#include "platform/system.h"

#include <fcntl.h>
#include <pwd.h>
#include <spawn.h>
#include <sys/file.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <map>
#include <mutex>
#include <system_error>

#include "platform/system_source.h"

extern char** environ;

namespace hcr {
namespace {

namespace fs = std::filesystem;

fs::path lf_home() {
    if (const char* home = std::getenv("HOME"); home != nullptr && home[0] == '/') return home;
    if (const passwd* user = getpwuid(getuid()); user != nullptr && user->pw_dir != nullptr) return user->pw_dir;
    return "/";
}

/// A folder named by the environment; a name that isn't absolute counts as none.
fs::path lf_environmentFolder(const char* variable, const fs::path& otherwise) {
    const char* value = std::getenv(variable);
    return value != nullptr && value[0] == '/' ? fs::path(value) : otherwise;
}

std::mutex gViewersMutex;
std::vector<pid_t> gViewers;  // started programs that nobody has waited for; guarded by gViewersMutex

/// Takes leave of the viewers that have ended, so that they don't stay as zombies.
void lf_reapViewers() {
    std::erase_if(gViewers, [](pid_t viewer) { return waitpid(viewer, nullptr, WNOHANG) != 0; });
}

bool lf_hasDisplay() {
    for (const char* variable : {"DISPLAY", "WAYLAND_DISPLAY"}) {
        if (const char* value = std::getenv(variable); value != nullptr && value[0] != '\0') return true;
    }
    return false;
}

std::mutex gInstancesMutex;
std::map<std::string, int> gInstances;  // lock files that stay open as long as the process lives

std::string lf_lockFile(const std::string& name) {
    std::string file = name;
    for (char& c : file) {
        if (c == '/') c = '_';
    }
    std::error_code error;
    const fs::path shared = fs::temp_directory_path(error);
    const fs::path folder = lf_environmentFolder("XDG_RUNTIME_DIR", shared);
    if (folder == shared) file += "-" + std::to_string(getuid());
    return (folder / (file + ".lock")).native();
}

std::atomic<std::atomic<bool>*> gTerminateFlag{nullptr};
static_assert(std::atomic<bool>::is_always_lock_free && std::atomic<std::atomic<bool>*>::is_always_lock_free,
              "a signal handler can't wait for a lock");

extern "C" void lf_onSignal(int) {
    if (std::atomic<bool>* flag = gTerminateFlag.load()) flag->store(true);
}

bool lf_isIgnored(int number) {
    struct sigaction present {};
    return sigaction(number, nullptr, &present) == 0 && present.sa_handler == SIG_IGN;
}

void lf_catchSignal(int number) {
    struct sigaction action {};
    action.sa_handler = lf_onSignal;
    sigemptyset(&action.sa_mask);
    sigaction(number, &action, nullptr);
}

}  // namespace

fs::path gf_systemRoamingFolder() {
    return lf_environmentFolder("XDG_CONFIG_HOME", lf_home() / ".config");
}

fs::path gf_systemLocalFolder() {
    return lf_environmentFolder("XDG_DATA_HOME", lf_home() / ".local" / "share");
}

fs::path gf_programFolder() {
    std::error_code error;
    const fs::path program = fs::read_symlink("/proc/self/exe", error);
    return error ? fs::current_path(error) : program.parent_path();
}

bool gf_openForUser(const fs::path& path) {
    std::error_code error;
    const fs::path whole = fs::absolute(path, error);
    // Without a display the opener would take over the terminal.
    if (error || !fs::exists(whole, error) || !lf_hasDisplay() || !gMayOpenForUser) return false;

    posix_spawn_file_actions_t actions;
    if (posix_spawn_file_actions_init(&actions) != 0) return false;
    for (const int fd : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        posix_spawn_file_actions_addopen(&actions, fd, "/dev/null", O_RDWR, 0);
    }
    std::string program = "xdg-open", argument = whole.native();
    char* arguments[] = {program.data(), argument.data(), nullptr};
    pid_t viewer = 0;
    const int failure = posix_spawnp(&viewer, program.c_str(), &actions, nullptr, arguments, environ);
    posix_spawn_file_actions_destroy(&actions);
    const std::lock_guard lock(gViewersMutex);
    lf_reapViewers();
    if (failure == 0) gViewers.push_back(viewer);
    return failure == 0;
}

void gf_showAlert(const std::string& title, const std::string& text) {
    std::fprintf(stderr, "%s: %s\n", title.c_str(), text.c_str());
}

bool gf_claimSingleInstance(const std::string& name) {
    const std::lock_guard lock(gInstancesMutex);
    if (gInstances.contains(name)) return true;
    const int fd = open(lf_lockFile(name).c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
    // A system without a place for the mark must not keep the program from running.
    if (fd < 0) return true;
    if (flock(fd, LOCK_EX | LOCK_NB) != 0) {
        const bool isHeld = errno == EWOULDBLOCK;
        close(fd);
        return !isHeld;
    }
    gInstances[name] = fd;
    return true;
}

bool gf_isElevated() {
    return geteuid() == 0;
}

std::vector<std::string> gf_arguments(int argc, char** argv) {
    std::vector<std::string> arguments;
    for (int i = 1; i < argc; ++i) arguments.emplace_back(argv[i]);
    return arguments;
}

void gf_prepareConsole() {
    // A closed pipe behind standard output is no reason to die.
    std::signal(SIGPIPE, SIG_IGN);
}

void gf_leaveProcess(int code) {
    std::fflush(nullptr);
    std::_Exit(code);
}

void gf_onTerminate(std::atomic<bool>& flag) {
    gTerminateFlag = &flag;
    std::signal(SIGPIPE, SIG_IGN);
    lf_catchSignal(SIGINT);
    lf_catchSignal(SIGTERM);
    if (!lf_isIgnored(SIGHUP)) lf_catchSignal(SIGHUP);  // ignored under nohup
}

u64 gf_residentBytes() {
    std::ifstream memory("/proc/self/statm");
    u64 allPages = 0, residentPages = 0;
    if (!(memory >> allPages >> residentPages)) return 0;
    const long pageSize = sysconf(_SC_PAGESIZE);
    return pageSize > 0 ? residentPages * static_cast<u64>(pageSize) : 0;
}

}  // namespace hcr
