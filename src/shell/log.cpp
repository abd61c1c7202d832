#include "shell/log.h"

#include <fmt/format.h>

#include <cstdlib>
#include <fstream>
#include <iostream>
#include <mutex>
#include <stdexcept>

#include "platform/files.h"
#include "shell/generations.h"
#include "shell/parameters.h"
#include "shell/run_stop.h"
#include "shell/text.h"
#include "shell/time_text.h"

namespace hcr {
namespace {

constexpr const char* kSimulatorNames = "MSFS 2020/2024";

struct LogState {
    /// Guards every write and flush. The innermost lock: nothing else is taken while it is held.
    std::recursive_mutex mutex;
    std::ofstream file;
    std::ostream* stream = nullptr;  ///< the file or standard output; null while the log isn't open
};

/// Made at the first use and never destroyed, so that a thread that outlives main may still log.
LogState& lf_log() {
    static LogState& state = *new LogState;
    return state;
}

void lf_writeLine(std::ostream& stream, std::string_view mark, std::string_view line) {
    // One full disk must not silence the log for the rest of the run.
    if (!stream) stream.clear();
    stream << mark << line << '\n';
}

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
    LogState& log = lf_log();
    const std::lock_guard lock(log.mutex);
    gf_closeLog();
    // What is buffered reaches the file however the process ends; later lines are dropped.
    [[maybe_unused]] static const int registered = std::atexit(gf_closeLog);
    gf_saveUpto3GenerationsOf(path);
    log.file.open(path, std::ios::binary | std::ios::trunc);
    if (!log.file.is_open()) throw std::runtime_error(lf_openFaultText(path));
    log.stream = &log.file;
    gf_log(fmt::format("{} (utc) {} version {} for {}", gf_utcTimeText(), kProgramName, gf_programVersion().text(),
                       kSimulatorNames));
}

void gf_openLogOnStandardOutput() {
    LogState& log = lf_log();
    const std::lock_guard lock(log.mutex);
    gf_closeLog();
    log.stream = &std::cout;
}

void gf_closeLog() {
    LogState& log = lf_log();
    const std::lock_guard lock(log.mutex);
    gf_logFlush();
    log.stream = nullptr;
    if (log.file.is_open()) log.file.close();
    log.file.clear();
}

void gf_log(std::string_view line) {
    LogState& log = lf_log();
    const std::lock_guard lock(log.mutex);
    if (log.stream != nullptr) lf_writeLine(*log.stream, "", line);
}

void gf_logFlush() {
    LogState& log = lf_log();
    const std::lock_guard lock(log.mutex);
    if (log.stream != nullptr) log.stream->flush();
}

void gf_logError(std::string_view line) {
    LogState& log = lf_log();
    const std::lock_guard lock(log.mutex);
    if (log.stream == nullptr) return;
    lf_writeLine(*log.stream, "==> ", line);
    log.stream->flush();
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
