#include "liveries/livery_tables.h"

#include <algorithm>
#include <memory>

#include "liveries/text_index.h"

namespace hcr {

// The memory comes first: it must outlive the tables in it.
std::pmr::monotonic_buffer_resource gLiveryMemory;
std::vector<LiveryGroup> liveryIndex;
std::array<LiveryMap<LiveryMap<TitleList>>, 2> airlineTitles{LiveryMap<LiveryMap<TitleList>>(&gLiveryMemory),
                                                             LiveryMap<LiveryMap<TitleList>>(&gLiveryMemory)};
std::array<LiveryMap<TitleList>, 2> genericTitles{LiveryMap<TitleList>(&gLiveryMemory),
                                                  LiveryMap<TitleList>(&gLiveryMemory)};
LiveryMap<std::string_view> regcodeTitles(&gLiveryMemory);
std::set<std::string, std::less<>> uniqueRegcodes;
std::vector<std::string_view> specialTitles;
std::vector<std::string> lightPool, buzjetPool, rotorcraftPool;

namespace {

/// Room for the pairs of airline and type of a large installation, made at once.
constexpr std::size_t kUsualGroups = 16384;
constexpr std::size_t kSpecialTitles = 4096, kLightTypes = 64, kBuzjetTypes = 128, kRotorcraftTypes = 32;

/// All titles of liveryIndex, found by their text: a walk through the index for each of tens of thousands of
/// registrations would take minutes. Made when it is asked for, since not every installation asks.
struct TitleIndex {
    std::vector<std::string_view> titles;
    TextIndex index;

    auto textOf() const {
        return [this](u32 number) { return titles[number]; };
    }
};

TitleIndex gTitleIndex;

void lf_indexTitles() {
    for (const LiveryGroup& group : liveryIndex) {
        for (const IndexedLivery& livery : group.liveries) gTitleIndex.titles.push_back(livery.title);
    }
    gTitleIndex.index.reserve(gTitleIndex.titles.size(), gTitleIndex.textOf());
    for (u32 number = 0; number < gTitleIndex.titles.size(); ++number) {
        gTitleIndex.index.insert(number, gTitleIndex.textOf());
    }
}

std::size_t lf_groupEnd(const std::vector<ScannedLivery>& liveries, std::size_t begin) {
    const ScannedLivery& first = liveries[begin];
    std::size_t end = begin + 1;
    while (end < liveries.size() && liveries[end].type == first.type && liveries[end].airl == first.airl) ++end;
    return end;
}

char* lf_textRoom(std::size_t size) {
    return static_cast<char*>(gLiveryMemory.allocate(size, 1));
}

/// Copies all titles into one block and points the list to the copies.
void lf_keepTitles(std::vector<ScannedLivery>& liveries) {
    std::size_t size = 0;
    for (const ScannedLivery& livery : liveries) size += livery.title.size();
    char* room = lf_textRoom(size);
    for (ScannedLivery& livery : liveries) {
        char* const end = std::copy(livery.title.begin(), livery.title.end(), room);
        livery.title = {room, livery.title.size()};
        room = end;
    }
}

void lf_appendTitles(const LiveryGroup& group, bool cargo, TitleList& titles) {
    for (const IndexedLivery& livery : group.liveries) {
        if (livery.cargo == cargo) titles.push_back(livery.title);
    }
}

/// Empties a table and parts it from its memory.
template <typename Map>
void lf_drop(Map& map) {
    map = Map(map.get_allocator());
}

}  // namespace

void gf_buildLiveryIndex(std::vector<ScannedLivery>& liveries) {
    lf_keepTitles(liveries);
    auto* const entries = static_cast<IndexedLivery*>(
        gLiveryMemory.allocate(liveries.size() * sizeof(IndexedLivery), alignof(IndexedLivery)));
    liveryIndex.reserve(kUsualGroups);
    for (std::size_t begin = 0; begin < liveries.size();) {
        const std::size_t end = lf_groupEnd(liveries, begin);
        const ScannedLivery& first = liveries[begin];
        const bool sameAirline = !liveryIndex.empty() && liveryIndex.back().airline == first.airl;
        LiveryGroup group;
        group.airline = sameAirline ? liveryIndex.back().airline : gf_keepText(first.airl);
        group.type = gf_keepText(first.type);
        group.liveries = {entries + begin, end - begin};
        for (; begin < end; ++begin) {
            std::construct_at(entries + begin, IndexedLivery{liveries[begin].title, liveries[begin].cargo});
            group.counts[liveries[begin].cargo ? 1 : 0] += 1;
        }
        liveryIndex.push_back(group);
    }
}

void gf_buildAirlineTitles() {
    for (const bool cargo : {false, true}) {
        std::string_view airline;
        LiveryMap<TitleList>* types = nullptr;  // of that airline
        for (const LiveryGroup& group : liveryIndex) {
            const std::size_t count = group.counts[cargo ? 1 : 0];
            if (count == 0) continue;
            if (types == nullptr || airline != group.airline) {
                airline = group.airline;
                types = &airlineTitles[cargo ? 1 : 0][airline];
            }
            TitleList& titles = (*types)[group.type];
            titles.reserve(count);
            lf_appendTitles(group, cargo, titles);
        }
    }
}

void gf_buildGenericTitles() {
    for (const bool cargo : {false, true}) {
        LiveryMap<TitleList>& table = genericTitles[cargo ? 1 : 0];
        // Counted first: what a list leaves behind when it grows would stay in the memory of the tables.
        std::unordered_map<std::string_view, std::size_t> counts;
        for (const LiveryGroup& group : liveryIndex) {
            if (group.counts[cargo ? 1 : 0] > 0) counts[group.type] += group.counts[cargo ? 1 : 0];
        }
        for (const auto& [type, count] : counts) table[type].reserve(count);
        for (const LiveryGroup& group : liveryIndex) {
            if (group.counts[cargo ? 1 : 0] > 0) lf_appendTitles(group, cargo, table[group.type]);
        }
    }
}

std::string_view gf_keepText(std::string_view text) {
    char* const room = lf_textRoom(text.size());
    std::copy(text.begin(), text.end(), room);
    return {room, text.size()};
}

std::string_view gf_findTitle(std::string_view title) {
    if (gTitleIndex.titles.empty()) lf_indexTitles();
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
    liveryIndex = {};
    gLiveryMemory.release();  // last: it holds the texts
}

}  // namespace hcr
