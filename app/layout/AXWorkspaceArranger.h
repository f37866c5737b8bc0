// SPDX-License-Identifier: MIT
#pragma once

#include "Desktop.h"
#include "layout/WorkspaceArranging.h"

#include <vector>

namespace corvanta {

/// Arranges the application's own window and, through the accessibility interface, the two foreign ones.
class AXWorkspaceArranger final : public WorkspaceArranging {
public:
    /// Both outlive the arranger.
    AXWorkspaceArranger(AccessibilityClient& client, Desktop& desktop);

    void tile(std::shared_ptr<ControlWindow> controlWindow, const QString& simulatorDeviceName,
              const std::optional<AccessibilityElement>& inspectorWindow, const ColumnRatios& ratios) override;
    void restore() override;

private:
    struct SavedAXFrame {
        AccessibilityElement element;
        Rect frame;
    };

    [[nodiscard]] std::optional<AccessibilityElement> simulatorWindow(const QString& deviceName);
    [[nodiscard]] Rect visibleFrame(const ControlWindow& controlWindow) const;
    void saveFrame(const AccessibilityElement& window, double flipHeight);

    AccessibilityClient& m_client;
    Desktop& m_desktop;
    /// Weak, so that the arranger never keeps the window alive.
    std::weak_ptr<ControlWindow> m_savedControlWindow;
    std::optional<Rect> m_savedControlFrame;
    std::vector<SavedAXFrame> m_savedAXFrames;
};

} // namespace corvanta
