#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <string>

#include "tests/support/environment.h"

// What a run leaves behind is put back by functions of the files that keep it. Every variable of the program stands in
// one of those, or here with the reason why it lives on.

namespace hcr::test {
namespace {

namespace fs = std::filesystem;

/// Below a run there is no run: the operating system, the simulator and the settings by themselves.
const std::vector<std::string> kOtherworldly = {"platform/", "sim/port/", "shell/parameters.cpp"};

const std::map<std::string, const char*> kLivesOn = {
    {"simTick", "rises through the life of the process"},
    {"gFeedCounters", "counts since the start of the process"},
    {"gSimTraffic", "counts since the start of the process"},
    {"gCycleStats", "counts since the start of the process"},
    {"gRepaints", "counts since the start of the process"},
    {"gReaderThreads", "threads end in their own time"},
    {"gSimClientThread", "threads end in their own time"},
    {"gLeftBehind", "threads end in their own time"},
    {"gSnapshotWanted", "a wish of the face, for all runs"},
    {"gNoWindow", "a property of the face, for all runs"},
    {"gDownloadLimits", "a constant that tests change"},
    {"gCfgReaders", "a constant that tests change"},
    {"gMatchTrace", "whoever asks takes it away again"},
    {"gReport", "emptied before it is filled"},
    {"lf_batch", "emptied before it is filled"},
    {"state", "the log, which is opened and closed"},
    {"table", "the names of the files"},
    {"started", "a library, once in the process"},
};

std::string lf_withoutComments(const std::string& text) {
    static const std::regex ignored(R"re(//[^\n]*|#[^\n]*|"(\\.|[^"\\])*"|\d'|'(\\.|[^'\\])+')re");
    return std::regex_replace(text, ignored, "");
}

/// The statements of a text that stand in no braces but those of namespaces, without what stands in braces.
std::vector<std::string> lf_statements(const std::string& text) {
    static const std::regex space(R"(namespace [\w:]*\s*$|namespace\s*$|extern\s*$)"), function(R"(\)[\w\s]*$)");
    std::vector<std::string> statements;
    std::string statement;
    int depth = 0;
    bool body = false;
    for (const char c : text) {
        if (c == '{') {
            if (depth == 0 && std::regex_search(statement, space)) {
                statement.clear();
                continue;
            }
            if (depth++ == 0) body = std::regex_search(statement, function);
        } else if (c == '}') {
            if (depth == 0 || (--depth == 0 && body)) statement.clear();
        } else if (depth == 0 && c == ';') {
            statements.push_back(statement);
            statement.clear();
        } else if (depth == 0) {
            statement += c;
        }
    }
    return statements;
}

/// The names of the variables that a statement makes; none for declarations, types and constants.
std::vector<std::string> lf_variables(std::string statement) {
    static const std::regex other(
        R"(^\s*(using|namespace|static_assert|extern|struct|class|enum|template|typedef|return)\b)");
    static const std::regex constant(R"(\bconst\b|\bconstexpr\b|\bmutex\b|recursive_mutex)");
    static const std::regex inBrackets(R"(<[^<>]*>|\[[^\[\]]*\]|=.*|\(&.*)"), name(R"((\w+)\s*(,|$))");
    if (std::regex_search(statement, other) || std::regex_search(statement, constant)) return {};
    for (std::string less; (less = std::regex_replace(statement, inBrackets, "")) != statement;) statement = less;
    std::vector<std::string> names;
    if (statement.find('(') != std::string::npos || statement.find(' ') == std::string::npos) return names;
    for (std::sregex_iterator at(statement.begin(), statement.end(), name), end; at != end; ++at) {
        names.push_back((*at)[1]);
    }
    return names;
}

/// The same for what lives inside of a function.
void lf_addStatics(const std::string& code, const std::string& file, std::map<std::string, std::string>& variables) {
    static const std::regex made(R"(\n +(?:\[\[\w+\]\] )?static (?!const\b|constexpr\b)[\w:<>&*, ]*?\b(\w+)\s*[={;])");
    for (std::sregex_iterator at(code.begin(), code.end(), made), end; at != end; ++at) variables[(*at)[1]] = file;
}

/// All words in the functions that put something back.
void lf_addPutBack(const std::string& text, std::set<std::string>& words) {
    static const std::regex head(R"(\n[^\n]*\b[gl]f_(reset|forget|clear|empty|drop|prepare|close)\w*\([^;{]*\)\s*\{)");
    static const std::regex word(R"(\w+)");
    for (std::sregex_iterator at(text.begin(), text.end(), head), end; at != end; ++at) {
        const auto begin = static_cast<std::size_t>(at->position() + at->length());
        const std::string body = text.substr(begin, text.find("\n}", begin) - begin);
        for (std::sregex_iterator w(body.begin(), body.end(), word); w != end; ++w) words.insert(w->str());
    }
}

}  // namespace

TEST(House, EveryVariableIsPutBackOrLivesOnForAReason) {
    const fs::path source = demoData("").parent_path().parent_path() / "src";
    std::map<std::string, std::string> variables;  // with their files
    std::set<std::string> putBack;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(source)) {
        const std::string file = fs::relative(entry.path(), source).generic_string();
        if (!file.ends_with(".cpp") && !file.ends_with(".h")) continue;
        std::stringstream text;
        text << std::ifstream(entry.path()).rdbuf();
        const std::string code = lf_withoutComments(text.str());
        lf_addPutBack(code, putBack);
        const auto holds = [&file](const std::string& part) { return file.starts_with(part); };
        if (std::any_of(kOtherworldly.begin(), kOtherworldly.end(), holds)) continue;
        lf_addStatics(code, file, variables);
        for (const std::string& statement : lf_statements(code)) {
            for (const std::string& name : lf_variables(statement)) variables[name] = file;
        }
    }
    EXPECT_GT(variables.size(), 80U);
    for (const auto& [name, file] : variables) {
        EXPECT_TRUE(putBack.contains(name) != kLivesOn.contains(name)) << name << " in " << file;
    }
    for (const auto& [name, reason] : kLivesOn) EXPECT_TRUE(variables.contains(name)) << name << ": " << reason;
}

}  // namespace hcr::test
