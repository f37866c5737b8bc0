// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

class QVBoxLayout;

namespace corvanta {

class TaskScope;
class WorkspaceCoordinator;

/// The pages to choose from while a choice is pending; hidden otherwise.
class ChoiceSection final : public QWidget {
    Q_OBJECT

public:
    /// Both outlive the section.
    ChoiceSection(WorkspaceCoordinator& coordinator, TaskScope& tasks, QWidget* parent = nullptr);

private:
    void showCandidates();

    WorkspaceCoordinator& m_coordinator;
    TaskScope& m_tasks;
    QWidget* m_list = nullptr;
    QVBoxLayout* m_rows;
};

} // namespace corvanta
