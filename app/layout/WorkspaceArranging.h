// SPDX-License-Identifier: MIT
#pragma once

#include "AccessibilityClient.h"
#include "ControlWindow.h"
#include "layout/ColumnRatios.h"

#include <QString>

#include <memory>
#include <optional>

namespace corvanta {

/// Tiles the three windows of a workspace and puts them back. Main thread only.
class WorkspaceArranging {
public:
    WorkspaceArranging() = default;
    WorkspaceArranging(const WorkspaceArranging&) = delete;
    WorkspaceArranging& operator=(const WorkspaceArranging&) = delete;
    virtual ~WorkspaceArranging() = default;

    /// Moves the three windows into their columns. Throws WorkspaceAutomationError before anything has been moved.
    virtual void tile(std::shared_ptr<ControlWindow> controlWindow, const QString& simulatorDeviceName,
                      const std::optional<AccessibilityElement>& inspectorWindow, const ColumnRatios& ratios) = 0;

    /// Puts every window back to its frame from before the first tiling; windows that have gone are skipped.
    virtual void restore() = 0;
};

} // namespace corvanta
