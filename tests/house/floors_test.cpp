#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <string>
#include <vector>

#include "tests/support/environment.h"

// The floors of the house, as docs/architecture.md tells them: a file includes what lies below it, on its own floor
// only files of its own folder, and no files know each other in a circle.

namespace hcr::test {
namespace {

namespace fs = std::filesystem;

/// Ground first.
const std::vector<std::string> kFloors = {"platform", "shell",        "core/model", "sim/port", "scenery",
                                          "liveries", "sim",          "feed",       "parking",  "engine",
                                          "core/run", "shell/window", "main.cpp"};

struct House {
    std::map<std::string, std::set<std::string>> includes;  ///< by file, relative to src
};

House lf_readHouse() {
    const fs::path source = demoData("").parent_path().parent_path() / "src";
    const std::regex include("^#include \"([^\"]+)\"");
    House house;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(source)) {
        const std::string extension = entry.path().extension().string();
        if (extension != ".cpp" && extension != ".h") continue;
        std::set<std::string>& known = house.includes[fs::relative(entry.path(), source).generic_string()];
        std::ifstream file(entry.path());
        std::smatch match;
        for (std::string line; std::getline(file, line);) {
            if (std::regex_search(line, match, include)) known.insert(match[1]);
        }
    }
    return house;
}

/// The floor of a file; its number in the list for a folder or file that has none.
std::size_t lf_floor(const std::string& file) {
    std::size_t best = kFloors.size(), length = 0;
    for (std::size_t i = 0; i < kFloors.size(); ++i) {
        const bool inside = file == kFloors[i] || file.starts_with(kFloors[i] + "/");
        if (!inside || kFloors[i].size() < length) continue;
        best = i;
        length = kFloors[i].size();
    }
    return best;
}

/// A source and its header are one; so are the same file of two systems.
std::string lf_unit(std::string file) {
    file = std::regex_replace(file, std::regex("/(posix|win32)/"), "/");
    return file.substr(0, file.rfind('.'));
}

/// All units that can be reached from one.
std::set<std::string> lf_reachable(const std::map<std::string, std::set<std::string>>& graph, const std::string& from) {
    std::set<std::string> seen;
    std::vector<std::string> next = {from};
    while (!next.empty()) {
        const std::string unit = next.back();
        next.pop_back();
        const auto found = graph.find(unit);
        if (found == graph.end()) continue;
        for (const std::string& known : found->second) {
            if (seen.insert(known).second) next.push_back(known);
        }
    }
    return seen;
}

}  // namespace

TEST(House, NoFileIncludesOneOfAFloorAbove) {
    const House house = lf_readHouse();
    ASSERT_GT(house.includes.size(), 150U);
    for (const auto& [file, known] : house.includes) {
        ASSERT_LT(lf_floor(file), kFloors.size()) << file << " stands on no floor";
        for (const std::string& include : known) {
            EXPECT_LE(lf_floor(include), lf_floor(file)) << file << " includes " << include;
        }
    }
}

TEST(House, NoFilesKnowEachOtherInACircle) {
    std::map<std::string, std::set<std::string>> graph;
    for (const auto& [file, known] : lf_readHouse().includes) {
        for (const std::string& include : known) {
            if (lf_unit(include) != lf_unit(file)) graph[lf_unit(file)].insert(lf_unit(include));
        }
    }
    std::map<std::string, std::set<std::string>> reachable;
    for (const auto& [unit, known] : graph) reachable[unit] = lf_reachable(graph, unit);
    for (const auto& [unit, below] : reachable) {
        for (const std::string& other : below) {
            EXPECT_FALSE(unit < other && reachable[other].contains(unit))
                << unit << " and " << other << " know each other";
        }
    }
}

}  // namespace hcr::test
