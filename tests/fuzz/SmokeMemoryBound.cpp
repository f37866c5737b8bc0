// SPDX-License-Identifier: MIT
//
// Without the sanitizer's hooks nobody counts what the readers allocate; "./dev fuzz" and its preset do.
#include "MemoryBound.h"

namespace corvanta::fuzz {

MemoryBound::MemoryBound(std::size_t inputSize)
    : m_start(0)
    , m_bound(static_cast<std::int64_t>(inputSize)) {}

MemoryBound::~MemoryBound() {
    static_cast<void>(m_start);
    static_cast<void>(m_bound);
}

} // namespace corvanta::fuzz
