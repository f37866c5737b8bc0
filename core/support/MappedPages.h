// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <sys/mman.h>

namespace corvanta {

/// Lets the pages of a mapped file go that were read once, as for its checksum; each comes back when it is read again.
/// Only for a whole mapping that is never written to.
inline void letMappedPagesGo(const void* begin, std::size_t size) {
    // Keeping them would be no mistake.
    (void)::madvise(const_cast<void*>(begin), size, MADV_DONTNEED);
}

} // namespace corvanta
