// SPDX-License-Identifier: MIT
#include "layout/ColumnRatios.h"

namespace corvanta {

namespace {

/// A value that is not a number becomes the floor too.
double raised(double value) {
    constexpr double floor = 0.05;
    return value > floor ? value : floor;
}

} // namespace

ColumnRatios ColumnRatios::normalized() const {
    const ColumnRatios positive{raised(controls), raised(simulator), raised(inspector)};
    const double sum = positive.controls + positive.simulator + positive.inspector;
    return {positive.controls / sum, positive.simulator / sum, positive.inspector / sum};
}

} // namespace corvanta
