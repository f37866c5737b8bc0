// SPDX-License-Identifier: MIT
#pragma once

#include <QFrame>

class QLabel;

namespace corvanta {

class ProgressIndicator;
class WorkspaceCoordinator;

/// The status line and, beneath it, what to do; always in sight at the foot of the window.
class StatusSection final : public QFrame {
    Q_OBJECT

public:
    /// `coordinator` outlives the section.
    explicit StatusSection(WorkspaceCoordinator& coordinator, QWidget* parent = nullptr);

private:
    void showTexts();
    void showProgress();

    WorkspaceCoordinator& m_coordinator;
    ProgressIndicator* m_progress;
    QLabel* m_status;
    QLabel* m_recovery;
};

} // namespace corvanta
