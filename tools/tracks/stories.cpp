#include "tools/tracks/stories.h"

#include <fmt/format.h>

#include <algorithm>
#include <fstream>
#include <nlohmann/json.hpp>
#include <set>
#include <stdexcept>

#include "shell/text.h"

namespace hcr {
namespace {

using nlohmann::json;

constexpr f64 kEndSeconds = 20;  // what happens so shortly before the end of a session may be missing in another one

/// What the lines of a trace mean depends on earlier ones.
struct Reader {
    SessionStory session;
    f64 now = 0;                            ///< of the line
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

void lf_add(Reader& reader, AircraftStory& story, const std::string& step) {
    story.steps.push_back(step);
    story.times.push_back(reader.now);
}

/// The story of the object that the line names; null for none of the program's.
AircraftStory* lf_story(Reader& reader, const json& line) {
    const auto tail = reader.tails.find(lf_number(line, "object"));
    return tail != reader.tails.end() ? &reader.session.aircraft[tail->second] : nullptr;
}

void lf_readCreate(Reader& reader, const json& line) {
    const std::string tail = lf_text(line, "tail");
    reader.creates[lf_number(line, "packet")] = tail;
    lf_add(reader, reader.session.aircraft[tail], "create " + lf_text(line, "title"));
}

void lf_readCall(Reader& reader, const json& line, const std::string& call) {
    if (call == "SimConnect_MapClientEventToSimEvent") {
        reader.eventNames[lf_number(line, "event")] = lf_text(line, "name");
    } else if (call == "SimConnect_AICreateNonATCAircraft") {
        lf_readCreate(reader, line);
    } else if (AircraftStory* story = lf_story(reader, line)) {
        if (call == "SimConnect_TransmitClientEvent") {
            const std::string& name = reader.eventNames[lf_number(line, "event")];
            lf_add(reader, *story, fmt::format("{} {}", name, lf_number(line, "data")));
        } else if (call == "SimConnect_AISetAircraftFlightPlan") {
            ++story->plans;
        } else if (call != "SimConnect_RequestDataOnSimObject") {
            lf_add(reader, *story, call);
        }
    }
}

void lf_readEvent(Reader& reader, const json& line, const std::string& event) {
    if (event == "Exception") {
        const auto create = reader.creates.find(lf_number(line, "packet"));
        if (create == reader.creates.end()) return;
        lf_add(reader, reader.session.aircraft[create->second],
               fmt::format("exception {}", lf_number(line, "exception")));
    } else if (event == "ObjectAdded") {
        const std::string tail = lf_text(line, "tail");
        reader.tails[lf_number(line, "object")] = tail;
        lf_add(reader, reader.session.aircraft[tail], event);
    } else if (AircraftStory* story = lf_story(reader, line)) {
        lf_add(reader, *story, event);
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
    if (const auto time = line.find("t"); time != line.end() && time->is_number()) reader.now = time->get<f64>();
    reader.session.end = reader.now;
    if (line.contains("call")) {
        lf_readCall(reader, line, lf_text(line, "call"));
    } else if (line.contains("event")) {
        lf_readEvent(reader, line, lf_text(line, "event"));
    } else {
        lf_readState(reader, line);
    }
}

/// True when all that the story tells from this step on came shortly before the session's end.
bool lf_cutAt(std::size_t step, const AircraftStory& story, f64 end) {
    return step == story.steps.size() || story.times[step] >= end - kEndSeconds;
}

std::string lf_step(std::size_t step, const AircraftStory& story) {
    return step < story.steps.size() ? story.steps[step] : "nothing more";
}

/// The first difference between two stories of an aircraft; empty for none.
std::string lf_difference(const AircraftStory& one, f64 end, const AircraftStory& other, f64 otherEnd) {
    const auto ends = std::mismatch(one.steps.begin(), one.steps.end(), other.steps.begin(), other.steps.end());
    const auto step = static_cast<std::size_t>(ends.first - one.steps.begin());
    const bool isWhole = step == one.steps.size(), isOtherWhole = step == other.steps.size();
    if (isWhole && isOtherWhole) {
        if (one.plans != other.plans) return fmt::format("{} and {} flight plans", one.plans, other.plans);
        if (one.state == other.state) return "";
        return fmt::format("the last state is '{}' and '{}'", one.state, other.state);
    }
    const bool isCut = (isWhole || isOtherWhole) && lf_cutAt(step, one, end) && lf_cutAt(step, other, otherEnd);
    if (isCut) return "";
    return fmt::format("step {} is '{}' and '{}'", step + 1, lf_step(step, one), lf_step(step, other));
}

const AircraftStory& lf_find(const SessionStory& session, const std::string& tail) {
    static const AircraftStory none;
    const auto found = session.aircraft.find(tail);
    return found != session.aircraft.end() ? found->second : none;
}

}  // namespace

SessionStory readStories(const std::filesystem::path& trace) {
    std::ifstream file(trace);
    if (!file) throw std::runtime_error(fmt::format("{} can't be opened", gf_shownPath(trace)));
    Reader reader;
    for (std::string line; std::getline(file, line);) lf_readLine(reader, json::parse(line, nullptr, false));
    return std::move(reader.session);
}

std::vector<std::string> compareStories(const SessionStory& one, const SessionStory& other) {
    std::set<std::string> tails;
    for (const SessionStory* session : {&one, &other}) {
        for (const auto& [tail, story] : session->aircraft) tails.insert(tail);
    }
    std::vector<std::string> differences;
    for (const std::string& tail : tails) {
        const std::string text = lf_difference(lf_find(one, tail), one.end, lf_find(other, tail), other.end);
        if (!text.empty()) differences.push_back(fmt::format("{}: {}", tail, text));
    }
    return differences;
}

}  // namespace hcr
