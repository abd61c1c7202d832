#pragma once

#include <atomic>
#include <vector>

#include "tools/feed/options.h"

namespace hcr {

/// Sends the lines at their pace, weather lines on the weather port, until their end, options.seconds or `stop`.
/// Throws std::runtime_error when nothing can be sent at all.
void sendLines(const FeedOptions& options, const std::vector<TimedLine>& lines, const std::atomic<bool>& stop);

/// Writes what arrives on the two ports into options.file, until options.seconds or `stop`.
/// Throws std::runtime_error when a port is taken or the file can't be written.
void recordLines(const FeedOptions& options, const std::atomic<bool>& stop);

}  // namespace hcr
