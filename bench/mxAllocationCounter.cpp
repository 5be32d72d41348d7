#include "mxAllocationCounter.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<std::size_t> allocations{0};

void* countedAllocation(std::size_t size) {
    allocations.fetch_add(1, std::memory_order_relaxed);
    // malloc(0) may give null; operator new must not.
    if (void* memory = std::malloc(size == 0 ? 1 : size)) {
        return memory;
    }
    throw std::bad_alloc();
}

void* countedAlignedAllocation(std::size_t size, std::align_val_t alignment) {
    allocations.fetch_add(1, std::memory_order_relaxed);
    const std::size_t align = static_cast<std::size_t>(alignment);
    // aligned_alloc wants a size that is a multiple of the alignment.
    const std::size_t rounded = (size + align - 1) / align * align;
    if (void* memory = std::aligned_alloc(align, rounded == 0 ? align : rounded)) {
        return memory;
    }
    throw std::bad_alloc();
}

} // namespace

namespace mx::bench {

std::size_t allocationCount() {
    return allocations.load(std::memory_order_relaxed);
}

} // namespace mx::bench

void* operator new(std::size_t size) {
    return countedAllocation(size);
}

void* operator new[](std::size_t size) {
    return countedAllocation(size);
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    try {
        return countedAllocation(size);
    } catch (...) {
        return nullptr;
    }
}

void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    try {
        return countedAllocation(size);
    } catch (...) {
        return nullptr;
    }
}

void* operator new(std::size_t size, std::align_val_t alignment) {
    return countedAlignedAllocation(size, alignment);
}

void* operator new[](std::size_t size, std::align_val_t alignment) {
    return countedAlignedAllocation(size, alignment);
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete[](void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

void operator delete[](void* memory, std::size_t) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::align_val_t) noexcept {
    std::free(memory);
}

void operator delete[](void* memory, std::align_val_t) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t, std::align_val_t) noexcept {
    std::free(memory);
}

void operator delete[](void* memory, std::size_t, std::align_val_t) noexcept {
    std::free(memory);
}
