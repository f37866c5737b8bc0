// SPDX-License-Identifier: MIT
#pragma once

#include "window/SectionContext.h"

#include <QWidget>

#include <vector>

class QPushButton;
class QVBoxLayout;

namespace corvanta {

class CheckRow;
class ProgressIndicator;
class SymbolMark;
class TextLabel;

/// The setup checks: a row each, with the button that mends it.
class SetupSection final : public QWidget {
    Q_OBJECT

public:
    explicit SetupSection(const SectionContext& context, QWidget* parent = nullptr);

private:
    void showChecks();
    void showProgress();
    void makeRows(std::size_t count);

    WorkspaceCoordinator& m_coordinator;
    TaskScope& m_tasks;
    SymbolMark* m_sign;
    TextLabel* m_heading;
    TextLabel* m_progressText;
    ProgressIndicator* m_progress;
    QPushButton* m_checkAgain;
    QVBoxLayout* m_layout = nullptr;
    std::vector<CheckRow*> m_rows;
};

} // namespace corvanta
