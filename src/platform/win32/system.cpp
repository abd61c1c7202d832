#include "platform/system.h"

#include <cstdio>
#include <memory>
#include <system_error>

#include "platform/files.h"
#include "platform/system_source.h"
#include "platform/win32/wide_text.h"
#include "platform/win32/windows_header.h"

namespace hcr {
namespace {

namespace fs = std::filesystem;

constexpr INT_PTR kShellFailure = 32;  // ShellExecuteW: up to here its result is an error

struct CoTaskDeleter {
    void operator()(wchar_t* text) const { CoTaskMemFree(text); }
};

struct LocalDeleter {
    void operator()(LPWSTR* list) const { LocalFree(list); }
};

struct HandleDeleter {
    using pointer = HANDLE;
    void operator()(HANDLE handle) const { CloseHandle(handle); }
};

fs::path lf_knownFolder(const KNOWNFOLDERID& id) {
    wchar_t* text = nullptr;
    const HRESULT result = SHGetKnownFolderPath(id, KF_FLAG_DEFAULT, nullptr, &text);
    const std::unique_ptr<wchar_t, CoTaskDeleter> owner(text);
    return SUCCEEDED(result) && text != nullptr ? fs::path(text) : fs::path();
}

/// Text for the user's eyes: bytes that are no UTF-8 are shown as they are rather than not at all.
std::wstring lf_shownText(const std::string& text) {
    return gf_systemUtf8ToWide(text).value_or(std::wstring(text.begin(), text.end()));
}

/// A shell in the same console, or a file or program behind standard error; a double click brings none of them.
bool lf_isErrorOutputRead() {
    DWORD processes[2] = {};
    if (GetConsoleProcessList(processes, 2) > 1) return true;
    const DWORD kind = GetFileType(GetStdHandle(STD_ERROR_HANDLE));
    return kind == FILE_TYPE_DISK || kind == FILE_TYPE_PIPE;
}

}  // namespace

fs::path gf_systemRoamingFolder() {
    return lf_knownFolder(FOLDERID_RoamingAppData);
}

fs::path gf_systemLocalFolder() {
    return lf_knownFolder(FOLDERID_LocalAppData);
}

fs::path gf_programFolder() {
    std::wstring name(MAX_PATH, L'\0');
    for (;;) {
        const DWORD length = GetModuleFileNameW(nullptr, name.data(), static_cast<DWORD>(name.size()));
        if (length == 0) {
            std::error_code error;
            return fs::current_path(error);
        }
        if (length < name.size()) return fs::path(name.substr(0, length)).parent_path();
        name.resize(name.size() * 2);
    }
}

bool gf_openForUser(const fs::path& path) {
    std::error_code error;
    const fs::path whole = gf_absolutePath(path, error);
    if (error || !fs::exists(whole, error) || !gMayOpenForUser) return false;
    const HINSTANCE result = ShellExecuteW(nullptr, L"open", whole.c_str(), nullptr, nullptr, SW_SHOWNORMAL);
    return reinterpret_cast<INT_PTR>(result) > kShellFailure;
}

void gf_showAlert(const std::string& title, const std::string& text) {
    if (lf_isErrorOutputRead()) {
        std::fprintf(stderr, "%s: %s\n", title.c_str(), text.c_str());
        return;
    }
    MessageBoxW(nullptr, lf_shownText(text).c_str(), lf_shownText(title).c_str(),
                MB_OK | MB_ICONWARNING | MB_SETFOREGROUND);
}

bool gf_claimSingleInstance(const std::string& name) {
    // The handle stays open as long as the process lives.
    const HANDLE mutex = CreateMutexW(nullptr, FALSE, lf_shownText(name).c_str());
    const DWORD error = GetLastError();
    // One that an administrator's process holds can't even be opened by the user's own.
    if (mutex == nullptr) return error != ERROR_ACCESS_DENIED;
    if (error == ERROR_ALREADY_EXISTS) CloseHandle(mutex);
    return error != ERROR_ALREADY_EXISTS;
}

bool gf_isElevated() {
    HANDLE opened = nullptr;
    if (OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &opened) == FALSE) return false;
    const std::unique_ptr<HANDLE, HandleDeleter> token(opened);
    TOKEN_ELEVATION elevation{};
    DWORD size = 0;
    const BOOL isKnown = GetTokenInformation(token.get(), TokenElevation, &elevation, sizeof elevation, &size);
    return isKnown != FALSE && elevation.TokenIsElevated != 0;
}

std::vector<std::string> gf_arguments(int, char**) {
    int count = 0;
    const std::unique_ptr<LPWSTR, LocalDeleter> list(CommandLineToArgvW(GetCommandLineW(), &count));
    std::vector<std::string> arguments;
    for (int i = 1; list != nullptr && i < count; ++i) {
        arguments.push_back(gf_systemWideToUtf8(list.get()[i]).value_or(""));
    }
    return arguments;
}

u64 gf_residentBytes() {
    PROCESS_MEMORY_COUNTERS counters{};
    counters.cb = sizeof counters;
    if (GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters) == FALSE) return 0;
    return counters.WorkingSetSize;
}

}  // namespace hcr
