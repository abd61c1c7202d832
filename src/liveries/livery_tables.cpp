#include "liveries/livery_tables.h"

#include <algorithm>

#include "liveries/matching.h"
#include "liveries/text_index.h"

namespace hcr {

// The memory comes first: it must outlive the tables in it.
std::pmr::monotonic_buffer_resource gLiveryMemory;
LiveryMap<LiveryMap<LiveryList>> liveryIndex(&gLiveryMemory);
std::array<LiveryMap<LiveryMap<TitleList>>, 2> airlineTitles{LiveryMap<LiveryMap<TitleList>>(&gLiveryMemory),
                                                             LiveryMap<LiveryMap<TitleList>>(&gLiveryMemory)};
std::array<LiveryMap<TitleList>, 2> genericTitles{LiveryMap<TitleList>(&gLiveryMemory),
                                                  LiveryMap<TitleList>(&gLiveryMemory)};
LiveryMap<std::string_view> regcodeTitles(&gLiveryMemory);
std::set<std::string, std::less<>> uniqueRegcodes;
std::vector<std::string_view> specialTitles;
std::vector<std::string> lightPool, buzjetPool, rotorcraftPool;
std::vector<std::string> dontUseTitles;

namespace {

constexpr std::size_t kSpecialTitles = 4096, kLightTypes = 64, kBuzjetTypes = 128, kRotorcraftTypes = 32;

/// All titles of liveryIndex, found by their text. A walk through the index for each of tens of thousands of
/// registrations would take minutes.
struct TitleIndex {
    std::vector<std::string_view> titles;
    TextIndex index;

    auto textOf() const {
        return [this](u32 number) { return titles[number]; };
    }
};

TitleIndex gTitleIndex;

std::size_t lf_groupEnd(const std::vector<ScannedLivery>& liveries, std::size_t begin) {
    const ScannedLivery& first = liveries[begin];
    std::size_t end = begin + 1;
    while (end < liveries.size() && liveries[end].type == first.type && liveries[end].airl == first.airl) ++end;
    return end;
}

void lf_indexTitles(const std::vector<LiveryGroup>& groups, std::size_t count) {
    gTitleIndex.titles.reserve(count);
    gTitleIndex.index.reserve(count, gTitleIndex.textOf());
    for (const LiveryGroup& group : groups) {
        for (const IndexedLivery& livery : *group.liveries) {
            gTitleIndex.titles.push_back(livery.title);
            gTitleIndex.index.insert(static_cast<u32>(gTitleIndex.titles.size() - 1), gTitleIndex.textOf());
        }
    }
}

void lf_appendTitles(const LiveryList& liveries, bool cargo, TitleList& titles) {
    for (const IndexedLivery& livery : liveries) {
        if (livery.cargo == cargo) titles.push_back(livery.title);
    }
}

std::size_t lf_countOf(const LiveryList& liveries, bool cargo) {
    return static_cast<std::size_t>(std::count_if(
        liveries.begin(), liveries.end(), [cargo](const IndexedLivery& livery) { return livery.cargo == cargo; }));
}

/// Empties a table and parts it from its memory.
template <typename Map>
void lf_drop(Map& map) {
    map = Map(map.get_allocator());
}

}  // namespace

std::vector<LiveryGroup> gf_buildLiveryIndex(const std::vector<ScannedLivery>& liveries) {
    std::vector<LiveryGroup> groups;
    for (std::size_t begin = 0; begin < liveries.size();) {
        const std::size_t end = lf_groupEnd(liveries, begin);
        const bool sameAirline = !groups.empty() && groups.back().airline == liveries[begin].airl;
        const std::string_view airline = sameAirline ? groups.back().airline : gf_keepText(liveries[begin].airl);
        const std::string_view type = gf_keepText(liveries[begin].type);
        LiveryList& list = liveryIndex[airline][type];
        list.reserve(end - begin);
        for (; begin < end; ++begin) list.push_back({gf_keepText(liveries[begin].title), liveries[begin].cargo});
        groups.push_back({airline, type, &list});
    }
    lf_indexTitles(groups, liveries.size());
    return groups;
}

void gf_buildAirlineTitles(const std::vector<LiveryGroup>& groups) {
    for (const LiveryGroup& group : groups) {
        for (const bool cargo : {false, true}) {
            const std::size_t count = lf_countOf(*group.liveries, cargo);
            if (count == 0) continue;
            TitleList& titles = airlineTitles[cargo ? 1 : 0][group.airline][group.type];
            titles.reserve(count);
            lf_appendTitles(*group.liveries, cargo, titles);
        }
    }
}

void gf_buildGenericTitles(const std::vector<LiveryGroup>& groups) {
    for (const bool cargo : {false, true}) {
        LiveryMap<TitleList>& table = genericTitles[cargo ? 1 : 0];
        // Counted first: what a list leaves behind when it grows stays in the memory of the tables.
        std::unordered_map<std::string_view, std::size_t> counts;
        for (const LiveryGroup& group : groups) counts[group.type] += lf_countOf(*group.liveries, cargo);
        for (const LiveryGroup& group : groups) {
            const std::size_t count = counts[group.type];
            if (count == 0) continue;
            TitleList& titles = table[group.type];
            titles.reserve(count);
            lf_appendTitles(*group.liveries, cargo, titles);
        }
    }
}

std::string_view gf_keepText(std::string_view text) {
    if (text.empty()) return {};
    char* const copy = static_cast<char*>(gLiveryMemory.allocate(text.size(), 1));
    std::copy(text.begin(), text.end(), copy);
    return {copy, text.size()};
}

std::string_view gf_findTitle(std::string_view title) {
    const u32 number = gTitleIndex.index.find(title, gTitleIndex.textOf());
    return number == TextIndex::kNone ? std::string_view{} : gTitleIndex.titles[number];
}

void gf_prepareLiveryTables() {
    static bool prepared = false;
    if (prepared) return;
    prepared = true;
    specialTitles.reserve(kSpecialTitles);
    lightPool.reserve(kLightTypes);
    buzjetPool.reserve(kBuzjetTypes);
    rotorcraftPool.reserve(kRotorcraftTypes);
}

void gf_emptyLiveryTables() {
    for (std::vector<std::string>* pool : {&lightPool, &buzjetPool, &rotorcraftPool}) pool->clear();
    uniqueRegcodes.clear();
    specialTitles.clear();
    lf_drop(regcodeTitles);
    for (auto& titles : genericTitles) lf_drop(titles);
    for (auto& titles : airlineTitles) lf_drop(titles);
    gTitleIndex = {};
    gf_forgetLiveries();
    lf_drop(liveryIndex);
    gLiveryMemory.release();  // last: it holds the texts
}

}  // namespace hcr
