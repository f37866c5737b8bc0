// SPDX-License-Identifier: MIT
#pragma once

#include "window/SectionContext.h"

#include <QWidget>

class QStackedWidget;

namespace corvanta {

class SegmentedTabs;

/// The favourite and the recent locations, a tab each.
class SavedLocationsSection final : public QWidget {
    Q_OBJECT

public:
    explicit SavedLocationsSection(const SectionContext& context, QWidget* parent = nullptr);

private:
    WorkspaceCoordinator& m_coordinator;
    SegmentedTabs* m_tabs;
    QStackedWidget* m_lists;
};

} // namespace corvanta
