// SPDX-License-Identifier: MIT
#include "window/SetupSection.h"

#include "setup/SetupCheckEvaluator.h"
#include "window/widgets/Buttons.h"
#include "window/widgets/Card.h"
#include "window/widgets/CheckRow.h"
#include "window/widgets/ProgressIndicator.h"
#include "window/widgets/SymbolMark.h"
#include "window/widgets/TextLabel.h"
#include "workspace/WorkspaceCoordinator.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

SetupSection::SetupSection(const SectionContext& context, QWidget* parent)
    : QWidget(parent)
    , m_coordinator(context.coordinator)
    , m_tasks(context.tasks)
    , m_sign(new SymbolMark)
    , m_heading(makeLineLabel(TextStyle::heading))
    , m_progressText(new TextLabel(TextStyle::secondary, u"Checking this Mac…"_s))
    , m_progress(new ProgressIndicator(context.clock))
    , m_checkAgain(makeSmallButton(u"Check Again"_s)) {
    Card& card = addCard(*this, u"Setup checks"_s);
    m_checkAgain->setShortcut(QKeySequence(Qt::ALT | Qt::Key_K));
    m_progressText->setAlignment(Qt::AlignRight | Qt::AlignVCenter);

    auto* const header = new QWidget;
    // As high with the text as with the button, so that the rows stand still.
    header->setMinimumHeight(m_checkAgain->sizeHint().height());
    auto* const line = new QHBoxLayout(header);
    line->setContentsMargins(0, 0, 0, 0);
    line->setSpacing(8);
    line->addWidget(m_sign);
    line->addWidget(m_heading);
    line->addStretch(1);
    line->addWidget(m_progress);
    line->addWidget(m_progressText);
    line->addWidget(m_checkAgain);
    card.rows().addWidget(header);
    m_layout = new QVBoxLayout;
    m_layout->setSpacing(0);
    card.rows().addLayout(m_layout);
    // The last row brings space of its own along.
    card.rows().setContentsMargins(12, 12, 12, 12 - CheckRow::space);

    connect(m_checkAgain, &QPushButton::clicked, this, [this] { m_tasks.start(m_coordinator.runSetupChecks()); });
    connect(&m_coordinator, &WorkspaceCoordinator::setupChecksChanged, this, &SetupSection::showChecks);
    connect(&m_coordinator, &WorkspaceCoordinator::isCheckingSetupChanged, this, &SetupSection::showProgress);
    showChecks();
    showProgress();
}

void SetupSection::showProgress() {
    const bool isChecking = m_coordinator.isCheckingSetup();
    m_progress->setActive(isChecking);
    m_progressText->setVisible(isChecking);
    setVisibleKeepingFocus(*m_checkAgain, !isChecking);
}

void SetupSection::makeRows(std::size_t count) {
    while (m_rows.size() > count) {
        m_rows.back()->hide();
        m_rows.back()->deleteLater();
        m_rows.pop_back();
    }
    while (m_rows.size() < count) {
        auto* const row = new CheckRow(m_rows.empty() ? CheckRow::Position::first : CheckRow::Position::further);
        connect(row, &CheckRow::actionRequested, this,
                [this](SetupRecoveryAction action) { m_tasks.start(m_coordinator.performSetupAction(action)); });
        m_layout->addWidget(row);
        m_rows.push_back(row);
    }
}

void SetupSection::showChecks() {
    const auto& checks = m_coordinator.setupChecks();
    if (allRequirementsSatisfied(checks)) {
        m_sign->setSymbol(Symbol::seal, Tint::passed);
        m_heading->showText(u"Setup ready"_s);
    } else {
        m_sign->setSymbol(Symbol::checklist, Tint::text);
        m_heading->showText(u"Setup checks"_s);
    }
    makeRows(checks.size());
    for (std::size_t index = 0; index < checks.size(); ++index)
        m_rows[index]->showCheck(checks[index]);
}

} // namespace corvanta
