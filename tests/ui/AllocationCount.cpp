#include "ui/AllocationCount.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<long> live_allocations = 0;

} // namespace

long Tests::LiveAllocations() noexcept {
    return live_allocations;
}

void* operator new(std::size_t i_size) {
    void* const block = std::malloc(i_size != 0 ? i_size : 1);
    if (block == nullptr)
        throw std::bad_alloc();
    ++live_allocations;
    return block;
}

void operator delete(void* i_block) noexcept {
    if (i_block != nullptr)
        --live_allocations;
    std::free(i_block);
}

void operator delete(void* i_block, std::size_t) noexcept {
    operator delete(i_block);
}
