#pragma once

#include <array>
#include <memory_resource>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "platform/types.h"

namespace hcr {

/// Hash for lookups by text view in tables keyed by owned texts.
struct TextHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const { return std::hash<std::string_view>{}(text); }
};
template <typename Value>
using TextMap = std::unordered_map<std::string, Value, TextHash, std::equal_to<>>;
using TextSet = std::unordered_set<std::string, TextHash, std::equal_to<>>;

/// One installed livery.
struct LiveryData {
    std::string airl;     ///< ICAO airline code; "ZZZ" generic, "PVT" private owner
    std::string type;     ///< ICAO type designator
    std::string title;    ///< the name by which the simulator creates it
    std::string atcid;    ///< one registration, or empty
    i32 folderOrder = 0;  ///< position of the scanned folder; not stored
    bool cargo = false;
};

/// A stored livery of the index.
struct IndexedLivery {
    std::string_view title;
    bool cargo = false;
};

/// The liveries of one airline and type.
struct LiveryGroup {
    std::string_view airline, type;
    std::span<const IndexedLivery> liveries;  ///< by title
    std::array<std::size_t, 2> counts{};      ///< passenger, cargo
};

/// A table of the loaded liveries. All of it, texts included, stands in gLiveryMemory.
template <typename Value>
using LiveryMap = std::pmr::unordered_map<std::string_view, Value>;
using TitleList = std::pmr::vector<std::string_view>;

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

extern std::vector<LiveryData> gScanList;       ///< what a scan has found; empty but during a scan
extern std::vector<std::string> dontUseTitles;  ///< titles that a scan passes over

}  // namespace hcr
