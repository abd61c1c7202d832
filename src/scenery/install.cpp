#include "scenery/install.h"

#include "shell/parameters.h"

namespace hcr {

std::string gf_simulatorPath() {
    return (gf_sim2024Chosen() ? MSFS_2024_INSTALL_PATH : MSFS_INSTALL_PATH).current.get();
}

std::string gf_detectInstallPath() {
    return {};
}

}  // namespace hcr
