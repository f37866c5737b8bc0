// SPDX-License-Identifier: MIT
#include "MemoryBound.h"

#include <sanitizer/allocator_interface.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstdlib>

namespace corvanta::fuzz {

namespace {

std::atomic<std::int64_t> inUse = 0;
std::atomic<std::int64_t> peak = 0;

void countAllocation(const volatile void*, std::size_t size) {
    const std::int64_t now = inUse += static_cast<std::int64_t>(size);
    peak = std::max(peak.load(), now);
}

void countRelease(const volatile void* memory) {
    if (memory)
        inUse -= static_cast<std::int64_t>(__sanitizer_get_allocated_size(memory));
}

[[maybe_unused]] const int hooks = __sanitizer_install_malloc_and_free_hooks(countAllocation, countRelease);

} // namespace

MemoryBound::MemoryBound(std::size_t inputSize)
    : m_start(inUse)
    , m_bound(10 * static_cast<std::int64_t>(inputSize) + (std::int64_t{16} << 20)) {
    peak = m_start;
}

MemoryBound::~MemoryBound() {
    if (const std::int64_t used = peak - m_start; used > m_bound) {
        std::fprintf(stderr, "%lld bytes were in use, %lld are allowed\n", static_cast<long long>(used),
                     static_cast<long long>(m_bound));
        std::abort();
    }
}

} // namespace corvanta::fuzz
