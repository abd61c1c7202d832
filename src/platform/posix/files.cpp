#include "platform/files.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

namespace hcr {
namespace {

namespace fs = std::filesystem;

constexpr mode_t kReadableByAll = 0666;  // less what the user's mask takes away

std::error_code lf_lastError() {
    return {errno, std::generic_category()};
}

bool lf_writeAll(int file, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = write(file, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR) continue;
        if (written < 0) return false;
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

}  // namespace

fs::path gf_absolutePath(const fs::path& path, std::error_code& error) {
    return fs::absolute(path, error);
}

void gf_moveOnto(const fs::path& from, const fs::path& to, std::error_code& error) {
    fs::rename(from, to, error);
}

void gf_writeFile(const fs::path& path, std::string_view bytes, std::error_code& error) {
    error.clear();
    const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, kReadableByAll);
    if (file < 0) {
        error = lf_lastError();
        return;
    }
    if (!lf_writeAll(file, bytes)) error = lf_lastError();
    if (close(file) != 0 && !error) error = lf_lastError();  // some file systems tell only now
}

bool gf_isDiskFull(const std::error_code& error) {
    return error == std::errc::no_space_on_device || error == std::error_code(EDQUOT, std::generic_category());
}

}  // namespace hcr
