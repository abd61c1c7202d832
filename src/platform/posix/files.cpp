#include "platform/files.h"

namespace hcr {

std::filesystem::path gf_absolutePath(const std::filesystem::path& path, std::error_code& error) {
    return std::filesystem::absolute(path, error);
}

void gf_moveOnto(const std::filesystem::path& from, const std::filesystem::path& to, std::error_code& error) {
    std::filesystem::rename(from, to, error);
}

}  // namespace hcr
