// SPDX-License-Identifier: MIT
#pragma once

#include "support/LocalizedError.h"

#include <variant>

namespace corvanta {

/// What can go wrong while Safari, the Simulator and their windows are driven.
class WorkspaceAutomationError final : public LocalizedError {
public:
    struct SafariCouldNotLaunch {
        QString detail;
        bool operator==(const SafariCouldNotLaunch&) const = default;
    };

    struct SimulatorMenuUnavailable {
        QString deviceName;
        bool operator==(const SimulatorMenuUnavailable&) const = default;
    };

    struct TargetUnavailable {
        QString title;
        bool operator==(const TargetUnavailable&) const = default;
    };

    struct SimulatorWindowUnavailable {
        QString deviceName;
        bool operator==(const SimulatorWindowUnavailable&) const = default;
    };

    struct AccessibilityPermissionMissing {
        bool operator==(const AccessibilityPermissionMissing&) const = default;
    };

    struct SafariDeveloperFeaturesMissing {
        bool operator==(const SafariDeveloperFeaturesMissing&) const = default;
    };

    struct DevelopMenuUnavailable {
        bool operator==(const DevelopMenuUnavailable&) const = default;
    };

    struct InspectorWindowUnavailable {
        bool operator==(const InspectorWindowUnavailable&) const = default;
    };

    using Case = std::variant<SafariCouldNotLaunch, SimulatorMenuUnavailable, TargetUnavailable,
                              SimulatorWindowUnavailable, AccessibilityPermissionMissing,
                              SafariDeveloperFeaturesMissing, DevelopMenuUnavailable, InspectorWindowUnavailable>;

    /// `detail` is the launch error's own description.
    [[nodiscard]] static WorkspaceAutomationError safariCouldNotLaunch(QString detail);
    [[nodiscard]] static WorkspaceAutomationError simulatorMenuUnavailable(QString deviceName);
    [[nodiscard]] static WorkspaceAutomationError targetUnavailable(QString title);
    [[nodiscard]] static WorkspaceAutomationError simulatorWindowUnavailable(QString deviceName);
    [[nodiscard]] static WorkspaceAutomationError accessibilityPermissionMissing();
    [[nodiscard]] static WorkspaceAutomationError safariDeveloperFeaturesMissing();
    [[nodiscard]] static WorkspaceAutomationError developMenuUnavailable();
    [[nodiscard]] static WorkspaceAutomationError inspectorWindowUnavailable();

    [[nodiscard]] const Case& errorCase() const { return m_case; }

    [[nodiscard]] QString errorDescription() const override;
    [[nodiscard]] std::optional<QString> recoverySuggestion() const override;

    bool operator==(const WorkspaceAutomationError& other) const { return m_case == other.m_case; }

private:
    explicit WorkspaceAutomationError(Case errorCase);
    Case m_case;
};

} // namespace corvanta
