// SPDX-License-Identifier: MIT
#pragma once

#include "MemoryBound.h"

#include <QByteArray>

#include <cstdio>
#include <cstdlib>

namespace corvanta::fuzz {

/// The bytes that a reader is given.
inline QByteArray inputBytes(const std::uint8_t* data, std::size_t size) {
    return {reinterpret_cast<const char*>(data), static_cast<qsizetype>(size)};
}

/// Ends the run as a fault when `holds` is false.
inline void require(bool holds, const char* promise) {
    if (holds)
        return;
    std::fprintf(stderr, "broken promise: %s\n", promise);
    std::abort();
}

} // namespace corvanta::fuzz
