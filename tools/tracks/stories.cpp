#include "tools/tracks/stories.h"

#include <fmt/format.h>

#include <algorithm>
#include <fstream>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "shell/text.h"

namespace hcr {
namespace {

using nlohmann::json;

/// What the lines of a trace mean depends on earlier ones.
struct Reader {
    AircraftStories stories;
    std::map<int, std::string> eventNames;  ///< of the client's events
    std::map<int, std::string> tails;       ///< of the objects
    std::map<int, std::string> creates;     ///< tails of the create calls by packet
};

int lf_number(const json& line, const char* name) {
    const auto found = line.find(name);
    return found != line.end() && found->is_number() ? found->get<int>() : -1;
}

std::string lf_text(const json& line, const char* name) {
    const auto found = line.find(name);
    return found != line.end() && found->is_string() ? found->get<std::string>() : "";
}

/// The story of the object that the line names; null for none of the program's.
AircraftStory* lf_story(Reader& reader, const json& line) {
    const auto tail = reader.tails.find(lf_number(line, "object"));
    return tail != reader.tails.end() ? &reader.stories[tail->second] : nullptr;
}

void lf_readCreate(Reader& reader, const json& line) {
    const std::string tail = lf_text(line, "tail");
    reader.creates[lf_number(line, "packet")] = tail;
    reader.stories[tail].steps.push_back("create " + lf_text(line, "title"));
}

void lf_readCall(Reader& reader, const json& line, const std::string& call) {
    if (call == "SimConnect_MapClientEventToSimEvent") {
        reader.eventNames[lf_number(line, "event")] = lf_text(line, "name");
    } else if (call == "SimConnect_AICreateNonATCAircraft") {
        lf_readCreate(reader, line);
    } else if (AircraftStory* story = lf_story(reader, line)) {
        if (call == "SimConnect_TransmitClientEvent") {
            story->steps.push_back(
                fmt::format("{} {}", reader.eventNames[lf_number(line, "event")], lf_number(line, "data")));
        } else if (call == "SimConnect_AISetAircraftFlightPlan") {
            ++story->plans;
        } else if (call != "SimConnect_RequestDataOnSimObject") {
            story->steps.push_back(call);
        }
    }
}

void lf_readEvent(Reader& reader, const json& line, const std::string& event) {
    if (event == "Exception") {
        const auto create = reader.creates.find(lf_number(line, "packet"));
        if (create == reader.creates.end()) return;
        reader.stories[create->second].steps.push_back(fmt::format("exception {}", lf_number(line, "exception")));
    } else if (event == "ObjectAdded") {
        const std::string tail = lf_text(line, "tail");
        reader.tails[lf_number(line, "object")] = tail;
        reader.stories[tail].steps.push_back(event);
    } else if (AircraftStory* story = lf_story(reader, line)) {
        story->steps.push_back(event);
    }
}

void lf_readState(Reader& reader, const json& line) {
    AircraftStory* story = lf_story(reader, line);
    if (story == nullptr) return;
    story->state.clear();
    for (const char* name : {"on_ground", "frozen", "engines", "gear", "flaps", "throttle", "spoilers"}) {
        story->state += fmt::format("{} {}, ", name, lf_number(line, name));
    }
    story->state += "lights " + line.value("lights", json()).dump();
}

void lf_readLine(Reader& reader, const json& line) {
    if (!line.is_object()) return;
    if (line.contains("call")) {
        lf_readCall(reader, line, lf_text(line, "call"));
    } else if (line.contains("event")) {
        lf_readEvent(reader, line, lf_text(line, "event"));
    } else {
        lf_readState(reader, line);
    }
}

void lf_compare(const std::string& tail, const AircraftStory& one, const AircraftStory& other,
                std::vector<std::string>& differences) {
    const auto [a, b] = std::mismatch(one.steps.begin(), one.steps.end(), other.steps.begin(), other.steps.end());
    if (a != one.steps.end() || b != other.steps.end()) {
        const auto name = [](auto step, const AircraftStory& story) {
            return step != story.steps.end() ? *step : "nothing more";
        };
        differences.push_back(
            fmt::format("{}: step {} is '{}' and '{}'", tail, a - one.steps.begin() + 1, name(a, one), name(b, other)));
    } else if (one.state != other.state) {
        differences.push_back(fmt::format("{}: the last state is '{}' and '{}'", tail, one.state, other.state));
    }
    if (one.plans != other.plans) {
        differences.push_back(fmt::format("{}: {} and {} flight plans", tail, one.plans, other.plans));
    }
}

}  // namespace

AircraftStories readStories(const std::filesystem::path& trace) {
    std::ifstream file(trace);
    if (!file) throw std::runtime_error(fmt::format("{} can't be opened", gf_shownPath(trace)));
    Reader reader;
    for (std::string line; std::getline(file, line);) lf_readLine(reader, json::parse(line, nullptr, false));
    return std::move(reader.stories);
}

std::vector<std::string> compareStories(const AircraftStories& one, const AircraftStories& other) {
    std::vector<std::string> differences;
    for (const auto& [tail, story] : one) {
        const auto found = other.find(tail);
        if (found == other.end()) {
            differences.push_back(fmt::format("{} is in the first only", tail));
        } else {
            lf_compare(tail, story, found->second, differences);
        }
    }
    for (const auto& [tail, story] : other) {
        if (!one.contains(tail)) differences.push_back(fmt::format("{} is in the second only", tail));
    }
    return differences;
}

}  // namespace hcr
