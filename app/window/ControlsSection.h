// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

class QComboBox;
class QLineEdit;
class QPushButton;

namespace corvanta {

class TaskScope;
class WorkspaceCoordinator;

/// The page address, the device and the four workspace buttons.
class ControlsSection final : public QWidget {
    Q_OBJECT

public:
    /// Both outlive the section.
    ControlsSection(WorkspaceCoordinator& coordinator, TaskScope& tasks, QWidget* parent = nullptr);

private:
    void showAddress();
    void showDevices();
    void showSelection();
    void updateButtons();
    void addressSubmitted();

    WorkspaceCoordinator& m_coordinator;
    TaskScope& m_tasks;
    QLineEdit* m_address;
    QComboBox* m_devices;
    QPushButton* m_refresh;
    QPushButton* m_start;
    QPushButton* m_reload;
    QPushButton* m_retile;
    QPushButton* m_stop;
};

} // namespace corvanta
