#include "tools/data/match_report.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <array>
#include <map>
#include <optional>
#include <stdexcept>

#include "core/model/aircraft_class.h"
#include "core/model/labels.h"
#include "core/model/tables.h"
#include "engine/life_cycle.h"
#include "engine/spawn.h"
#include "liveries/dbase.h"
#include "liveries/livery_tables.h"
#include "liveries/match_memory.h"
#include "liveries/match_trace.h"
#include "liveries/matching.h"
#include "liveries/similar_types.h"
#include "shell/parameters.h"
#include "shell/text.h"

namespace hcr {
namespace {

constexpr std::size_t kShownTitles = 8, kShownRegistrations = 3, kShownTypes = 12;
constexpr std::size_t kAlikeLetters = 2;           // of a type that is none, to find what may be meant
constexpr f64 kCruiseFt = 30000, kCruiseKt = 400;  // somewhere in flight, far from every airport

constexpr std::array<const char*, 7> kStepNames{
    "registration, reserved", "registration",    "airline and type",      "airline, similar type",
    "unbranded (ZZZ)",        "generic of type", "generic, similar type",
};

const char* lf_kindOf(bool cargo) {
    return cargo ? "cargo" : "passenger";
}

std::string lf_counted(std::size_t count, const char* one, const char* many) {
    return fmt::format("{} {}", count, count == 1 ? one : many);
}

/// The first few, and how many there are behind them.
template <typename Texts>
std::string lf_firstOf(const Texts& texts, std::size_t most) {
    const std::size_t shown = std::min(most, texts.size());
    std::string text = fmt::format("{}", fmt::join(texts.begin(), texts.begin() + static_cast<i64>(shown), ", "));
    if (texts.size() > shown) text += fmt::format(" and {} more", texts.size() - shown);
    return text;
}

std::string lf_joined(std::initializer_list<std::string_view> words) {
    std::string text;
    for (const std::string_view word : words) {
        if (word.empty()) continue;
        if (!text.empty()) text += ' ';
        text += word;
    }
    return text;
}

// What is tried.

/// Registrations of the reserved titles.
using Reservations = std::map<std::string_view, std::vector<std::string_view>>;

Reservations lf_reservations() {
    Reservations reservations;
    for (const std::string_view title : specialTitles) reservations[title];
    for (const auto& [registration, title] : regcodeTitles) {
        if (const auto entry = reservations.find(title); entry != reservations.end()) {
            entry->second.push_back(registration);
        }
    }
    for (auto& [title, registrations] : reservations) std::sort(registrations.begin(), registrations.end());
    return reservations;
}

bool lf_airlineHas(const std::string& airline, const std::string& type) {
    return std::any_of(airlineTitles.begin(), airlineTitles.end(), [&](const auto& airlines) {
        const auto types = airlines.find(airline);
        return types != airlines.end() && types->second.contains(type);
    });
}

std::string lf_noStandInText(const MatchTry& entry) {
    if (entry.step == similarGeneric) return "no type that is similar to it is installed";
    if (lf_airlineHas(entry.airline, entry.type)) return fmt::format("{} has the type itself", entry.airline);
    const auto similar = similarTypes.find(entry.type);
    if (similar == similarTypes.end()) return "no similar type is installed";
    return fmt::format("nothing of {}", lf_firstOf(similar->second, kShownTypes));
}

i32 lf_depthOfStep(i32 step) {
    return std::clamp(step, 2, 4);
}

/// How one of several titles was drawn.
const char* lf_drawText(std::size_t count, std::size_t reserved) {
    if (count == 1) return reserved == 0 ? "" : ", reserved but the only one";
    if (reserved == count) return ", all reserved: one of them serves all the same";
    if (reserved + 1 == count) return ", one isn't reserved";
    if (RANDOM.current) return ", drawn by lot";
    return reserved == 0 ? ", the first" : ", the first that isn't reserved";
}

std::string lf_foundText(const MatchTry& entry) {
    const auto reserved = std::count_if(entry.candidates.begin(), entry.candidates.end(),
                                        [](const MatchCandidate& candidate) { return candidate.special; });
    std::string text = lf_counted(entry.candidates.size(), "livery", "liveries");
    if (entry.table != MatchTable::registrations) {
        text += lf_drawText(entry.candidates.size(), static_cast<std::size_t>(reserved));
    }
    return entry.verdict == MatchVerdict::refused ? text + "; the simulator has refused it" : text;
}

std::string lf_outcome(const MatchTry& entry, i32 acClass) {
    switch (entry.verdict) {
        case MatchVerdict::nothingThere:
            return "nothing";
        case MatchVerdict::taken:
        case MatchVerdict::refused:
            return lf_foundText(entry);
        case MatchVerdict::noRegistration:
            return "not tried, no registration is known";
        case MatchVerdict::noAirline:
            return "not tried, no airline is known";
        case MatchVerdict::noStandIn:
            return lf_noStandInText(entry);
        case MatchVerdict::otherClass:
            return "not tried, another class of aircraft";
        case MatchVerdict::tooShallow:
            return fmt::format("not tried, needs MATCHING_DEPTH {}", lf_depthOfStep(entry.step));
        case MatchVerdict::ownPaintOnly:
            return fmt::format("not tried, class {} takes no other operator's livery",
                               classValue(kClassNames, acClass));
    }
    return {};
}

std::string lf_keyText(const MatchTry& entry) {
    std::string key = lf_joined({entry.airline, entry.type});
    if (key.empty()) return "-";
    const bool lookedUp = !entry.candidates.empty() || entry.verdict == MatchVerdict::nothingThere;
    if (lookedUp && entry.table != MatchTable::registrations) key += fmt::format(" {}", lf_kindOf(entry.cargo));
    return key;
}

std::string lf_marks(const MatchCandidate& candidate, const Reservations& reservations) {
    std::string marks;
    if (candidate.special) {
        const auto entry = reservations.find(candidate.title);
        marks = "reserved";
        if (entry != reservations.end() && !entry->second.empty()) {
            marks += " for " + lf_firstOf(entry->second, kShownRegistrations);
        }
    }
    if (candidate.refused) marks += marks.empty() ? "refused" : ", refused";
    return marks;
}

/// The first ones, and the drawn one wherever it stands.
std::string lf_candidateLines(const MatchTry& entry, const Reservations& reservations, bool all) {
    std::vector<const MatchCandidate*> shown;
    for (const MatchCandidate& candidate : entry.candidates) {
        if (all || shown.size() < kShownTitles || candidate.title == entry.drawn) shown.push_back(&candidate);
    }
    std::size_t width = 0;
    for (const MatchCandidate* candidate : shown) width = std::max(width, candidate->title.size());
    std::string text;
    for (const MatchCandidate* candidate : shown) {
        const std::string line = fmt::format("     {} {:{}}  {}", candidate->title == entry.drawn ? '>' : ' ',
                                             candidate->title, width, lf_marks(*candidate, reservations));
        text += line.substr(0, line.find_last_not_of(' ') + 1) + '\n';
    }
    if (shown.size() < entry.candidates.size()) {
        text += fmt::format("       and {} more\n", entry.candidates.size() - shown.size());
    }
    return text;
}

/// Light aircraft are asked for an unbranded livery twice at the greatest depth.
bool lf_repeats(const MatchTry& entry, const MatchTry& before) {
    return entry.verdict == MatchVerdict::nothingThere && before.verdict == entry.verdict &&
           entry.step == before.step && entry.airline == before.airline && entry.type == before.type &&
           entry.cargo == before.cargo;
}

std::string lf_tryLines(const MatchTrace& trace, i32 acClass, bool allTitles) {
    const Reservations reservations = lf_reservations();
    std::string text;
    for (std::size_t i = 0; i < trace.tries.size(); ++i) {
        const MatchTry& entry = trace.tries[i];
        if (i > 0 && lf_repeats(entry, trace.tries[i - 1])) continue;
        text += fmt::format("  {}  {:<24}{:<20}{}\n", entry.step, kStepNames.at(static_cast<std::size_t>(entry.step)),
                            lf_keyText(entry), lf_outcome(entry, acClass));
        text += lf_candidateLines(entry, reservations, allTitles);
    }
    return text;
}

// How it ended.

std::string lf_whyNone(const MatchTrace& trace) {
    const auto has = [&trace](MatchVerdict verdict) {
        return std::any_of(trace.tries.begin(), trace.tries.end(),
                           [verdict](const MatchTry& entry) { return entry.verdict == verdict; });
    };
    if (has(MatchVerdict::tooShallow)) return fmt::format("MATCHING_DEPTH is {}", MATCHING_DEPTH.current.load());
    if (has(MatchVerdict::refused)) return "the simulator has refused what fits";
    return "nothing that is installed fits";
}

std::string lf_result(const MatchTrace& trace, std::string_view title, const char* without) {
    if (trace.step == kNoMatchStep) return fmt::format("  =  no livery, {}: {}\n", lf_whyNone(trace), without);
    return fmt::format("  =  {}\n     by step {}, {}\n", title, trace.step,
                       kStepNames.at(static_cast<std::size_t>(trace.step)));
}

struct TraceScope {
    MatchTrace trace;

