// SPDX-License-Identifier: MIT
#include "window/StatusSection.h"

#include "window/Widgets.h"
#include "workspace/WorkspaceCoordinator.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

StatusSection::StatusSection(WorkspaceCoordinator& coordinator, QWidget* parent)
    : QFrame(parent)
    , m_coordinator(coordinator)
    , m_progress(new ProgressIndicator)
    , m_status(makeLabel(TextStyle::body))
    , m_recovery(makeLabel(TextStyle::secondary)) {
    setObjectName(u"statusBar"_s);
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(16, 10, 16, 10);
    row->setSpacing(8);
    auto* const texts = new QVBoxLayout;
    texts->setSpacing(3);
    texts->addWidget(m_status);
    texts->addWidget(m_recovery);
    row->addLayout(texts, 1);
    row->addWidget(m_progress, 0, Qt::AlignTop);
    for (QLabel* const label : {m_status, m_recovery})
        label->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);

    connect(&m_coordinator, &WorkspaceCoordinator::statusMessageChanged, this, &StatusSection::showTexts);
    connect(&m_coordinator, &WorkspaceCoordinator::recoveryMessageChanged, this, &StatusSection::showTexts);
    for (const auto changed : {&WorkspaceCoordinator::phaseChanged, &WorkspaceCoordinator::isCheckingSetupChanged,
                               &WorkspaceCoordinator::isRefreshingDevicesChanged})
        connect(&m_coordinator, changed, this, &StatusSection::showProgress);
    showTexts();
    showProgress();
}

void StatusSection::showTexts() {
    m_status->setText(m_coordinator.statusMessage());
    m_recovery->setText(m_coordinator.recoveryMessage().value_or(QString()));
    m_recovery->setVisible(m_coordinator.recoveryMessage().has_value());
}

void StatusSection::showProgress() {
    m_progress->setActive(isWorking(m_coordinator.phase()) || m_coordinator.isCheckingSetup() ||
                          m_coordinator.isRefreshingDevices());
}

} // namespace corvanta
