// SPDX-License-Identifier: MIT
#include "safari/WorkspaceAutomationError.h"

#include <utility>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

namespace {

struct Description {
    using Error = WorkspaceAutomationError;

    QString operator()(const Error::SafariCouldNotLaunch& error) const {
        return u"Safari could not launch. "_s + error.detail;
    }

    QString operator()(const Error::SimulatorMenuUnavailable& error) const {
        return error.deviceName + u" is not listed in Safari's Develop menu yet."_s;
    }

    QString operator()(const Error::TargetUnavailable& error) const {
        return u"The Safari target "_s + error.title + u" is no longer available."_s;
    }

    QString operator()(const Error::SimulatorWindowUnavailable& error) const {
        return u"The Simulator window for "_s + error.deviceName + u" could not be found."_s;
    }

    QString operator()(const Error::AccessibilityPermissionMissing&) const {
        return u"Accessibility permission is required."_s;
    }

    QString operator()(const Error::SafariDeveloperFeaturesMissing&) const {
        return u"Safari developer features are not enabled."_s;
    }

    QString operator()(const Error::DevelopMenuUnavailable&) const {
        return u"Safari's Develop menu is not accessible."_s;
    }

    QString operator()(const Error::InspectorWindowUnavailable&) const {
        return u"Safari opened the target, but its Web Inspector window could not be found."_s;
    }
};

struct Suggestion {
    using Error = WorkspaceAutomationError;

    static QString enableDeveloperFeatures() {
        return u"In Safari > Settings > Advanced, enable “Show features for web developers”, then retry."_s;
    }

    QString operator()(const Error::SafariCouldNotLaunch&) const { return u"Open Safari manually and retry."_s; }

    QString operator()(const Error::SimulatorMenuUnavailable&) const {
        return u"Wait for the simulator to finish booting and for Safari to display the page, then retry."_s;
    }

    QString operator()(const Error::TargetUnavailable&) const {
        return u"Open the page again or choose another inspectable page."_s;
    }

    QString operator()(const Error::SimulatorWindowUnavailable&) const {
        return u"Bring the selected device window forward in Simulator, then click Re-tile."_s;
    }

    QString operator()(const Error::AccessibilityPermissionMissing&) const {
        return u"Allow Corvanta in System Settings > Privacy & Security > Accessibility, then retry."_s;
    }

    QString operator()(const Error::SafariDeveloperFeaturesMissing&) const { return enableDeveloperFeatures(); }

    QString operator()(const Error::DevelopMenuUnavailable&) const { return enableDeveloperFeatures(); }

    QString operator()(const Error::InspectorWindowUnavailable&) const {
        return u"Open Safari's Develop menu once manually, then click Re-tile."_s;
    }
};

} // namespace

WorkspaceAutomationError::WorkspaceAutomationError(Case errorCase)
    : m_case(std::move(errorCase)) {}

WorkspaceAutomationError WorkspaceAutomationError::safariCouldNotLaunch(QString detail) {
    return WorkspaceAutomationError(SafariCouldNotLaunch{std::move(detail)});
}

WorkspaceAutomationError WorkspaceAutomationError::simulatorMenuUnavailable(QString deviceName) {
    return WorkspaceAutomationError(SimulatorMenuUnavailable{std::move(deviceName)});
}

WorkspaceAutomationError WorkspaceAutomationError::targetUnavailable(QString title) {
    return WorkspaceAutomationError(TargetUnavailable{std::move(title)});
}

WorkspaceAutomationError WorkspaceAutomationError::simulatorWindowUnavailable(QString deviceName) {
    return WorkspaceAutomationError(SimulatorWindowUnavailable{std::move(deviceName)});
}

WorkspaceAutomationError WorkspaceAutomationError::accessibilityPermissionMissing() {
    return WorkspaceAutomationError(AccessibilityPermissionMissing{});
}

WorkspaceAutomationError WorkspaceAutomationError::safariDeveloperFeaturesMissing() {
    return WorkspaceAutomationError(SafariDeveloperFeaturesMissing{});
}

WorkspaceAutomationError WorkspaceAutomationError::developMenuUnavailable() {
    return WorkspaceAutomationError(DevelopMenuUnavailable{});
}

WorkspaceAutomationError WorkspaceAutomationError::inspectorWindowUnavailable() {
    return WorkspaceAutomationError(InspectorWindowUnavailable{});
}

QString WorkspaceAutomationError::errorDescription() const {
    return std::visit(Description{}, m_case);
}

std::optional<QString> WorkspaceAutomationError::recoverySuggestion() const {
    return std::visit(Suggestion{}, m_case);
}

} // namespace corvanta
