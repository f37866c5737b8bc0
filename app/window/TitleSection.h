// SPDX-License-Identifier: MIT
#pragma once

#include "window/SectionContext.h"

#include <QWidget>

class QGridLayout;

namespace corvanta {

class SymbolMark;
class TextLabel;

/// What the program is called and what it is doing.
class TitleSection final : public QWidget {
    Q_OBJECT

public:
    explicit TitleSection(const SectionContext& context, QWidget* parent = nullptr);

    /// Leaves out the phase, which makes way where there is less room.
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    /// The phase stands beside the title, or beneath the subtitle where any of the phases would not fit.
    void place();
    void showPhase();

    WorkspaceCoordinator& m_coordinator;
    QGridLayout* m_grid;
    TextLabel* m_title;
    QWidget* m_phaseLine;
    SymbolMark* m_phaseMark;
    TextLabel* m_phase;
};

} // namespace corvanta
