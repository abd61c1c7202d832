#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "platform/types.h"

namespace hcr {

// Log.txt. Every function may be called from any thread; one line is one unit. While the log isn't open all calls do
// nothing. Lines are passed without their line feed.

/// Writes the file anew from now on, with this line first. False when it can't be opened: the log is closed then.
bool gf_logInto(const std::filesystem::path& path, std::string_view firstLine);
/// Lets the lines go to standard output instead; for tools. No first line.
void gf_openLogOnStandardOutput();
/// Flushes and closes; for tests and for the end of the process.
void gf_closeLog();

/// One line; gf_logFlush brings all so far to the disk.
void gf_log(std::string_view line);
void gf_logFlush();
/// Marks the line with "==> " and flushes: for failures that somebody will look for.
void gf_logError(std::string_view line);
/// gf_log unless a stop was asked for.
void gf_logIfRunning(std::string_view line);

/// Lines whose number the feed or the simulator decides. Without a limit they would fill the disk within minutes.
enum class LogKind : i32 {
    trafficLine,
    qnhReport,
    qnhText,
    noQnh,
    feedOverrun,
    rtReply,
    rtOverrun,
    rtVersion,
    rtSending,
    rtReturn,
    rtGone,
    simUnknownId,
    simDataSize,
    simFlightPlan,
    simOperation,
    simObjects,
    simException,
    simMessage,
    foreignObject,
    flightPlanFile,
    respawn,
    ghost,
    curve,
    emptyStream,
    count_
};
/// Whether a line of this kind may be written now. Of each kind 20 a minute are; the others are counted, and behind the
/// minute, at the latest with the next line of the log, one line tells how many there were. To be asked before the line
/// is put together. Allocates nothing for those left out.
bool gf_mayLog(LogKind kind);
/// Tells of all lines left out so far, at the end of a run. gf_closeLog does the same.
void gf_logLeftOut();

/// A line of stars around `text`; see the width rule in the definition. Writes nothing.
std::string gf_logBanner(i32 width, i32 extra, bool lineFeedBefore, bool lineFeedAfter, std::string_view text);
/// Head and foot of a section of the log, 80 stars wide around the word and without one.
inline constexpr i32 kLogSectionWidth = 80;
inline constexpr i32 kLogSectionHeadWidth = 70;

}  // namespace hcr
