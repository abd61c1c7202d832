#pragma once

#include <cstddef>
#include <utility>
#include <vector>

namespace hcr {

/// A first-in, first-out queue whose records stay where they are made: what is taken out is written over by a later
/// one, texts and all, so that a queue that has been as long before allocates nothing. Indices count from the front.
template <typename Record>
struct RecordQueue {
    std::vector<Record> slots;  ///< a power of two in number, or none
    std::size_t first = 0;      ///< slot of the front
    std::size_t count = 0;

    bool empty() const { return count == 0; }
    std::size_t size() const { return count; }
    Record& operator[](std::size_t index) { return slots[(first + index) & (slots.size() - 1)]; }
    Record& front() { return (*this)[0]; }
    Record& back() { return (*this)[count - 1]; }

    /// The new last record, with the values that its slot was left with.
    Record& extend() {
        if (count == slots.size()) grow();
        ++count;
        return back();
    }
    void push_back(Record record) { extend() = std::move(record); }
    void pop_front() {
        first = (first + 1) & (slots.size() - 1);
        --count;
    }
    void clear() { first = count = 0; }

    void grow() {
        constexpr std::size_t kFewest = 16;
        std::vector<Record> wider(slots.empty() ? kFewest : 2 * slots.size());
        for (std::size_t i = 0; i < count; ++i) wider[i] = std::move((*this)[i]);
        slots = std::move(wider);
        first = 0;
    }
};

}  // namespace hcr
