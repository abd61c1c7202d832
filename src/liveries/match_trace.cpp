#include "liveries/match_trace.h"

#include "liveries/livery_tables.h"

namespace hcr {

MatchTrace* gMatchTrace = nullptr;

void gf_traceLookup(i32 step, MatchTable table, bool cargo, std::string_view airline, std::string_view type,
                    std::span<const std::string_view> titles) {
    MatchTry& entry = gMatchTrace->tries.emplace_back();
    entry.step = step;
    entry.table = table;
    entry.cargo = cargo;
    entry.airline = airline;
    entry.type = type;
    const std::unordered_set<std::string_view> special(specialTitles.begin(), specialTitles.end());
    entry.candidates.reserve(titles.size());
    for (const std::string_view title : titles) {
        entry.candidates.push_back({title, special.contains(title), failedTitles.contains(title)});
    }
}

void gf_traceDraw(std::string_view title, bool refused) {
    MatchTry& entry = gMatchTrace->tries.back();
    entry.drawn = title;
    entry.verdict = refused ? MatchVerdict::refused : MatchVerdict::taken;
    if (!refused) gMatchTrace->step = entry.step;
}

void gf_traceNoLookup(i32 step, MatchVerdict verdict, std::string_view airline, std::string_view type) {
    MatchTry& entry = gMatchTrace->tries.emplace_back();
    entry.step = step;
    entry.verdict = verdict;
    entry.airline = airline;
    entry.type = type;
}

}  // namespace hcr
