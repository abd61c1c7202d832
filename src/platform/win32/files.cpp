#include "platform/files.h"

#include <algorithm>

#include "platform/win32/windows_header.h"

namespace hcr {
namespace {

namespace fs = std::filesystem;

constexpr int kMoveTries = 10;
constexpr DWORD kMovePauseMs = 50;
constexpr int kDiskQuotaExceeded = 1295;  // newer than some headers

std::error_code lf_lastError() {
    return {static_cast<int>(GetLastError()), std::system_category()};
}

/// Virus scanners, indexers and backups hold a file for moments and don't let others move it meanwhile.
bool lf_mayPass(DWORD error) {
    return error == ERROR_SHARING_VIOLATION || error == ERROR_LOCK_VIOLATION || error == ERROR_ACCESS_DENIED;
}

bool lf_writeAll(HANDLE file, std::string_view bytes) {
    constexpr std::size_t kLargestPiece = 16 * 1048576;  // the system's size has 32 bits
    while (!bytes.empty()) {
        const auto piece = static_cast<DWORD>(std::min(bytes.size(), kLargestPiece));
        DWORD written = 0;
        if (WriteFile(file, bytes.data(), piece, &written, nullptr) == FALSE) return false;
        bytes.remove_prefix(written);
    }
    return true;
}

}  // namespace

// The library's own takes "\\server\share" for a path that begins at the root of the current drive.
fs::path gf_absolutePath(const fs::path& path, std::error_code& error) {
    error.clear();
    std::wstring whole(MAX_PATH, L'\0');
    for (;;) {
        const DWORD length = GetFullPathNameW(path.c_str(), static_cast<DWORD>(whole.size()), whole.data(), nullptr);
        if (length == 0) {
            error = lf_lastError();
            return {};
        }
        if (length < whole.size()) return whole.substr(0, length);
        whole.resize(length);
    }
}

void gf_moveOnto(const fs::path& from, const fs::path& to, std::error_code& error) {
    for (int tries = 1;; ++tries) {
        error.clear();
        if (MoveFileExW(from.c_str(), to.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_COPY_ALLOWED) != FALSE) return;
        const DWORD code = GetLastError();
        error = {static_cast<int>(code), std::system_category()};
        if (tries == kMoveTries || !lf_mayPass(code)) return;
        Sleep(kMovePauseMs);
    }
}

void gf_writeFile(const fs::path& path, std::string_view bytes, std::error_code& error) {
    error.clear();
    const HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_ALWAYS,
                                    FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        error = lf_lastError();
        return;
    }
    if (!lf_writeAll(file, bytes)) error = lf_lastError();
    if (CloseHandle(file) == FALSE && !error) error = lf_lastError();
}

bool gf_isDiskFull(const std::error_code& error) {
    if (error == std::errc::no_space_on_device) return true;
    return error.category() == std::system_category() &&
           (error.value() == ERROR_DISK_FULL || error.value() == ERROR_HANDLE_DISK_FULL ||
            error.value() == kDiskQuotaExceeded);
}

}  // namespace hcr
