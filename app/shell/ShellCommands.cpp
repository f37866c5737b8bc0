// SPDX-License-Identifier: MIT
#include "shell/ShellCommands.h"

#include "shell/AppIdentity.h"

#include <QClipboard>
#include <QGuiApplication>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

MenuItem menuItem(ShellCommand command, const ShellState& state) {
    switch (command) {
    case ShellCommand::startWorkspace:
        // A running workspace could be started again, but nobody who presses this means that.
        return {u"Start Workspace"_s, state.canStart && state.phase != WorkspacePhase::running};
    case ShellCommand::reloadPage:
        return {u"Open / Reload Page"_s, state.canReload};
    case ShellCommand::retileWindows:
        return {u"Re-tile Windows"_s, state.canRetile};
    case ShellCommand::stopWorkspace:
        return {u"Stop Workspace"_s, state.canStop};
    case ShellCommand::checkForUpdates:
        if (state.isCheckingForUpdates)
            return {u"Checking for Updates…"_s, false};
        return {u"Check for Updates…"_s, true};
    case ShellCommand::openWebsite:
        return {u"Corvanta Website"_s, true};
    case ShellCommand::emailSupport:
        return {u"Email Support"_s, true};
    case ShellCommand::copyVersionInformation:
        return {u"Copy Version Information"_s, true};
    }
    Q_UNREACHABLE();
}

QString statusText(WorkspacePhase phase) {
    return u"Status: "_s + displayName(phase);
}

ShellCommands::ShellCommands(const Services& services, QObject* parent)
    : QObject(parent)
    , m_services(services) {
    const auto* const coordinator = &m_services.coordinator;
    connect(coordinator, &WorkspaceCoordinator::phaseChanged, this, &ShellCommands::stateChanged);
    connect(coordinator, &WorkspaceCoordinator::devicesChanged, this, &ShellCommands::stateChanged);
    connect(coordinator, &WorkspaceCoordinator::selectedDeviceIDChanged, this, &ShellCommands::stateChanged);
    connect(coordinator, &WorkspaceCoordinator::setupChecksChanged, this, &ShellCommands::stateChanged);
    connect(coordinator, &WorkspaceCoordinator::controlWindowChanged, this, &ShellCommands::stateChanged);
    connect(&m_services.updateChecker, &UpdateChecker::isCheckingChanged, this, &ShellCommands::stateChanged);
}

ShellState ShellCommands::state() const {
    const WorkspaceCoordinator& coordinator = m_services.coordinator;
    return {.phase = coordinator.phase(),
            .canStart = coordinator.canStart(),
            .canReload = coordinator.canReload(),
            .canRetile = coordinator.canRetile(),
            .canStop = coordinator.canStop(),
            .isCheckingForUpdates = m_services.updateChecker.isChecking()};
}

void ShellCommands::perform(ShellCommand command) {
    switch (command) {
    case ShellCommand::startWorkspace:
        m_services.tasks.start(m_services.coordinator.startWorkspace());
        return;
    case ShellCommand::reloadPage:
        m_services.tasks.start(m_services.coordinator.reloadPage());
        return;
    case ShellCommand::retileWindows:
        m_services.coordinator.retile();
        return;
    case ShellCommand::stopWorkspace:
        m_services.coordinator.stopWorkspace();
        return;
    case ShellCommand::checkForUpdates:
        m_services.tasks.start(m_services.updateChecker.check(true));
        return;
    case ShellCommand::openWebsite:
        m_services.desktop.openURL(AppIdentity::websiteURL());
        return;
    case ShellCommand::emailSupport:
        if (const auto address = AppIdentity::supportEmailURL())
            m_services.desktop.openURL(*address);
        return;
    case ShellCommand::copyVersionInformation: {
        QClipboard* const clipboard = QGuiApplication::clipboard();
        clipboard->clear();
        clipboard->setText(AppIdentity::versionLine());
        return;
    }
    }
    Q_UNREACHABLE();
}

} // namespace corvanta
