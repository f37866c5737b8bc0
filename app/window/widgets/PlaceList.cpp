// SPDX-License-Identifier: MIT
#include "window/widgets/PlaceList.h"

#include "PlaceSearch.h"
#include "window/widgets/AccessibleRoles.h"
#include "window/widgets/ListRow.h"
#include "window/widgets/OverlayScrollArea.h"
#include "window/widgets/RoundedFrame.h"

#include <QKeyEvent>
#include <QVBoxLayout>

#include <algorithm>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr std::size_t rowsInSight = 5;

} // namespace

PlaceList::PlaceList(QWidget& predecessor, QWidget* parent)
    : QWidget(parent)
    , m_predecessor(&predecessor)
    , m_content(new QWidget)
    , m_layout(new QVBoxLayout(m_content)) {
    setAccessibleRole(*this, QAccessible::List);
    setAccessibleName(u"Suggested places"_s);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    m_layout->setContentsMargins(0, 0, 0, 0);
    m_layout->setSpacing(0);
    m_layout->addStretch(1);
    auto* const scroll = new OverlayScrollArea(OverlayScrollArea::Height::free);
    scroll->setContent(m_content);
    auto* const whole = new QVBoxLayout(this);
    whole->setContentsMargins(0, 0, 0, 0);
    whole->addWidget(scroll);
    new RoundedFrame(*this);
}

QSize PlaceList::sizeHint() const {
    constexpr int width = 200;
    int height = 0;
    for (std::size_t index = 0; index < std::min(rowsInSight, m_rows.size()); ++index)
        height += m_rows[index]->sizeHint().height();
    // Part of the next row tells that there is more.
    if (m_rows.size() > rowsInSight)
        height += m_rows[rowsInSight]->sizeHint().height() / 2;
    return {width, height};
}

QSize PlaceList::minimumSizeHint() const {
    return {0, sizeHint().height()};
}

ListRow* PlaceList::makeRow(std::size_t index) {
    auto* const row = new ListRow;
    row->setSeparated(index > 0);
    row->installEventFilter(this);
    connect(row, &ListRow::clicked, this, [this, index] { Q_EMIT chosen(index); });
    return row;
}

void PlaceList::removeLastRow() {
    ListRow* const last = m_rows.back();
    m_rows.pop_back();
    if (last->hasFocus())
        Q_EMIT left();
    last->removeEventFilter(this);
    last->hide();
    last->deleteLater();
}

void PlaceList::showPlaces(const std::vector<PlaceCompletion>& places) {
    while (m_rows.size() > places.size())
        removeLastRow();
    while (m_rows.size() < places.size()) {
        m_rows.push_back(makeRow(m_rows.size()));
        m_layout->insertWidget(static_cast<int>(m_rows.size()) - 1, m_rows.back());
        // A widget that is made later would come behind everything else in the window.
        setTabOrder(m_rows.size() > 1 ? m_rows[m_rows.size() - 2] : m_predecessor, m_rows.back());
    }
    for (std::size_t index = 0; index < places.size(); ++index)
        m_rows[index]->showTexts(places[index].title, places[index].subtitle);
    updateGeometry();
}

void PlaceList::enter() {
    if (!m_rows.empty())
        m_rows.front()->setFocus(Qt::TabFocusReason);
}

bool PlaceList::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::KeyPress)
        return false;
    const auto row = std::ranges::find(m_rows, watched);
    if (row == m_rows.end())
        return false;
    switch (static_cast<QKeyEvent*>(event)->key()) {
    case Qt::Key_Down:
        if (row + 1 != m_rows.end())
            (*(row + 1))->setFocus(Qt::TabFocusReason);
        return true;
    case Qt::Key_Up:
        if (row == m_rows.begin())
            Q_EMIT left();
        else
            (*(row - 1))->setFocus(Qt::BacktabFocusReason);
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        (*row)->click();
        return true;
    case Qt::Key_Escape:
        Q_EMIT dismissed();
        return true;
    default:
        return false;
    }
}

} // namespace corvanta
