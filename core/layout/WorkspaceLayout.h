// SPDX-License-Identifier: MIT
#pragma once

#include "layout/ColumnRatios.h"
#include "layout/Geometry.h"

namespace corvanta {

/// The places of the three windows of a workspace.
struct WorkspaceFrames {
    Rect controls;
    Rect simulator;
    Rect inspector;

    bool operator==(const WorkspaceFrames&) const = default;
};

namespace WorkspaceLayout {

/// Three columns from left to right in `visibleFrame`, at its full height, `gap` apart and without an outer margin.
///
/// The first two widths are whole points, rounded down; the remainder goes to the inspector. No width is negative.
[[nodiscard]] WorkspaceFrames frames(const Rect& visibleFrame, const ColumnRatios& ratios, double gap);

} // namespace WorkspaceLayout

} // namespace corvanta
