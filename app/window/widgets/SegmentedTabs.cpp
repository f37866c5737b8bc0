// SPDX-License-Identifier: MIT
#include "window/widgets/SegmentedTabs.h"

#include "window/Appearance.h"

#include <QCursor>
#include <QPainter>

namespace corvanta {

namespace {

constexpr int sideMargin = 12;
constexpr int topMargin = 6;
constexpr int symbolSide = 14;
constexpr int symbolSpacing = 6;
constexpr qreal radius = 6;

} // namespace

SegmentedTabs::SegmentedTabs(const QString& accessibleName, QWidget* parent)
    : QTabBar(parent) {
    setAccessibleName(accessibleName);
    setDrawBase(false);
    setExpanding(false);
    setUsesScrollButtons(false);
    setElideMode(Qt::ElideNone);
    setFocusPolicy(Qt::TabFocus);
    setAttribute(Qt::WA_Hover);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void SegmentedTabs::addSegment(Symbol symbol, const QString& text) {
    m_symbols.push_back(symbol);
    setTabIcon(addTab(text), Symbols::icon(symbol));
}

QSize SegmentedTabs::tabSizeHint(int index) const {
    ensurePolished();
    return {2 * sideMargin + symbolSide + symbolSpacing + fontMetrics().horizontalAdvance(tabText(index)) + 1,
            2 * topMargin + fontMetrics().height()};
}

QSize SegmentedTabs::minimumTabSizeHint(int index) const {
    return tabSizeHint(index);
}

void SegmentedTabs::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const Appearance appearance = Appearance::current();
    const QRectF whole = rect().toRectF().adjusted(0.5, 0.5, -0.5, -0.5);
    painter.setPen(QPen(appearance.hairline, 1));
    painter.setBrush(appearance.ground);
    painter.drawRoundedRect(whole, radius, radius);
    const int hovered = underMouse() ? tabAt(mapFromGlobal(QCursor::pos())) : -1;
    for (int index = 0; index < count(); ++index) {
        const QRect place = tabRect(index);
        const QRectF frame = place.toRectF().adjusted(0.5, 0.5, -0.5, -0.5);
        const bool isCurrent = index == currentIndex();
        if (isCurrent) {
            painter.setPen(QPen(appearance.controlBorder, 1));
            painter.setBrush(appearance.card);
            painter.drawRoundedRect(frame, radius, radius);
        } else if (index == hovered) {
            painter.setPen(Qt::NoPen);
            painter.setBrush(appearance.controlPressed);
            painter.drawRoundedRect(frame.adjusted(2, 2, -2, -2), radius - 2, radius - 2);
        }
        if (isCurrent && hasFocus()) {
            constexpr qreal ringWidth = 2;
            painter.setPen(QPen(appearance.accent, ringWidth));
            painter.setBrush(Qt::NoBrush);
            painter.drawRoundedRect(place.toRectF().adjusted(1, 1, -1, -1), radius - 1, radius - 1);
        }
        const Tint tint = isCurrent ? Tint::text : Tint::secondary;
        const QRect symbol(place.left() + sideMargin, place.top() + (place.height() - symbolSide) / 2, symbolSide,
                           symbolSide);
        Symbols::icon(m_symbols[static_cast<std::size_t>(index)], tint).paint(&painter, symbol);
        painter.setPen(appearance.colour(tint));
        painter.drawText(place.adjusted(sideMargin + symbolSide + symbolSpacing, 0, 0, 0),
                         static_cast<int>(Qt::AlignLeft | Qt::AlignVCenter), tabText(index));
    }
}

} // namespace corvanta
