// SPDX-License-Identifier: MIT
#pragma once

#include "layout/WindowAccessor.h"

#include <QWidget>

class QLabel;

namespace corvanta {

class StateMark;
class TaskScope;
class WorkspaceCoordinator;

/// The control window's content: title, sections that scroll, and the status line at the foot.
///
/// It holds no logic: every control reads the coordinator's properties and calls one of its operations.
class WorkspaceView final : public QWidget {
    Q_OBJECT

public:
    /// `coordinator` and `tasks` outlive the view; `onWindow` learns which window the view stands in.
    WorkspaceView(WorkspaceCoordinator& coordinator, TaskScope& tasks, WindowCallback onWindow,
                  QWidget* parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;

private:
    [[nodiscard]] QWidget* makeTitle();
    void showPhase();

    WorkspaceCoordinator& m_coordinator;
    WindowAccessor m_windowAccessor;
    StateMark* m_phaseMark;
    QLabel* m_phase;
};

} // namespace corvanta
