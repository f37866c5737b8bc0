// SPDX-License-Identifier: MIT
#pragma once

#include "AccessibilityClient.h"
#include "safari/SafariTarget.h"
#include "support/Cancellation.h"

#include <QCoroTask>

#include <optional>
#include <vector>

namespace corvanta {

/// Drives desktop Safari. Main thread only; failures are WorkspaceAutomationError.
class SafariInspecting {
public:
    SafariInspecting() = default;
    SafariInspecting(const SafariInspecting&) = delete;
    SafariInspecting& operator=(const SafariInspecting&) = delete;
    virtual ~SafariInspecting() = default;

    /// Launches Safari unless it runs; does not bring it forward. Throws safariCouldNotLaunch.
    [[nodiscard]] virtual QCoro::Task<void> ensureSafariRunning() = 0;

    /// Whether Safari's menu bar has a Develop menu.
    [[nodiscard]] virtual bool developerFeaturesAvailable() = 0;

    /// The inspectable pages that the Develop menu lists for the device, in menu order.
    /// Throws CancelledError when `token` is cancelled while it waits.
    [[nodiscard]] virtual QCoro::Task<std::vector<SafariTarget>> snapshotTargets(QString deviceName,
                                                                                 CancellationToken token = {}) = 0;

    /// Opens the Web Inspector of a page and leaves its window in `managedInspectorWindow()`.
    /// Throws CancelledError when `token` is cancelled while it waits.
    [[nodiscard]] virtual QCoro::Task<void> attach(SafariTarget target, QString deviceName,
                                                   CancellationToken token = {}) = 0;

    /// The inspector window of the last successful attach.
    [[nodiscard]] virtual std::optional<AccessibilityElement> managedInspectorWindow() const = 0;

    /// Whether that window still exists.
    [[nodiscard]] virtual bool managedInspectorIsPresent() = 0;
};

} // namespace corvanta
