#pragma once

#include <atomic>

namespace hcr {

/// A single word that threads share without a lock, as a field of a record that is put back as a whole: its copies are
/// copies of the value.
template <typename Value>
struct SharedValue : std::atomic<Value> {
    SharedValue(Value value = {}) : std::atomic<Value>(value) {}  // NOLINT: a value like any other
    SharedValue(const SharedValue& other) : std::atomic<Value>(other.load()) {}
    SharedValue& operator=(const SharedValue& other) {
        this->store(other.load());
        return *this;
    }
    using std::atomic<Value>::operator=;
};

}  // namespace hcr