    TraceScope() { gMatchTrace = &trace; }
    ~TraceScope() { gMatchTrace = nullptr; }
    TraceScope(const TraceScope&) = delete;
    TraceScope& operator=(const TraceScope&) = delete;
};

TrafficReport lf_reportOf(const MatchQuestion& question) {
    TrafficReport report;
    report.airline = question.airline;
    report.model = question.type;
    report.registration = question.registration;
    report.callsign = question.callsign;
    report.from = question.from;
    report.to = question.to;
    report.hexid = kLastStaticId + 1;
    report.sample.alt = kCruiseFt;
    report.sample.speed = kCruiseKt;
    report.sample.airborne = true;
    return report;
}

/// The record that the engine makes of the first report, nothing when it drops the report.
std::optional<LiveAc> lf_liveAircraft(const MatchQuestion& question) {
    TrafficReport report = lf_reportOf(question);
    gLiveAcs.clear();
    gf_decodeReport(report);
    if (gLiveAcs.empty()) return std::nullopt;
    LiveAc ac = std::move(gLiveAcs.front());
    gLiveAcs.clear();
    ac.cargo = question.cargo;
    lf_completeTexts(ac);
    return ac;
}

const CheckBox* lf_switchOf(i32 acClass) {
    switch (acClass) {
        case Light:
            return &LIGHT_AIRCRAFT;
        case HighPerf:
            return &HIGH_PERF_AIRCRAFT;
        case Rotorcraft:
            return &HELICOPTERS;
        default:
            return nullptr;
    }
}

std::string lf_liveBlock(std::optional<LiveAc>& live, i32 acClass, const MatchQuestion& question) {
    if (!live) {
        const CheckBox* box = lf_switchOf(acClass);
        return fmt::format("Live\n  =  not shown: {} is off\n", box != nullptr ? box->name : "its class");
    }
    TraceScope scope;
    gf_matchLiveLivery(*live);
    return "Live\n" + lf_tryLines(scope.trace, live->acClass, question.allTitles) +
           lf_result(scope.trace, live->liveryTitle, "the aircraft isn't shown");
}

std::string lf_parkedBlock(ParkedAc ac, const MatchQuestion& question) {
    ParkPos stand;
    stand.cargo = ac.cargo;
    TraceScope scope;
    gf_matchParkedLivery(ac, stand);
    return fmt::format("Parked, on a stand that is{} marked for cargo\n", stand.cargo ? "" : "n't") +
           lf_tryLines(scope.trace, ac.acClass, question.allTitles) +
           lf_result(scope.trace, ac.liveryTitle, "the stand stays empty");
}

// The aircraft.

void lf_checkType(const std::string& type, const std::string& registration) {
    if (gf_isValidType(type)) return;
    if (type.empty()) {
        throw std::runtime_error(
            fmt::format("{} isn't among the airframes of the reference data; name its type with --type", registration));
    }
    std::string text = fmt::format(
        "'{}' is no aircraft type of the reference data, so that aircraft of it are never "
        "shown.",
        type);
    if (const auto fix = typeFixes.find(type); fix != typeFixes.end()) {
        text += fmt::format(" {} is meant, as in add-on files?", fix->second);
    }
    std::vector<std::string_view> alike;
    const std::string_view letters = std::string_view(type).substr(0, kAlikeLetters);
    for (auto it = aircraftTypes.lower_bound(letters); it != aircraftTypes.end() && it->starts_with(letters); ++it) {
        alike.push_back(*it);
    }
    if (!alike.empty()) text += fmt::format(" Types that begin alike: {}", lf_firstOf(alike, kShownTypes));
    throw std::runtime_error(text);
}

std::string lf_airframeText(const std::string& registration) {
    const DbaseRecord* record = gf_dbaseRecord(registration);
    if (record == nullptr) return fmt::format("{} isn't in the reference data", registration);
    const std::string flownBy = record->opr.empty() ? std::string() : fmt::format(", flown by {}", record->opr);
    return fmt::format("{} is a {} of {}{}, {}", registration, record->type, record->airl, flownBy,
                       lf_kindOf(record->cargo));
}

/// Another spelling of the registration under which there is a livery, empty when there is none.
std::string lf_otherSpelling(const std::string& registration) {
    if (regcodeTitles.contains(registration)) return {};
    std::vector<std::string> spellings = gf_regcodeVariants(registration);
    spellings.push_back(registration);
    std::erase(spellings.back(), '-');
    const auto known = std::find_if(spellings.begin(), spellings.end(),
                                    [](const std::string& spelling) { return regcodeTitles.contains(spelling); });
    return known == spellings.end() ? std::string() : *known;
}

std::string lf_notes(const MatchQuestion& question, const ParkedAc& ac) {
    std::string text;
    for (const std::string& airline : {question.airline, ac.airline}) {
        if (gf_isAirline(airline) || airline.empty() || text.find(airline) != std::string::npos) continue;
        text += fmt::format("  note        {} is no airline of the reference data: a scan takes no livery of it\n",
                            airline);
    }
    if (const std::string spelling = lf_otherSpelling(ac.registration); !spelling.empty()) {
        text +=
            fmt::format("  note        {} has a livery; a registration counts only as the feed spells it\n", spelling);
    }
    if (question.cargo && !ac.cargo) {
        text += "  note        --cargo doesn't count, since the airframe is known\n";
    } else if (question.cargo && gf_dbaseRecord(ac.registration) == nullptr) {
        text += "  note        a live aircraft carries cargo only when its airframe is known to do so\n";
    }
    return text;
}

std::string lf_aircraftBlock(const MatchQuestion& question, const ParkedAc& ac) {
    std::string text = "Aircraft\n";
    text += fmt::format("  asked for   {}",
                        lf_joined({question.callsign, question.airline, question.type, question.registration}));
    if (!question.from.empty() || !question.to.empty()) {
        text += fmt::format(", {:3} -> {:3}", question.from, question.to);
    }
    text += '\n';
    if (!question.registration.empty()) {
        text += fmt::format("  airframe    {}\n", lf_airframeText(question.registration));
    }
    text += fmt::format("  matched as  {} {}, class {}, {}\n", ac.airline, ac.model,
                        classValue(kClassNames, ac.acClass), lf_kindOf(ac.cargo));
    return text + lf_notes(question, ac);
}

std::size_t lf_liveryCount() {
    std::size_t count = 0;
    for (const LiveryGroup& group : liveryIndex) count += group.liveries.size();
    return count;
}

std::string lf_settingsBlock() {
    return fmt::format(
        "  settings    MATCHING_DEPTH {}, RANDOM {}\n  installed   {}, {}, {}\n", MATCHING_DEPTH.current.load(),
        RANDOM.current ? "on: drawn anew each time" : "off", lf_counted(lf_liveryCount(), "livery", "liveries"),
        lf_counted(regcodeTitles.size(), "registration", "registrations"),
        lf_counted(failedTitles.size(), "title refused by the simulator", "titles refused by the simulator"));
}

}  // namespace

std::string gf_matchReport(const MatchQuestion& question) {
    LiveAc known;  // as it is learned for a stand, also of a class that isn't shown in flight
    static_cast<FlightTexts&>(known) = lf_reportOf(question);
    known.cargo = question.cargo;
    lf_completeTexts(known);
    lf_checkType(known.model, known.registration);
    known.acClass = gf_acClass(known.model);

    std::optional<LiveAc> live = lf_liveAircraft(question);
    return lf_aircraftBlock(question, known) + lf_settingsBlock() + "\n" + lf_liveBlock(live, known.acClass, question) +
           "\n" + lf_parkedBlock(known, question);
}

}  // namespace hcr
