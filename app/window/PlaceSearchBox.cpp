// SPDX-License-Identifier: MIT
#include "window/PlaceSearchBox.h"

#include "support/TaskScope.h"
#include "window/DisplayText.h"
#include "window/Symbols.h"
#include "window/widgets/AccessibleRoles.h"
#include "window/widgets/PlaceList.h"
#include "window/widgets/TextLabel.h"
#include "workspace/WorkspaceCoordinator.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QVBoxLayout>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

PlaceSearchBox::PlaceSearchBox(const SectionContext& context, QWidget* parent)
    : QWidget(parent)
    , m_coordinator(context.coordinator)
    , m_tasks(context.tasks)
    , m_completer(context.placeSearch)
    , m_field(new QLineEdit)
    , m_list(new PlaceList(*m_field))
    , m_error(new TextLabel(TextStyle::secondary)) {
    auto* const rows = new QVBoxLayout(this);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(6);
    rows->addWidget(m_field);
    rows->addWidget(m_error);
    rows->addWidget(m_list);
    m_field->setPlaceholderText(u"Search for a place"_s);
    m_field->setAccessibleName(u"Search for a place"_s);
    m_field->addAction(Symbols::icon(Symbol::search, Tint::secondary), QLineEdit::LeadingPosition);
    // The symbol stands in the padding.
    m_field->setTextMargins(-8, 0, 0, 0);
    m_field->installEventFilter(this);

    connect(m_field, &QLineEdit::textChanged, &m_completer, &LocationSearchCompleter::update);
    connect(m_list, &PlaceList::chosen, this, &PlaceSearchBox::choose);
    connect(m_list, &PlaceList::left, m_field, [this] { m_field->setFocus(Qt::OtherFocusReason); });
    connect(m_list, &PlaceList::dismissed, this, &PlaceSearchBox::dismiss);
    connect(&m_completer, &LocationSearchCompleter::resultsChanged, this, &PlaceSearchBox::showResults);
    connect(&m_completer, &LocationSearchCompleter::errorMessageChanged, this, &PlaceSearchBox::showError);
    showResults();
    showError();
}

void PlaceSearchBox::choose(std::size_t index) {
    if (index >= m_completer.results().size())
        return;
    const PlaceCompletion completion = m_completer.results()[index];
    m_field->setText(displayText(completion.title, longestLine));
    forgetQuestion();
    m_tasks.start(m_coordinator.resolveLocation(completion));
}

void PlaceSearchBox::forgetQuestion() {
    m_completer.setResults({});
    m_completer.completer().setQueryFragment({});
}

void PlaceSearchBox::dismiss() {
    m_field->setFocus(Qt::OtherFocusReason);
    forgetQuestion();
}

void PlaceSearchBox::showResults() {
    m_list->showPlaces(m_completer.results());
    m_list->setVisible(!m_completer.results().empty());
}

void PlaceSearchBox::showError() {
    const auto& message = m_completer.errorMessage();
    m_error->showText(message.value_or(QString()));
    m_error->setVisible(message.has_value());
    if (message)
        announce(*m_error, *message);
}

bool PlaceSearchBox::takeKey(int key) {
    const bool hasResults = !m_completer.results().empty();
    switch (key) {
    case Qt::Key_Down:
        m_list->enter();
        return hasResults;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        choose(0);
        return hasResults;
    case Qt::Key_Escape:
        if (hasResults)
            dismiss();
        else if (m_field->text().isEmpty())
            return false;
        else
            m_field->clear();
        return true;
    default:
        return false;
    }
}

bool PlaceSearchBox::eventFilter(QObject* watched, QEvent* event) {
    return watched == m_field && event->type() == QEvent::KeyPress && takeKey(static_cast<QKeyEvent*>(event)->key());
}

} // namespace corvanta
