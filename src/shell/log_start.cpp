#include "shell/log_start.h"

#include <fmt/format.h>

#include <stdexcept>

#include "platform/files.h"
#include "shell/generations.h"
#include "shell/log.h"
#include "shell/text.h"
#include "shell/time_text.h"
#include "shell/version.h"

namespace hcr {
namespace {

constexpr const char* kSimulatorNames = "MSFS 2020/2024";

/// The stream doesn't tell why it couldn't be opened: the system is asked again.
std::string lf_openFaultText(const std::filesystem::path& path) {
    std::error_code reason, ignored;
    gf_writeFile(path, "", reason);
    const std::filesystem::path folder = gf_absolutePath(path, ignored).parent_path();
    return fmt::format(
        "Failed to write file {} in the folder {}: {}. {} writes into the folder in which it stands: move "
        "it into one where you may write, such as one below your own documents.",
        gf_shownPath(path), gf_shownPath(folder), gf_writeFaultText(reason), kProgramName);
}

}  // namespace

void gf_openLog(const std::filesystem::path& path) {
    gf_closeLog();
    gf_saveUpto3GenerationsOf(path);
    const std::string firstLine = fmt::format("{} (utc) {} version {} for {}", gf_utcTimeText(), kProgramName,
                                              gf_programVersion().text(), kSimulatorNames);
    if (!gf_logInto(path, firstLine)) throw std::runtime_error(lf_openFaultText(path));
}

}  // namespace hcr
