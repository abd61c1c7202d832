#include "tests/engine/allocation_count.h"

#include <cstdlib>
#include <new>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define HALCYRANE_SANITIZED_ALLOCATOR 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define HALCYRANE_SANITIZED_ALLOCATOR 1
#endif
#endif

#ifdef HALCYRANE_SANITIZED_ALLOCATOR
// Declared by the sanitizer's own header, which not every compiler brings along.
extern "C" int __sanitizer_install_malloc_and_free_hooks(void (*onMalloc)(const volatile void*, std::size_t),
                                                         void (*onFree)(const volatile void*));
#endif

namespace {

thread_local bool counting = false;
thread_local std::size_t allocations = 0;

void note() {
    if (counting) ++allocations;
}

#ifdef HALCYRANE_SANITIZED_ALLOCATOR
// The sanitizer's own operators stay in place, for they tell which of them a block came from.
const int hooked = __sanitizer_install_malloc_and_free_hooks([](const volatile void*, std::size_t) { note(); },
                                                             [](const volatile void*) {});
#endif

}  // namespace

#ifndef HALCYRANE_SANITIZED_ALLOCATOR
void* operator new(std::size_t size) {
    note();
    if (void* block = std::malloc(size > 0 ? size : 1)) return block;
    throw std::bad_alloc();
}

void operator delete(void* block) noexcept {
    std::free(block);
}

void operator delete(void* block, std::size_t) noexcept {
    std::free(block);
}
#endif

namespace hcr::test {

AllocationCount::AllocationCount() {
#ifdef HALCYRANE_SANITIZED_ALLOCATOR
    if (hooked == 0) std::abort();
#endif
    allocations = 0;
    counting = true;
}

AllocationCount::~AllocationCount() {
    counting = false;
}

std::size_t AllocationCount::count() const {
    return allocations;
}

}  // namespace hcr::test
