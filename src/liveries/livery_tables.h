#pragma once

#include <array>
#include <memory_resource>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "liveries/livery_data.h"
#include "liveries/scanned_file.h"

namespace hcr {

/// Memory of the tables below, given back as a whole by gf_clearLiveryTables. Tens of thousands of liveries would
/// otherwise take a hundred thousand small blocks, which cost more time than reading their file.
extern std::pmr::monotonic_buffer_resource gLiveryMemory;

// Tables of the matching; read-only between two loads. Index 0 passenger, 1 cargo. Run thread.
extern std::vector<LiveryGroup> liveryIndex;  ///< every livery, sorted by airline and type; the owner of the titles
extern std::array<LiveryMap<LiveryMap<TitleList>>, 2> airlineTitles;    ///< airline to type to titles
extern std::array<LiveryMap<TitleList>, 2> genericTitles;               ///< type to titles of any airline
extern LiveryMap<std::string_view> regcodeTitles;                       ///< registration to title
extern std::set<std::string, std::less<>> uniqueRegcodes;               ///< of special entries that hold no other
extern std::vector<std::string_view> specialTitles;                     ///< reserved for their registrations
extern std::vector<std::string> lightPool, buzjetPool, rotorcraftPool;  ///< types of these classes with a livery

// Steps of the loading of the scan results. Run thread.

/// Builds liveryIndex from the sorted list. It takes copies of the texts, and the titles of the list then are those
/// copies.
void gf_buildLiveryIndex(std::vector<ScannedLivery>& liveries);
/// Fill airlineTitles and genericTitles from liveryIndex.
void gf_buildAirlineTitles();
void gf_buildGenericTitles();
/// A copy of a text that lives as long as the tables.
std::string_view gf_keepText(std::string_view text);
/// View of the indexed title that equals this one, empty when there is none.
std::string_view gf_findTitle(std::string_view title);
/// Reserves room, once in the process.
void gf_prepareLiveryTables();
/// Empties all tables of the liveries.
void gf_emptyLiveryTables();

}  // namespace hcr
