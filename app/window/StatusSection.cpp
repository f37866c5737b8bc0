// SPDX-License-Identifier: MIT
#include "window/StatusSection.h"

#include "Desktop.h"
#include "setup/AccessibilityPermission.h"
#include "window/widgets/AccessibleRoles.h"
#include "window/widgets/Buttons.h"
#include "window/widgets/OverlayScrollArea.h"
#include "window/widgets/ProgressIndicator.h"
#include "window/widgets/TextLabel.h"
#include "workspace/WorkspaceCoordinator.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

namespace {

enum class Help { none, accessibilitySettings, safari };

/// The words of the message decide; those who write the messages and this know both of them.
Help helpFor(const std::optional<QString>& message) {
    if (!message)
        return Help::none;
    const auto mentions = [&message](QStringView word) { return message->contains(word, Qt::CaseInsensitive); };
    if (mentions(u"Accessibility"))
        return Help::accessibilitySettings;
    return mentions(u"Safari") || mentions(u"Develop") ? Help::safari : Help::none;
}

QString helpLabel(Help help) {
    switch (help) {
    case Help::none:
        return {};
    case Help::accessibilitySettings:
        return u"Open Accessibility Settings"_s;
    case Help::safari:
        return u"Open Safari"_s;
    }
    return {};
}

} // namespace

StatusSection::StatusSection(const SectionContext& context, QWidget* parent)
    : QFrame(parent)
    , m_coordinator(context.coordinator)
    , m_desktop(context.desktop)
    , m_progress(new ProgressIndicator(context.clock))
    , m_status(new TextLabel(TextStyle::body))
    , m_recovery(new TextLabel(TextStyle::secondary))
    , m_help(makeSmallButton({})) {
    setObjectName(u"statusBar"_s);
    auto* const content = new QWidget;
    auto* const rows = new QVBoxLayout(content);
    rows->setContentsMargins(16, 10, 16, 10);
    rows->setSpacing(4);
    auto* const line = new QHBoxLayout;
    line->setSpacing(8);
    line->addWidget(m_progress, 0, Qt::AlignTop);
    line->addWidget(m_status, 1);
    rows->addLayout(line);
    rows->addWidget(m_recovery);
    rows->addWidget(m_help, 0, Qt::AlignLeft);
    for (TextLabel* const label : {m_status, m_recovery})
        label->setSelectable();
    m_help->hide();

    auto* const scroll = new OverlayScrollArea(OverlayScrollArea::Height::ofContent);
    scroll->setContent(content);
    auto* const outer = new QVBoxLayout(this);
    outer->setContentsMargins(0, 1, 0, 0);
    outer->addWidget(scroll);

    connect(m_help, &QPushButton::clicked, this, &StatusSection::help);
    for (const auto changed :
         {&WorkspaceCoordinator::statusMessageChanged, &WorkspaceCoordinator::recoveryMessageChanged})
        connect(&m_coordinator, changed, this, &StatusSection::showTexts);
    for (const auto changed :
         {&WorkspaceCoordinator::phaseChanged, &WorkspaceCoordinator::isCheckingSetupChanged,
          &WorkspaceCoordinator::isRefreshingDevicesChanged, &WorkspaceCoordinator::isLocationWorkingChanged})
        connect(&m_coordinator, changed, this, &StatusSection::showProgress);
    showTexts();
    showProgress();
}

void StatusSection::showTexts() {
    const auto& recovery = m_coordinator.recoveryMessage();
    announce(*m_status, m_coordinator.statusMessage());
    m_status->showText(m_coordinator.statusMessage());
    if (recovery)
        announce(*m_recovery, *recovery);
    m_recovery->showText(recovery.value_or(QString()));
    m_recovery->setVisible(recovery.has_value());
    const Help offered = helpFor(recovery);
    m_help->setText(helpLabel(offered));
    setVisibleKeepingFocus(*m_help, offered != Help::none);
}

void StatusSection::showProgress() {
    m_progress->setActive(isWorking(m_coordinator.phase()) || m_coordinator.isCheckingSetup() ||
                          m_coordinator.isRefreshingDevices() || m_coordinator.isLocationWorking());
}

void StatusSection::help() {
    const QString safari = u"com.apple.Safari"_s;
    switch (helpFor(m_coordinator.recoveryMessage())) {
    case Help::none:
        break;
    case Help::accessibilitySettings:
        AccessibilityPermission::openSystemSettings(m_desktop);
        break;
    case Help::safari:
        if (m_desktop.isRunning(safari))
            m_desktop.activate(safari);
        break;
    }
}

} // namespace corvanta
