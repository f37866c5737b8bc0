// SPDX-License-Identifier: MIT
#include "window/ChoiceSection.h"

#include "window/widgets/Card.h"
#include "window/widgets/ListRow.h"
#include "window/widgets/RoundedFrame.h"
#include "window/widgets/TextLabel.h"
#include "workspace/WorkspaceCoordinator.h"

#include <QVBoxLayout>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

ChoiceSection::ChoiceSection(const SectionContext& context, QWidget* parent)
    : QWidget(parent)
    , m_coordinator(context.coordinator)
    , m_tasks(context.tasks)
    , m_list(new QWidget)
    , m_layout(new QVBoxLayout(m_list)) {
    Card& card = addCard(*this, u"Choose Safari Page"_s);
    card.rows().addWidget(new TextLabel(TextStyle::heading, u"Choose Safari Page"_s));
    m_layout->setContentsMargins(0, 0, 0, 0);
    m_layout->setSpacing(0);
    card.rows().addWidget(m_list);
    new RoundedFrame(*m_list);
    connect(&m_coordinator, &WorkspaceCoordinator::candidateTargetsChanged, this, &ChoiceSection::showCandidates);
    showCandidates();
}

void ChoiceSection::makeRows(std::size_t count) {
    while (m_rows.size() > count) {
        m_rows.back()->hide();
        m_rows.back()->deleteLater();
        m_rows.pop_back();
    }
    while (m_rows.size() < count) {
        const std::size_t index = m_rows.size();
        auto* const row = new ListRow;
        row->setSymbols(Symbol::compass, Symbol::chevronRight);
        row->setSeparated(index > 0);
        connect(row, &ListRow::clicked, this, [this, index] { choose(index); });
        m_layout->addWidget(row);
        m_rows.push_back(row);
    }
}

void ChoiceSection::choose(std::size_t index) {
    if (const auto& candidates = m_coordinator.candidateTargets(); index < candidates.size())
        m_tasks.start(m_coordinator.chooseInspectorTarget(candidates[index]));
}

void ChoiceSection::showCandidates() {
    const auto& candidates = m_coordinator.candidateTargets();
    setVisible(!candidates.empty());
    makeRows(candidates.size());
    for (std::size_t index = 0; index < candidates.size(); ++index)
        m_rows[index]->showTexts(candidates[index].title);
}

} // namespace corvanta
