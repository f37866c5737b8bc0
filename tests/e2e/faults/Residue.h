// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <cstdint>
#include <vector>

namespace corvanta::testing {

/// What a program and its desktop have taken at one moment, and what must not grow with use.
struct Residue {
    struct Count {
        QString what;
        std::int64_t number = 0;
        /// How much more is no growth.
        std::int64_t tolerance = 0;
    };

    std::vector<Count> counts;

    /// Of the program with this process, and of everything on this desktop.
    [[nodiscard]] static Residue now(int processID);
};

} // namespace corvanta::testing
