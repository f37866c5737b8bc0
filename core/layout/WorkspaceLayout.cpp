// SPDX-License-Identifier: MIT
#include "layout/WorkspaceLayout.h"

#include <algorithm>
#include <cmath>

namespace corvanta::WorkspaceLayout {

WorkspaceFrames frames(const Rect& visibleFrame, const ColumnRatios& ratios, double gap) {
    const ColumnRatios fractions = ratios.normalized();
    const double available = std::max(visibleFrame.width - 2 * gap, 0.0);
    const double controlsWidth = std::floor(fractions.controls * available);
    const double simulatorWidth = std::floor(fractions.simulator * available);
    const double inspectorWidth = std::max(available - controlsWidth - simulatorWidth, 0.0);

    const auto column = [&visibleFrame](double x, double width) {
        return Rect{x, visibleFrame.minY(), width, visibleFrame.height};
    };
    const Rect controls = column(visibleFrame.minX(), controlsWidth);
    const Rect simulator = column(controls.maxX() + gap, simulatorWidth);
    return {controls, simulator, column(simulator.maxX() + gap, inspectorWidth)};
}

} // namespace corvanta::WorkspaceLayout
