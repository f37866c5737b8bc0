// SPDX-License-Identifier: MIT
#include "window/ChoiceSection.h"

#include "window/Widgets.h"
#include "workspace/WorkspaceCoordinator.h"

#include <QVBoxLayout>

#include <utility>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

ChoiceSection::ChoiceSection(WorkspaceCoordinator& coordinator, TaskScope& tasks, QWidget* parent)
    : QWidget(parent)
    , m_coordinator(coordinator)
    , m_tasks(tasks) {
    auto* const outer = new QVBoxLayout(this);
    outer->setContentsMargins(0, 0, 0, 0);
    auto* const card = new Card;
    outer->addWidget(card);
    card->rows().addWidget(makeLabel(TextStyle::heading, u"Choose Safari Page"_s));
    m_rows = &card->rows();
    connect(&m_coordinator, &WorkspaceCoordinator::candidateTargetsChanged, this, &ChoiceSection::showCandidates);
    showCandidates();
}

void ChoiceSection::showCandidates() {
    if (QWidget* const previous = std::exchange(m_list, nullptr)) {
        previous->hide();
        previous->deleteLater();
    }
    const auto& candidates = m_coordinator.candidateTargets();
    setVisible(!candidates.empty());
    if (candidates.empty())
        return;
    m_list = new QWidget;
    auto* const layout = new QVBoxLayout(m_list);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(6);
    for (const SafariTarget& target : candidates) {
        auto* const button = new ElidingButton(target.title);
        button->setObjectName(u"choice"_s);
        connect(button, &QPushButton::clicked, this,
                [this, target] { m_tasks.start(m_coordinator.chooseInspectorTarget(target)); });
        layout->addWidget(button);
    }
    m_rows->addWidget(m_list);
}

} // namespace corvanta
