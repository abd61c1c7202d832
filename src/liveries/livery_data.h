#pragma once

#include <array>
#include <memory_resource>
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

}  // namespace hcr
