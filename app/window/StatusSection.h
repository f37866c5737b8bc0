// SPDX-License-Identifier: MIT
#pragma once

#include "window/SectionContext.h"

#include <QFrame>

class QPushButton;

namespace corvanta {

class ProgressIndicator;
class TextLabel;

/// The status line and, beneath it, what to do; always in sight at the foot of the window.
class StatusSection final : public QFrame {
    Q_OBJECT

public:
    explicit StatusSection(const SectionContext& context, QWidget* parent = nullptr);

private:
    void showTexts();
    void showProgress();
    void help();

    WorkspaceCoordinator& m_coordinator;
    Desktop& m_desktop;
    ProgressIndicator* m_progress;
    TextLabel* m_status;
    TextLabel* m_recovery;
    QPushButton* m_help;
};

} // namespace corvanta
