// SPDX-License-Identifier: MIT
#include "window/SetupSection.h"

#include "setup/SetupCheckEvaluator.h"
#include "window/Widgets.h"
#include "workspace/WorkspaceCoordinator.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

namespace {

QString actionLabel(SetupRecoveryAction action) {
    switch (action) {
    case SetupRecoveryAction::none:
        return {};
    case SetupRecoveryAction::openSoftwareUpdate:
        return u"Update macOS"_s;
    case SetupRecoveryAction::openXcodeDownload:
        return u"Get Xcode"_s;
    case SetupRecoveryAction::openXcode:
        return u"Open Xcode"_s;
    case SetupRecoveryAction::requestAccessibility:
        return u"Allow Access"_s;
    case SetupRecoveryAction::openSafari:
        return u"Open Safari"_s;
    }
    return {};
}

QString stateName(SetupCheckState state) {
    switch (state) {
    case SetupCheckState::passed:
        return u"Passed"_s;
    case SetupCheckState::failed:
        return u"Failed"_s;
    case SetupCheckState::blocked:
        return u"Blocked"_s;
    }
    return {};
}

void clear(QLayout& layout) {
    while (QLayoutItem* const item = layout.takeAt(0)) {
        if (QWidget* const widget = item->widget()) {
            widget->hide();
            widget->deleteLater();
        }
        delete item;
    }
}

} // namespace

SetupSection::SetupSection(WorkspaceCoordinator& coordinator, TaskScope& tasks, QWidget* parent)
    : QWidget(parent)
    , m_coordinator(coordinator)
    , m_tasks(tasks)
    , m_heading(makeLabel(TextStyle::heading))
    , m_progressText(makeLabel(TextStyle::secondary, u"Checking this Mac…"_s))
    , m_progress(new ProgressIndicator)
    , m_checkAgain(new QPushButton(u"Check Again"_s)) {
    auto* const outer = new QVBoxLayout(this);
    outer->setContentsMargins(0, 0, 0, 0);
    auto* const card = new Card;
    outer->addWidget(card);

    auto* const header = new QHBoxLayout;
    header->setSpacing(8);
    header->addWidget(m_heading, 1);
    header->addWidget(m_progress);
    m_progressText->setWordWrap(false);
    header->addWidget(m_progressText);
    header->addWidget(m_checkAgain);
    card->rows().addLayout(header);
    m_rows = new QVBoxLayout;
    m_rows->setSpacing(6);
    card->rows().addLayout(m_rows);

    connect(m_checkAgain, &QPushButton::clicked, this, [this] { m_tasks.start(m_coordinator.runSetupChecks()); });
    connect(&m_coordinator, &WorkspaceCoordinator::setupChecksChanged, this, &SetupSection::showChecks);
    connect(&m_coordinator, &WorkspaceCoordinator::isCheckingSetupChanged, this, &SetupSection::showProgress);
    showChecks();
    showProgress();
}

void SetupSection::showProgress() {
    const bool isChecking = m_coordinator.isCheckingSetup();
    m_progress->setActive(isChecking);
    m_progress->setVisible(isChecking);
    m_progressText->setVisible(isChecking);
    m_checkAgain->setVisible(!isChecking);
}

void SetupSection::showChecks() {
    const auto& checks = m_coordinator.setupChecks();
    m_heading->setText(allRequirementsSatisfied(checks) ? u"Setup ready"_s : u"Setup checks"_s);
    clear(*m_rows);
    for (const SetupCheck& check : checks) {
        auto* const row = new QWidget;
        auto* const layout = new QHBoxLayout(row);
        layout->setContentsMargins(0, 2, 0, 2);
        layout->setSpacing(10);
        auto* const mark = new StateMark;
        mark->setState(check.state);
        mark->setAccessibleName(stateName(check.state));
        layout->addWidget(mark);

        auto* const texts = new QVBoxLayout;
        texts->setSpacing(1);
        texts->addWidget(makeLabel(TextStyle::body, check.title));
        texts->addWidget(makeLabel(TextStyle::secondary, check.detail));
        layout->addLayout(texts, 1);

        if (const SetupRecoveryAction action = check.recoveryAction; action != SetupRecoveryAction::none) {
            auto* const button = new QPushButton(actionLabel(action));
            connect(button, &QPushButton::clicked, this,
                    [this, action] { m_tasks.start(m_coordinator.performSetupAction(action)); });
            layout->addWidget(button);
        }
        m_rows->addWidget(row);
    }
}

} // namespace corvanta
