#pragma once

#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "liveries/livery_data.h"
#include "liveries/text_index.h"
#include "platform/types.h"

namespace hcr {

/// What is known of a real airframe. Airframes of one kind share a record.
struct DbaseRecord {
    std::string airl;  ///< whose colours it wears
    std::string type;  ///< ICAO type
    std::string opr;   ///< operator that flies it in place of airl; wins when not empty
    bool cargo = false;
};

/// The real airframes by registration, in the order in which they were added. Hundreds of thousands of them take some
/// 25 bytes each: the registrations stand in one block of text, and the records, of which there are few different
/// ones, are shared.
struct RegistrationTable {
    struct Entry {
        u32 textAt = 0;  ///< into texts
        u32 textLength = 0;
        u32 record = 0;  ///< into records
    };

    std::string texts;
    std::vector<Entry> entries;
    std::deque<DbaseRecord> records;  ///< never moved, so that pointers to them stay good
    TextIndex index;
    TextMap<u32> recordNumbers;  ///< only while the table is filled

    /// False, and the table keeps the older record, when the registration is there already.
    bool add(std::string_view registration, const DbaseRecord& record);
    const DbaseRecord* find(std::string_view registration) const;
    /// Position of a registration in the order of the table, TextIndex::kNone if it isn't there.
    u32 positionOf(std::string_view registration) const;
    std::string_view registration(u32 position) const;
    std::size_t size() const {
        return entries.size();
    }
    /// Makes room for `count` registrations of `textBytes` altogether.
    void reserve(std::size_t count, std::size_t textBytes);
    /// Gives back the memory that only adding needs.
    void finish();
    void clear();
};

}  // namespace hcr
