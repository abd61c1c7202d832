#pragma once

#include <array>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "liveries/text_index.h"
#include "platform/types.h"

namespace hcr {

/// What is known of a real airframe. Airframes of one kind share a record, whose texts live as long as the table.
struct DbaseRecord {
    std::string_view airl;  ///< whose colours it wears
    std::string_view type;  ///< ICAO type
    std::string_view opr;   ///< operator that flies it in place of airl; wins when not empty
    bool cargo = false;
};

/// The real airframes by registration, in the order in which they were added. Hundreds of thousands of them take some
/// 30 bytes each: the registrations stand in one block of text, the few different texts of the records once each, and
/// equal records are one.
struct RegistrationTable {
    struct Entry {
        u32 textAt = 0;  ///< into texts
        u32 textLength = 0;
        u32 record = 0;  ///< into records
    };

    /// Numbers of the three texts in words, and the flag.
    using RecordKey = std::array<u32, 4>;

    std::string texts;
    std::vector<Entry> entries;
    std::deque<DbaseRecord> records;    ///< never moved, so that pointers to them stay good
    std::vector<RecordKey> recordKeys;  ///< of the records
    std::deque<std::string> words;      ///< the texts of the records, never moved
    TextIndex index, recordIndex, wordIndex;

    /// False, and the table keeps the older record, when the registration is there already.
    bool add(std::string_view registration, const DbaseRecord& record);
    const DbaseRecord* find(std::string_view registration) const;
    /// Position of a registration in the order of the table, TextIndex::kNone if it isn't there.
    u32 positionOf(std::string_view registration) const;
    std::string_view registration(u32 position) const;
    std::size_t size() const { return entries.size(); }
    /// Makes room for `count` registrations of `textBytes` altogether.
    void reserve(std::size_t count, std::size_t textBytes);
    /// Gives back the room that wasn't needed.
    void shrink();
    void clear();
};

}  // namespace hcr
