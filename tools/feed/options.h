#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "tools/feed/generator.h"

namespace hcr {

enum class FeedCommand { play, generate, record };

/// What the command line asks for.
struct FeedOptions {
    FeedCommand command = FeedCommand::generate;
    std::filesystem::path file;      ///< of play and record
    std::filesystem::path out;       ///< of generate; empty: send
    std::string host = "127.0.0.1";  ///< IPv4 address to which datagrams go
    u16 trafficPort = 0, weatherPort = 0;
    std::string controlHost;  ///< empty: host
    u16 controlPort = 10747;
    bool control = true;               ///< connect to the control channel
    std::string version = "10.0.240";  ///< answer to the version question
    f64 seconds = 0;                   ///< end after so long; 0 = at the end of the lines
    f64 speed = 1;
    bool loop = false;
    bool keepTimestamps = false;
    std::string help;   ///< the help text when nothing else is wanted
    bool list = false;  ///< print the generated aircraft
    i32 qnh = 1013;     ///< of play, where the recording has no weather
    GenerateOptions generate;
};

/// Throws std::runtime_error with a text for the user.
FeedOptions parseFeedOptions(const std::vector<std::string>& arguments);

}  // namespace hcr
