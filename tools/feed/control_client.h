#pragma once

#include <atomic>
#include <string>
#include <string_view>

#include "platform/types.h"

namespace hcr {

/// What the client keeps between two lines that it is told.
struct ControlClient {
    std::string host;
    u16 port = 0;
    std::string version;      ///< for the answer to the version question
    i64 positionShownUs = 0;  ///< steady time of the last position line
    i64 clockShownUs = 0;
};

/// Keeps a connection to the program's control channel until `stop`: answers the version question, prints what it is
/// told, and connects again when the connection goes. A thread of its own.
void runControlClient(ControlClient& client, const std::atomic<bool>& stop);

/// What is to be sent back for one line without its line end; empty for nothing. Prints what the line tells.
std::string answerControlLine(ControlClient& client, std::string_view line);

}  // namespace hcr
