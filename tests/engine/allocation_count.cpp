#include "tests/engine/allocation_count.h"

#include <cstdlib>
#include <new>

namespace hcr::test {
namespace {

thread_local bool counting = false;
thread_local std::size_t allocations = 0;

}  // namespace

AllocationCount::AllocationCount() {
    allocations = 0;
    counting = true;
}

AllocationCount::~AllocationCount() {
    counting = false;
}

std::size_t AllocationCount::count() const {
    return allocations;
}

void noteAllocation() {
    if (counting) ++allocations;
}

}  // namespace hcr::test

void* operator new(std::size_t size) {
    hcr::test::noteAllocation();
    if (void* block = std::malloc(size > 0 ? size : 1)) return block;
    throw std::bad_alloc();
}

void operator delete(void* block) noexcept {
    std::free(block);
}

void operator delete(void* block, std::size_t) noexcept {
    std::free(block);
}
