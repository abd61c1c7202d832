#pragma once

#include <array>
#include <map>
#include <set>
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
    std::string airl;      ///< ICAO airline code; "ZZZ" generic, "PVT" private owner
    std::string type;      ///< ICAO type designator
    std::string title;     ///< the name by which the simulator creates it
    std::string atcid;     ///< one registration, or empty
    i32 folderOrder = 0;   ///< position of the scanned folder; not stored
    bool cargo = false;
};

/// A stored livery of the index, which owns all titles.
struct IndexedLivery {
    std::string title;
    bool cargo = false;
};

using TitleList = std::vector<std::string_view>;

// Tables of the matching; read-only between two loads. Index 0 passenger, 1 cargo. Run thread.
extern std::vector<LiveryData> gScanList;                                ///< empty but during scan and loading
extern TextMap<TextMap<std::vector<IndexedLivery>>> liveryIndex;         ///< airline to type to liveries
extern std::array<TextMap<TextMap<TitleList>>, 2> airlineTitles;         ///< airline to type to titles
extern std::array<TextMap<TitleList>, 2> genericTitles;                  ///< type to titles of any airline
extern TextMap<std::string_view> regcodeTitles;                          ///< registration to title
extern std::set<std::string, std::less<>> uniqueRegcodes;
extern std::vector<std::string_view> specialTitles;
extern std::vector<std::string> lightPool, buzjetPool, rotorcraftPool;
extern std::vector<std::string> dontUseTitles;

}  // namespace hcr
