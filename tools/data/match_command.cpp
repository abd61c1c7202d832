#include <fmt/format.h>

#include <cstdio>

#include "commands.h"
#include "liveries/match_memory.h"
#include "shell/parameters.h"
#include "tools/data/match_data.h"

using namespace hcr;

namespace {

constexpr std::size_t kShownFaults = 10;

void printFaults(const std::vector<std::string>& faults) {
    if (faults.empty()) return;
    fmt::print("Faults in the files\n");
    for (std::size_t i = 0; i < faults.size() && i < kShownFaults; ++i) fmt::print("  {}\n", faults[i]);
    if (faults.size() > kShownFaults) fmt::print("  and {} more\n", faults.size() - kShownFaults);
    fmt::print("\n");
}

}  // namespace

int runMatch(const MatchArguments& given) {
    const MatchData data(given.work);
    if (given.depth != 0) MATCHING_DEPTH.current = given.depth;
    failedTitles.insert(given.refused.begin(), given.refused.end());
    const std::string report = gf_matchReport(given.question);
    printFaults(data.faults);
    fmt::print("{}", report);
    return kExitGood;
}
