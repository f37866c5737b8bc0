// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

namespace corvanta::fuzz {

/// Aborts at its end when more memory than ten times the input and 16 MiB was in use at any time of its life, beyond
/// what was in use at its beginning.
class MemoryBound {
public:
    explicit MemoryBound(std::size_t inputSize);
    MemoryBound(const MemoryBound&) = delete;
    MemoryBound& operator=(const MemoryBound&) = delete;
    ~MemoryBound();

private:
    std::int64_t m_start;
    std::int64_t m_bound;
};

} // namespace corvanta::fuzz
