// SPDX-License-Identifier: MIT
#pragma once

namespace corvanta {

/// Relative widths of the three columns. Any positive numbers; they need not add up to 1.
struct ColumnRatios {
    double controls = 0;
    double simulator = 0;
    double inspector = 0;

    /// Each value raised to at least 0.05, then divided by the sum of the three raised values.
    [[nodiscard]] ColumnRatios normalized() const;

    bool operator==(const ColumnRatios&) const = default;
};

} // namespace corvanta
