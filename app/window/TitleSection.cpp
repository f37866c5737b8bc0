// SPDX-License-Identifier: MIT
#include "window/TitleSection.h"

#include "window/widgets/AccessibleRoles.h"
#include "window/widgets/SymbolMark.h"
#include "window/widgets/TextLabel.h"
#include "workspace/WorkspaceCoordinator.h"

#include <QGridLayout>
#include <QHBoxLayout>

#include <algorithm>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int signSide = 36;
constexpr int columnSpacing = 10;
constexpr int phaseMarkSide = 14;
constexpr int phaseSpacing = 5;

void showMark(SymbolMark& mark, WorkspacePhase phase) {
    if (phase == WorkspacePhase::running)
        mark.setSymbol(Symbol::phaseRunning, Tint::passed);
    else if (phase == WorkspacePhase::failed)
        mark.setSymbol(Symbol::phaseFailed, Tint::failed);
    else if (isWorking(phase))
        mark.setSymbol(Symbol::phaseWorking, Tint::accent);
    else
        mark.setSymbol(Symbol::phaseIdle, Tint::blocked);
}

} // namespace

TitleSection::TitleSection(const SectionContext& context, QWidget* parent)
    : QWidget(parent)
    , m_coordinator(context.coordinator)
    , m_grid(new QGridLayout(this))
    , m_title(makeLineLabel(TextStyle::title, u"Corvanta"_s))
    , m_phaseLine(new QWidget)
    , m_phaseMark(new SymbolMark(phaseMarkSide))
    , m_phase(makeLineLabel(TextStyle::secondary)) {
    auto* const sign = new SymbolMark(signSide);
    sign->setSymbol(Symbol::workspace, Tint::accent);

    auto* const phase = new QHBoxLayout(m_phaseLine);
    phase->setContentsMargins(0, 0, 0, 0);
    phase->setSpacing(phaseSpacing);
    phase->addWidget(m_phaseMark);
    phase->addWidget(m_phase);

    // The subtitle runs on beneath the phase, so that it stays on one line.
    m_grid->setContentsMargins(4, 0, 4, 4);
    m_grid->setHorizontalSpacing(columnSpacing);
    m_grid->setVerticalSpacing(1);
    m_grid->addWidget(sign, 0, 0, 2, 1, Qt::AlignVCenter);
    m_grid->addWidget(m_title, 0, 1);
    m_grid->addWidget(new TextLabel(TextStyle::secondary, u"Web testing workspace for iOS Simulator"_s), 1, 1, 1, 2);
    m_grid->setColumnStretch(1, 1);
    // Measured as soon as it has a size.
    m_grid->addWidget(m_phaseLine, 0, 2);

    connect(&m_coordinator, &WorkspaceCoordinator::phaseChanged, this, &TitleSection::showPhase);
    showPhase();
}

void TitleSection::place() {
    m_phase->ensurePolished();
    int widest = 0;
    for (int index = 0; index <= static_cast<int>(WorkspacePhase::failed); ++index) {
        const QString name = displayName(static_cast<WorkspacePhase>(index));
        widest = std::max(widest, m_phase->fontMetrics().horizontalAdvance(name));
    }
    const QMargins margins = m_grid->contentsMargins();
    const int needed = margins.left() + signSide + columnSpacing + m_title->sizeHint().width() + columnSpacing +
                       phaseMarkSide + phaseSpacing + widest + margins.right();
    if (needed <= width())
        m_grid->addWidget(m_phaseLine, 0, 2);
    else
        m_grid->addWidget(m_phaseLine, 2, 1, 1, 2, Qt::AlignLeft);
}

QSize TitleSection::minimumSizeHint() const {
    const QMargins margins = m_grid->contentsMargins();
    return {margins.left() + signSide + columnSpacing + m_title->minimumSizeHint().width() + margins.right(),
            QWidget::minimumSizeHint().height()};
}

void TitleSection::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    place();
}

void TitleSection::showPhase() {
    showMark(*m_phaseMark, m_coordinator.phase());
    const QString name = displayName(m_coordinator.phase());
    announce(*m_phase, name);
    m_phase->showText(name);
}

} // namespace corvanta
