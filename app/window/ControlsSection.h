// SPDX-License-Identifier: MIT
#pragma once

#include "window/SectionContext.h"

#include <QWidget>

class QComboBox;
class QLayout;
class QPushButton;

namespace corvanta {

class AddressField;
class IconButton;

/// The page address, the device and the four workspace buttons.
class ControlsSection final : public QWidget {
    Q_OBJECT

public:
    explicit ControlsSection(const SectionContext& context, QWidget* parent = nullptr);

private:
    [[nodiscard]] QLayout* makeDeviceRow();
    [[nodiscard]] QWidget* makeButtons();
    void connectControls();
    void followCoordinator();
    void showAddress();
    void showDevices();
    void showSelection();
    void updateButtons();
    void addressSubmitted();

    WorkspaceCoordinator& m_coordinator;
    TaskScope& m_tasks;
    AddressField* m_address;
    QComboBox* m_devices;
    IconButton* m_refresh;
    QPushButton* m_start;
    QPushButton* m_reload;
    QPushButton* m_retile;
    QPushButton* m_stop;
};

} // namespace corvanta
