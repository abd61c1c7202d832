#include "shell/program_update.h"

#include <fmt/format.h>

#include "shell/log.h"
#include "shell/version.h"

namespace hcr {

bool gf_updateProgram(const VersionData& webVersion) {
    gf_log(fmt::format("{} version {} is newer than this one", kProgramName, webVersion.text()));
    return false;
}

}  // namespace hcr
