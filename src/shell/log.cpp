#include "shell/log.h"

#include <fmt/format.h>

#include <fstream>
#include <mutex>
#include <stdexcept>

#include "shell/generations.h"
#include "shell/parameters.h"
#include "shell/run_stop.h"
#include "shell/text.h"
#include "shell/time_text.h"

namespace hcr {
namespace {

constexpr const char* kSimulatorNames = "MSFS 2020/2024";

/// Guards every write and flush. The innermost lock: nothing else is taken while it is held.
std::recursive_mutex gLogMutex;
std::ofstream gLogStream;

void lf_writeLine(std::string_view mark, std::string_view line) {
    // One full disk must not silence the log for the rest of the run.
    if (!gLogStream) gLogStream.clear();
    gLogStream << mark << line << '\n';
}

}  // namespace

void gf_openLog(const std::filesystem::path& path) {
    const std::lock_guard lock(gLogMutex);
    gf_closeLog();
    gf_saveUpto3GenerationsOf(path);
    gLogStream.open(path, std::ios::binary | std::ios::trunc);
    if (!gLogStream.is_open()) throw std::runtime_error("Failed to write file " + gf_pathToUtf8(path));
    gf_log(fmt::format("{} (utc) {} version {} for {}", gf_utcTimeText(), kProgramName, gf_programVersion().text(),
                       kSimulatorNames));
}

void gf_closeLog() {
    const std::lock_guard lock(gLogMutex);
    if (gLogStream.is_open()) gLogStream.close();
    gLogStream.clear();
}

void gf_log(std::string_view line) {
    const std::lock_guard lock(gLogMutex);
    if (gLogStream.is_open()) lf_writeLine("", line);
}

void gf_logFlush() {
    const std::lock_guard lock(gLogMutex);
    if (gLogStream.is_open()) gLogStream.flush();
}

void gf_logError(std::string_view line) {
    const std::lock_guard lock(gLogMutex);
    if (!gLogStream.is_open()) return;
    lf_writeLine("==> ", line);
    gLogStream.flush();
}

void gf_logIfRunning(std::string_view line) {
    if (!gf_stopAsked()) gf_log(line);
}

std::string gf_logBanner(i32 width, i32 extra, bool lineFeedBefore, bool lineFeedAfter, std::string_view text) {
    const i64 sum = i64{width} + extra;
    const auto w = static_cast<std::size_t>(sum > 0 ? sum + sum % 2 : 0);
    std::string banner;
    if (lineFeedBefore) banner += '\n';
    if (text.empty()) {
        banner.append(w, '*');
    } else if (w > text.size() + 2) {
        // Half the width on each side, so that the whole is as wide as the word is long beyond w.
        const std::string stars(w / 2 - 1, '*');
        banner += fmt::format("{} {} {}", stars, text, stars);
    } else {
        banner += text;
    }
    if (lineFeedAfter) banner += '\n';
    return banner;
}

}  // namespace hcr
