// SPDX-License-Identifier: MIT
#include "window/widgets/ListRow.h"

#include "window/Appearance.h"
#include "window/DisplayText.h"
#include "window/widgets/ToolTip.h"

#include <QApplication>
#include <QFocusEvent>
#include <QPainter>
#include <QScrollArea>
#include <QStyle>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int sideMargin = 10;
constexpr int topMargin = 8;
constexpr int lineSpacing = 2;
constexpr int symbolSide = 16;
constexpr int symbolSpacing = 10;

} // namespace

ListRow::ListRow(QWidget* parent)
    : QPushButton(parent) {
    setFocusPolicy(Qt::TabFocus);
    setAutoDefault(false);
    setAttribute(Qt::WA_Hover);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void ListRow::showTexts(const QString& title, const QString& subtitle) {
    m_title = displayText(title, longestLine);
    m_subtitle = displayText(subtitle, longestLine);
    // A single ampersand would be taken for a mnemonic.
    setText(QString(m_title).replace(u'&', u"&&"_s));
    setAccessibleName(m_title);
    setAccessibleDescription(m_subtitle);
    updateGeometry();
    updateToolTip();
    update();
}

void ListRow::setSymbols(std::optional<Symbol> leading, std::optional<Symbol> trailing) {
    m_leading = leading;
    m_trailing = trailing;
    updateToolTip();
    update();
}

void ListRow::setTrailingSpace(int width) {
    m_trailingSpace = width;
    updateToolTip();
    update();
}

void ListRow::setSeparated(bool isSeparated) {
    m_isSeparated = isSeparated;
    update();
}

QFont ListRow::subtitleFont() const {
    QFont smaller = font();
    smaller.setPixelSize(TypeScale::forFont(QApplication::font()).secondary);
    return smaller;
}

QSize ListRow::sizeHint() const {
    ensurePolished();
    int height = 2 * topMargin + fontMetrics().height();
    if (!m_subtitle.isEmpty())
        height += lineSpacing + QFontMetrics(subtitleFont()).height();
    constexpr int width = 200;
    return {width, height};
}

QSize ListRow::minimumSizeHint() const {
    constexpr int width = 80;
    return {width, sizeHint().height()};
}

QRect ListRow::textArea() const {
    QRect area = rect().adjusted(sideMargin, topMargin, -sideMargin, -topMargin);
    if (m_leading)
        area.setLeft(area.left() + symbolSide + symbolSpacing);
    if (m_trailing)
        area.setRight(area.right() - symbolSide - symbolSpacing);
    if (m_trailingSpace > 0)
        area.setRight(area.right() - m_trailingSpace);
    return area;
}

void ListRow::updateToolTip() {
    const int width = textArea().width();
    const bool isElided = fontMetrics().horizontalAdvance(m_title) > width ||
                          QFontMetrics(subtitleFont()).horizontalAdvance(m_subtitle) > width;
    const QString whole = m_subtitle.isEmpty() ? m_title : m_title + u'\n' + m_subtitle;
    setToolTip(isElided ? plainToolTip(whole).replace(u'\n', u"<br>"_s) : QString());
}

void ListRow::resizeEvent(QResizeEvent* event) {
    QPushButton::resizeEvent(event);
    updateToolTip();
}

void ListRow::focusInEvent(QFocusEvent* event) {
    QPushButton::focusInEvent(event);
    scrollIntoSight(*this);
}

void ListRow::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const Appearance appearance = Appearance::current();
    if (isDown())
        painter.fillRect(rect(), appearance.rowPressed);
    else if (underMouse() && isEnabled())
        painter.fillRect(rect(), appearance.rowHover);
    if (m_isSeparated)
        painter.fillRect(QRect(0, 0, width(), 1), appearance.hairline);

    const auto drawSymbol = [&](Symbol symbol, Tint tint, int x) {
        const QRect place(x, (height() - symbolSide) / 2, symbolSide, symbolSide);
        Symbols::icon(symbol, tint).paint(&painter, QStyle::visualRect(layoutDirection(), rect(), place));
    };
    if (m_leading)
        drawSymbol(*m_leading, Tint::accent, sideMargin);
    if (m_trailing)
        drawSymbol(*m_trailing, Tint::secondary, width() - sideMargin - symbolSide);

    const QRect area = QStyle::visualRect(layoutDirection(), rect(), textArea());
    const auto drawLine = [&](const QFont& lineFont, const QColor& colour, const QString& line, int top) {
        const QFontMetrics metrics(lineFont);
        painter.setFont(lineFont);
        painter.setPen(colour);
        painter.drawText(QRect(area.left(), top, area.width(), metrics.height()),
                         static_cast<int>(Qt::AlignLeading | Qt::AlignVCenter | Qt::TextSingleLine),
                         metrics.elidedText(line, Qt::ElideMiddle, area.width()));
        return top + metrics.height() + lineSpacing;
    };
    const int below = drawLine(font(), appearance.text, m_title, area.top());
    if (!m_subtitle.isEmpty())
        drawLine(subtitleFont(), appearance.secondaryText, m_subtitle, below);

    if (hasFocus()) {
        constexpr qreal ringWidth = 2;
        painter.setPen(QPen(appearance.accent, ringWidth));
        painter.drawRoundedRect(rect().toRectF().adjusted(2, 2, -2, -2), 4, 4);
    }
}

void scrollIntoSight(QWidget& widget) {
    for (QWidget* parent = widget.parentWidget(); parent != nullptr; parent = parent->parentWidget()) {
        if (auto* const area = qobject_cast<QScrollArea*>(parent))
            area->ensureWidgetVisible(&widget, 0, 8);
    }
}

} // namespace corvanta
