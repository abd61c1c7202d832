#include <fmt/format.h>

#include <charconv>
#include <cstdio>
#include <filesystem>
#include <map>

#include "commands.h"
#include "liveries/matching.h"
#include "shell/parameters.h"
#include "shell/text.h"
#include "tools/data/match_data.h"
#include "tools/data/match_report.h"

using namespace hcr;

namespace {

constexpr std::size_t kShownFaults = 10;

struct MatchArguments {
    MatchQuestion question;
    std::filesystem::path work = ".";
    i32 depth = 0;  ///< 0: as the settings say
    std::vector<std::string> refused;
};

i32 depthOf(std::string_view text) {
    i32 depth = 0;
    const auto [end, fault] = std::from_chars(text.data(), text.data() + text.size(), depth);
    const bool whole = fault == std::errc{} && end == text.data() + text.size();
    if (!whole || depth < MATCHING_DEPTH.lower || depth > MATCHING_DEPTH.upper) {
        throw UsageError{fmt::format("--depth: '{}' is no number from {} to {}", text, MATCHING_DEPTH.lower,
                                     MATCHING_DEPTH.upper)};
    }
    return depth;
}

MatchArguments parseArguments(const std::vector<std::string>& arguments) {
    MatchArguments result;
    MatchQuestion& question = result.question;
    const std::map<std::string_view, std::string*> codes{
        {"--airline", &question.airline}, {"--type", &question.type}, {"--reg", &question.registration},
        {"--callsign", &question.callsign}, {"--from", &question.from}, {"--to", &question.to}};
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& name = arguments[i];
        const auto value = [&]() -> const std::string& {
            if (i + 1 >= arguments.size()) throw UsageError{fmt::format("{} needs a value", name)};
            return arguments[++i];
        };
        if (const auto code = codes.find(name); code != codes.end()) {
            *code->second = gf_upper(gf_trim(value()));
        } else if (name == "--cargo") {
            question.cargo = true;
        } else if (name == "--all") {
            question.allTitles = true;
        } else if (name == "--depth") {
            result.depth = depthOf(value());
        } else if (name == "--refused") {
            result.refused.push_back(value());
        } else if (name == "--work") {
            result.work = gf_pathFromUtf8(value());
        } else {
            throw UsageError{fmt::format("unknown argument {}", name)};
        }
    }
    if (question.type.empty() && question.registration.empty()) throw UsageError{"--type or --reg is needed"};
    return result;
}

void printFaults(const std::vector<std::string>& faults) {
    if (faults.empty()) return;
    fmt::print("Faults in the files\n");
    for (std::size_t i = 0; i < faults.size() && i < kShownFaults; ++i) fmt::print("  {}\n", faults[i]);
    if (faults.size() > kShownFaults) fmt::print("  and {} more\n", faults.size() - kShownFaults);
    fmt::print("\n");
}

}  // namespace

int runMatch(const std::vector<std::string>& arguments) {
    const MatchArguments given = parseArguments(arguments);
    const MatchData data(given.work);
    if (given.depth != 0) MATCHING_DEPTH.current = given.depth;
    failedTitles.insert(given.refused.begin(), given.refused.end());
    const std::string report = gf_matchReport(given.question);
    printFaults(data.faults);
    fmt::print("{}", report);
    return kExitGood;
}
