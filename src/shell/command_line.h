#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "platform/types.h"

namespace hcr {

/// What the command line asks for.
struct CommandLine {
    bool production = false;  ///< --production, /production; --no-production ends it, the last one counts
    bool headless = false;    ///< --headless: no window, message line and counters on standard output
    bool help = false;
    bool sandboxAsked = false;          ///< --sandbox [SCENARIO]: fly in the built-in simulator
    std::filesystem::path sandbox;      ///< its scenario; empty = the built-in one
    std::filesystem::path simConnect;   ///< --simconnect FILE: the simulator's client library; empty = the usual one
    std::filesystem::path trace;        ///< --trace FILE: of the sandbox
    u16 trafficPort = 0;                ///< --traffic-port N: UDP port of the feed's traffic, 0 = RealTraffic's own
    u16 weatherPort = 0;                ///< --weather-port N: UDP port of its weather, 0 = RealTraffic's own
    i32 tableSeconds = 0;               ///< --table SECONDS: with --headless a table of the live aircraft this often
    std::vector<std::string> settings;  ///< --set NAME=VALUE: good assignments, to be stored before the run
    bool listSettings = false;          ///< --settings: print all settings and end
    i64 seconds = 0;                    ///< --seconds N: close by itself after so long, 0 = never
    std::string error;                  ///< what could not be understood; empty when all was
};

/// Options are case-insensitive and begin with "--" or "/". Of a command line with a fault the rest may be missing.
CommandLine gf_readCommandLine(const std::vector<std::string>& arguments);
/// The help text.
std::string gf_commandLineHelp();

}  // namespace hcr
