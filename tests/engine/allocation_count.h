#pragma once

#include <cstddef>

namespace hcr::test {

/// Counts the allocations of this thread while it lives.
struct AllocationCount {
    AllocationCount();
    ~AllocationCount();
    AllocationCount(const AllocationCount&) = delete;
    AllocationCount& operator=(const AllocationCount&) = delete;

    std::size_t count() const;
};

}  // namespace hcr::test
