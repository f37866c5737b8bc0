// SPDX-License-Identifier: MIT
#include "window/widgets/LocationList.h"

#include "locations/CoordinateFormatter.h"
#include "locations/StoredLocation.h"
#include "window/DisplayText.h"
#include "window/widgets/AccessibleRoles.h"
#include "window/widgets/IconButton.h"
#include "window/widgets/ListRow.h"
#include "window/widgets/OverlayScrollArea.h"
#include "window/widgets/RoundedFrame.h"
#include "window/widgets/TextLabel.h"

#include <QGridLayout>
#include <QVBoxLayout>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

namespace {

/// Two rows and the beginning of the third, which tells that there is more.
constexpr int listHeight = 112;
constexpr int trashSpace = 30;
constexpr int trashFromEdge = 8;

} // namespace

LocationList::LocationList(const QString& emptyText, Deletion deletion, QWidget* parent)
    : QWidget(parent)
    , m_deletion(deletion)
    , m_emptyText(new TextLabel(TextStyle::secondary, emptyText))
    , m_content(new QWidget)
    , m_layout(new QVBoxLayout(m_content)) {
    setAccessibleRole(*this, QAccessible::List);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    m_layout->setContentsMargins(0, 0, 0, 0);
    m_layout->setSpacing(0);
    m_layout->addStretch(1);
    auto* const scroll = new OverlayScrollArea(OverlayScrollArea::Height::free);
    scroll->setContent(m_content);
    m_emptyText->setAlignment(Qt::AlignCenter);
    auto* const stack = new QGridLayout(this);
    stack->setContentsMargins(0, 0, 0, 0);
    stack->addWidget(scroll, 0, 0);
    stack->addWidget(m_emptyText, 0, 0, Qt::AlignVCenter);
    new RoundedFrame(*this);
}

LocationList::~LocationList() = default;

QSize LocationList::sizeHint() const {
    constexpr int width = 200;
    return {width, std::max(listHeight, 7 * fontMetrics().height())};
}

QSize LocationList::minimumSizeHint() const {
    return {0, sizeHint().height()};
}

LocationList::Entry LocationList::makeEntry(std::size_t index) {
    Entry entry{.frame = new QWidget, .row = new ListRow, .trash = nullptr};
    auto* const stack = new QGridLayout(entry.frame);
    stack->setContentsMargins(0, 0, 0, 0);
    stack->addWidget(entry.row, 0, 0);
    entry.row->setSeparated(index > 0);
    connect(entry.row, &ListRow::clicked, this, [this, index] {
        if (index < m_locations.size())
            Q_EMIT chosen(StoredLocation(m_locations[index]));
    });
    if (m_deletion == Deletion::offered) {
        entry.row->setTrailingSpace(trashSpace);
        entry.trash = new IconButton(Symbol::trash, {}, IconButton::Frame::bare);
        auto* const right = new QHBoxLayout;
        right->setContentsMargins(0, 0, trashFromEdge, 0);
        right->addStretch(1);
        right->addWidget(entry.trash);
        stack->addLayout(right, 0, 0);
        connect(entry.trash, &QPushButton::clicked, this, [this, index] {
            if (index < m_locations.size())
                Q_EMIT deletionRequested(QUuid(m_locations[index].id));
        });
    }
    return entry;
}

void LocationList::removeLastEntry() {
    const Entry last = m_entries.back();
    m_entries.pop_back();
    // Whoever deletes by keyboard goes on with the entry before.
    if (last.trash != nullptr && last.trash->hasFocus() && !m_entries.empty())
        m_entries.back().trash->setFocus(Qt::OtherFocusReason);
    last.frame->hide();
    last.frame->deleteLater();
}

void LocationList::showLocations(const std::vector<StoredLocation>& locations) {
    m_locations = locations;
    while (m_entries.size() > locations.size())
        removeLastEntry();
    while (m_entries.size() < locations.size()) {
        m_entries.push_back(makeEntry(m_entries.size()));
        m_layout->insertWidget(static_cast<int>(m_entries.size()) - 1, m_entries.back().frame);
    }
    for (std::size_t index = 0; index < locations.size(); ++index) {
        const StoredLocation& location = locations[index];
        m_entries[index].row->showTexts(location.name, CoordinateFormatter::coordinatePair(location.coordinate));
        if (m_entries[index].trash != nullptr)
            m_entries[index].trash->setAccessibleName(u"Delete "_s + displayText(location.name, longestLine));
    }
    m_emptyText->setVisible(locations.empty());
}

} // namespace corvanta
