#include "platform/user_folders.h"

#include "platform/system_source.h"

namespace hcr {
namespace {

std::filesystem::path gRoamingFolder, gLocalFolder;  // empty: the system's

}  // namespace

std::filesystem::path gf_roamingFolder() {
    return gRoamingFolder.empty() ? gf_systemRoamingFolder() : gRoamingFolder;
}

std::filesystem::path gf_localFolder() {
    return gLocalFolder.empty() ? gf_systemLocalFolder() : gLocalFolder;
}

void gf_useUserFolders(const std::filesystem::path& roaming, const std::filesystem::path& local) {
    gRoamingFolder = roaming;
    gLocalFolder = local;
}

}  // namespace hcr
