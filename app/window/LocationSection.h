// SPDX-License-Identifier: MIT
#pragma once

#include "window/SectionContext.h"

#include <QWidget>

class QPushButton;

namespace corvanta {

class MapBox;
class TextLabel;

/// The point that the device is to believe it is at.
class LocationSection final : public QWidget {
    Q_OBJECT

public:
    explicit LocationSection(const SectionContext& context, QWidget* parent = nullptr);

private:
    [[nodiscard]] QWidget* makeSelectionLine();
    void showSelection();
    void updateMap();
    void updateButtons();

    WorkspaceCoordinator& m_coordinator;
    TaskScope& m_tasks;
    MapBox* m_map;
    TextLabel* m_name;
    TextLabel* m_coordinate;
    QPushButton* m_set;
    QPushButton* m_clear;
};

} // namespace corvanta
