#include "shell/command_line.h"

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <gtest/gtest.h>

namespace hcr {
namespace {

using Arguments = std::vector<std::string>;

/// What differs from an empty command line.
std::string told(const CommandLine& line) {
    std::string text;
    if (line.production) text += "production ";
    if (line.headless) text += "headless ";
    if (line.help) text += "help ";
    if (line.sandboxAsked) text += "sandbox=" + line.sandbox.string() + " ";
    if (!line.simConnect.empty()) text += "simconnect=" + line.simConnect.string() + " ";
    if (!line.trace.empty()) text += "trace=" + line.trace.string() + " ";
    if (line.trafficPort != 0) text += fmt::format("traffic={} ", line.trafficPort);
    if (line.weatherPort != 0) text += fmt::format("weather={} ", line.weatherPort);
    if (line.tableSeconds != 0) text += fmt::format("table={} ", line.tableSeconds);
    if (line.seconds != 0) text += fmt::format("seconds={} ", line.seconds);
    if (!line.error.empty()) text += line.error + " ";
    if (!text.empty()) text.pop_back();
    return text;
}

struct Row {
    Arguments arguments;
    const char* meaning;
};

void expectMeanings(const std::vector<Row>& rows) {
    for (const Row& row : rows) {
        EXPECT_EQ(told(gf_readCommandLine(row.arguments)), row.meaning) << fmt::format("{}", row.arguments);
    }
}

TEST(CommandLine, EveryOptionIsUnderstoodInBothSpellingsAndAnyCase) {
    expectMeanings({
        {{}, ""},
        {{"--production"}, "production"},
        {{"/Production"}, "production"},
        {{"--PRODUCTION", "/no-production"}, ""},
        {{"--no-production", "--production"}, "production"},
        {{"--headless", "--table", "5", "--seconds", "3600"}, "headless table=5 seconds=3600"},
        {{"/HEADLESS", "/table", "3600"}, "headless table=3600"},
        {{"--sandbox", "/home/me/s.json", "--trace", "t.jsonl"}, "sandbox=/home/me/s.json trace=t.jsonl"},
        {{"--sandbox", ""}, "sandbox="},
        {{"--sandbox"}, "sandbox="},
        {{"--sandbox", "--headless"}, "headless sandbox="},
        {{"--sandbox", "/Table", "5"}, "sandbox= table=5"},
        {{"--sandbox", "/tables"}, "sandbox=/tables"},
        {{"/SimConnect", "C:\\x y\\SimConnect.dll"}, "simconnect=C:\\x y\\SimConnect.dll"},
        {{"--seconds", "2592000"}, "seconds=2592000"},
        {{"--traffic-port", "1", "--weather-port", "65535"}, "traffic=1 weather=65535"},
        {{"--help"}, "help"},
        {{"/?"}, "help"},
        {{"fast", "--table", "--HELP"}, "help"},
        {{"--trace", "--headless"}, "trace=--headless"},
        {{"--table=5", "--sandbox=s.json", "--seconds", "7", "--seconds", "8"}, "sandbox=s.json table=5 seconds=8"},
    });
}

TEST(CommandLine, AFaultIsTold) {
    expectMeanings({
        {{"fast"}, "unknown argument 'fast'"},
        {{"-headless"}, "unknown argument '-headless'"},
        {{""}, "unknown argument ''"},
        {{"/home/headless"}, "unknown argument '/home/headless'"},
        {{"--headless", "--heedless", "--production"}, "production headless unknown argument '--heedless'"},
        {{"--sandbox", "s.json", "t.json"}, "sandbox=s.json unknown argument 't.json'"},
        {{"--simconnect"}, "--simconnect needs a value"},
        {{"--simconnect", "a.dll", "--sandbox"},
         "sandbox= simconnect=a.dll --sandbox and --simconnect name two simulators, one is possible"},
        {{"/trace"}, "--trace needs a value"},
        {{"--headless", "--table"}, "headless --table needs a value"},
        {{"--table", "0"}, "--table: '0' is no number from 1 to 3600"},
        {{"--table", "3601"}, "--table: '3601' is no number from 1 to 3600"},
        {{"--table", "5s"}, "--table: '5s' is no number from 1 to 3600"},
        {{"--table", " 5"}, "--table: ' 5' is no number from 1 to 3600"},
        {{"--table", ""}, "--table: '' is no number from 1 to 3600"},
        {{"--traffic-port", "65536"}, "--traffic-port: '65536' is no number from 1 to 65535"},
        {{"--seconds", "-1"}, "--seconds: '-1' is no number from 1 to 2592000"},
        {{"--seconds", "1e3"}, "--seconds: '1e3' is no number from 1 to 2592000"},
        {{"--seconds", "99999999999999999999"}, "--seconds: '99999999999999999999' is no number from 1 to 2592000"},
    });
}

}  // namespace
}  // namespace hcr
