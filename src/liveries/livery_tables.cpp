#include "liveries/livery_tables.h"

#include "liveries/matching.h"
#include "liveries/results.h"
#include "liveries/text_index.h"

namespace hcr {

TextMap<TextMap<std::vector<IndexedLivery>>> liveryIndex;
std::array<TextMap<TextMap<TitleList>>, 2> airlineTitles;
std::array<TextMap<TitleList>, 2> genericTitles;
TextMap<std::string_view> regcodeTitles;
std::set<std::string, std::less<>> uniqueRegcodes;
std::vector<std::string_view> specialTitles;
std::vector<std::string> lightPool, buzjetPool, rotorcraftPool;
std::vector<std::string> dontUseTitles;

namespace {

constexpr std::size_t kSpecialTitles = 4096, kLightTypes = 64, kBuzjetTypes = 128, kRotorcraftTypes = 32;

/// All titles of liveryIndex, found by their text. A walk through the index for each of tens of thousands of
/// registrations would take minutes.
struct TitleIndex {
    TitleList titles;
    TextIndex index;

    auto textOf() const {
        return [this](u32 number) { return titles[number]; };
    }
};

TitleIndex gTitleIndex;

std::size_t lf_groupEnd(std::size_t begin) {
    const LiveryData& first = gScanList[begin];
    std::size_t end = begin + 1;
    while (end < gScanList.size() && gScanList[end].type == first.type && gScanList[end].airl == first.airl) ++end;
    return end;
}

/// The title leaves the scan list unless the merging of the registrations will ask for it there.
std::string lf_takeTitle(LiveryData& livery) {
    return livery.atcid.empty() ? std::move(livery.title) : livery.title;
}

void lf_indexTitles(const std::vector<LiveryGroup>& groups) {
    gTitleIndex.titles.reserve(gScanList.size());
    for (const LiveryGroup& group : groups) {
        for (const IndexedLivery& livery : *group.liveries) gTitleIndex.titles.push_back(livery.title);
    }
    gTitleIndex.index.reserve(gTitleIndex.titles.size(), gTitleIndex.textOf());
    for (u32 number = 0; number < gTitleIndex.titles.size(); ++number) {
        gTitleIndex.index.insert(number, gTitleIndex.textOf());
    }
}

/// The titles of one kind in a list of its exact size.
TitleList lf_titlesOf(const std::vector<IndexedLivery>& liveries, bool cargo) {
    std::size_t count = 0;
    for (const IndexedLivery& livery : liveries) count += livery.cargo == cargo ? 1 : 0;
    TitleList titles;
    titles.reserve(count);
    for (const IndexedLivery& livery : liveries) {
        if (livery.cargo == cargo) titles.push_back(livery.title);
    }
    return titles;
}

}  // namespace

std::vector<LiveryGroup> gf_buildLiveryIndex() {
    std::vector<LiveryGroup> groups;
    for (std::size_t begin = 0; begin < gScanList.size();) {
        const std::size_t end = lf_groupEnd(begin);
        const auto airline = liveryIndex.try_emplace(gScanList[begin].airl).first;
        const auto type = airline->second.try_emplace(gScanList[begin].type).first;
        type->second.reserve(end - begin);
        for (; begin < end; ++begin) {
            type->second.push_back({lf_takeTitle(gScanList[begin]), gScanList[begin].cargo});
        }
        groups.push_back({airline->first, type->first, &type->second});
    }
    lf_indexTitles(groups);
    return groups;
}

void gf_buildAirlineTitles(const std::vector<LiveryGroup>& groups) {
    for (const LiveryGroup& group : groups) {
        for (const bool cargo : {false, true}) {
            TitleList titles = lf_titlesOf(*group.liveries, cargo);
            if (titles.empty()) continue;
            const auto airline = airlineTitles[cargo ? 1 : 0].try_emplace(std::string(group.airline)).first;
            airline->second.try_emplace(std::string(group.type), std::move(titles));
        }
    }
}

void gf_buildGenericTitles(const std::vector<LiveryGroup>& groups) {
    for (const LiveryGroup& group : groups) {
        for (const IndexedLivery& livery : *group.liveries) {
            TextMap<TitleList>& titles = genericTitles[livery.cargo ? 1 : 0];
            auto list = titles.find(group.type);
            if (list == titles.end()) list = titles.try_emplace(std::string(group.type)).first;
            list->second.push_back(livery.title);
        }
    }
    for (TextMap<TitleList>& titles : genericTitles) {
        for (auto& [type, list] : titles) list.shrink_to_fit();
    }
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
    regcodeTitles.clear();
    for (auto& titles : genericTitles) titles.clear();
    for (auto& titles : airlineTitles) titles.clear();
    gTitleIndex = {};
    gf_forgetLiveries();
    liveryIndex.clear();  // last: it owns the texts
}

}  // namespace hcr
