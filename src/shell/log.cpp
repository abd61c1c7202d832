#include "shell/log.h"

#include <fmt/format.h>

#include <array>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <limits>
#include <mutex>

#include "platform/clock.h"
#include "shell/run_stop.h"

namespace hcr {
namespace {

constexpr u32 kLinesPerMinute = 20;
constexpr i64 kMinuteUs = 60'000'000;

constexpr std::size_t kKinds = static_cast<std::size_t>(LogKind::count_);
/// The beginning of the lines of each kind, by which the line that tells of others refers to them.
constexpr std::array kLineStarts = {
    "exception in processLineSub",
    "Exception",
    "QNH string parse error",
    "no QNH",
    "buffer overrun",
    "receive",
    "receive: buffer overrun",
    "lf_processRTVersion",
    "sendDataPacket to RealTraffic failed",
    "RealTraffic re-connected",
    "RealTraffic gone?",
    "SIMCONNECT_EXCEPTION_UNRECOGNIZED_ID",
    "SIMCONNECT_EXCEPTION_INVALID_DATA_SIZE",
    "SimConnect exception: load flight plan failed",
    "SIMCONNECT_EXCEPTION_OPERATION_INVALID_FOR_OBJECT_TYPE",
    "SimConnect: too many objects",
    "SIMCONNECT_EXCEPTION",
    "! Unknown Dispatch dwID",
    "just spawned, but not by",
    "creating a flight plan failed",
    "aircraft respawns",
    "is a ghost and will be removed",
    "error in curve",
    "empty sz?",
};
static_assert(kLineStarts.size() == kKinds);

/// What has been written of a kind in its minute, which begins with a line.
struct KindCount {
    i64 endUs = 0;
    u32 written = 0;
    u64 leftOut = 0;
};

struct LogState {
    /// Guards all of it. The innermost lock: nothing else is taken while it is held.
    std::recursive_mutex mutex;
    std::ofstream file;
    std::ostream* stream = nullptr;  ///< the file or standard output; null while the log isn't open
    std::array<KindCount, kKinds> kinds;
    u32 incomplete = 0;  ///< kinds of which lines were left out
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

void lf_tellLeftOut(LogState& log, std::size_t kind) {
    u64& leftOut = log.kinds[kind].leftOut;
    if (leftOut == 0) return;
    lf_writeLine(*log.stream, "", fmt::format("... and {} more: {}", leftOut, kLineStarts[kind]));
    leftOut = 0;
    --log.incomplete;
}

/// Tells of the kinds whose minute is over by then.
void lf_tellAllLeftOut(LogState& log, i64 untilUs) {
    for (std::size_t kind = 0; kind < kKinds; ++kind) {
        if (log.kinds[kind].endUs <= untilUs) lf_tellLeftOut(log, kind);
    }
}

void lf_write(LogState& log, std::string_view mark, std::string_view line) {
    if (log.incomplete != 0) lf_tellAllLeftOut(log, gf_steadyUs());
    lf_writeLine(*log.stream, mark, line);
}

}  // namespace

bool gf_logInto(const std::filesystem::path& path, std::string_view firstLine) {
    LogState& log = lf_log();
    const std::lock_guard lock(log.mutex);
    gf_closeLog();
    // What is buffered reaches the file however the process ends; later lines are dropped.
    [[maybe_unused]] static const int registered = std::atexit(gf_closeLog);
    log.file.open(path, std::ios::binary | std::ios::trunc);
    if (!log.file.is_open()) return false;
    log.stream = &log.file;
    gf_log(firstLine);
    return true;
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
    gf_logLeftOut();
    gf_logFlush();
    log.kinds = {};
    log.incomplete = 0;
    log.stream = nullptr;
    if (log.file.is_open()) log.file.close();
    log.file.clear();
}

void gf_log(std::string_view line) {
    LogState& log = lf_log();
    const std::lock_guard lock(log.mutex);
    if (log.stream != nullptr) lf_write(log, "", line);
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
    lf_write(log, "==> ", line);
    log.stream->flush();
}

void gf_logIfRunning(std::string_view line) {
    if (!gf_stopAsked()) gf_log(line);
}

bool gf_mayLog(LogKind kind) {
    LogState& log = lf_log();
    const std::lock_guard lock(log.mutex);
    if (log.stream == nullptr) return false;
    KindCount& count = log.kinds[static_cast<std::size_t>(kind)];
    const i64 now = gf_steadyUs();
    if (count.written == 0 || now >= count.endUs) {
        lf_tellLeftOut(log, static_cast<std::size_t>(kind));
        count.endUs = now + kMinuteUs;
        count.written = 0;
    }
    if (count.written < kLinesPerMinute) {
        ++count.written;
        return true;
    }
    if (count.leftOut++ == 0) ++log.incomplete;
    return false;
}

void gf_logLeftOut() {
    LogState& log = lf_log();
    const std::lock_guard lock(log.mutex);
    if (log.stream != nullptr) lf_tellAllLeftOut(log, std::numeric_limits<i64>::max());
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
