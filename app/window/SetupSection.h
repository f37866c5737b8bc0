// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

class QLabel;
class QPushButton;
class QVBoxLayout;

namespace corvanta {

class ProgressIndicator;
class WorkspaceCoordinator;
class TaskScope;

/// The setup checks: a row each, with the button that mends it.
class SetupSection final : public QWidget {
    Q_OBJECT

public:
    /// Both outlive the section.
    SetupSection(WorkspaceCoordinator& coordinator, TaskScope& tasks, QWidget* parent = nullptr);

private:
    void showChecks();
    void showProgress();

    WorkspaceCoordinator& m_coordinator;
    TaskScope& m_tasks;
    QLabel* m_heading;
    QLabel* m_progressText;
    ProgressIndicator* m_progress;
    QPushButton* m_checkAgain;
    QVBoxLayout* m_rows;
};

} // namespace corvanta
