#pragma once

#include <functional>
#include <string_view>
#include <vector>

#include "platform/types.h"

namespace hcr {

/// Hash index beside a table that owns its texts: from a text to the number of its entry. Four bytes per slot and no
/// memory block per entry, which is what hundreds of thousands of registrations need. `textOf(number)` gives the text
/// of an entry.
struct TextIndex {
    static constexpr u32 kNone = 0xFFFFFFFF;

    std::vector<u32> slots;  ///< number + 1, 0 = free; the count is a power of two, at most half of it is used
    u32 used = 0;

    /// Number of the entry with this text, kNone if there is none.
    template <typename TextOf>
    u32 find(std::string_view text, TextOf textOf) const {
        return slots.empty() ? kNone : slots[slotOf(text, textOf)] - 1;
    }

    /// Enters `number` under its text; kNone when it was new, else the number that has the text already and stays.
    template <typename TextOf>
    u32 insert(u32 number, TextOf textOf) {
        if (slots.size() < 2 * (static_cast<std::size_t>(used) + 1)) grow(2 * slots.size(), textOf);
        u32& slot = slots[slotOf(textOf(number), textOf)];
        if (slot != 0) return slot - 1;
        slot = number + 1;
        ++used;
        return kNone;
    }

    /// Makes room for this many entries.
    template <typename TextOf>
    void reserve(std::size_t count, TextOf textOf) {
        if (slots.size() < 2 * count) grow(2 * count, textOf);
    }

    void clear() {
        slots = {};
        used = 0;
    }

private:
    template <typename TextOf>
    std::size_t slotOf(std::string_view text, TextOf textOf) const {
        const std::size_t mask = slots.size() - 1;
        std::size_t at = std::hash<std::string_view>{}(text)&mask;
        while (slots[at] != 0 && textOf(slots[at] - 1) != text) at = (at + 1) & mask;
        return at;
    }

    template <typename TextOf>
    void grow(std::size_t wanted, TextOf textOf) {
        std::size_t size = 16;
        while (size < wanted) size *= 2;
        std::vector<u32> old(size, 0);
        old.swap(slots);
        for (const u32 slot : old) {
            if (slot != 0) slots[slotOf(textOf(slot - 1), textOf)] = slot;
        }
    }
};

}  // namespace hcr
