// SPDX-License-Identifier: MIT
#include "window/widgets/ButtonRows.h"

#include <QEvent>
#include <QPushButton>
#include <QResizeEvent>
#include <QStyle>

#include <algorithm>
#include <utility>

namespace corvanta {

namespace {

constexpr int spacing = 5;

} // namespace

ButtonRows::ButtonRows(std::vector<QPushButton*> buttons, QWidget* parent)
    : QWidget(parent)
    , m_buttons(std::move(buttons)) {
    for (QPushButton* const button : m_buttons)
        button->setParent(this);
    QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Minimum);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
}

int ButtonRows::columnWidth(std::size_t column, std::size_t columns) const {
    int width = 0;
    for (std::size_t index = column; index < m_buttons.size(); index += columns)
        width = std::max(width, m_buttons[index]->sizeHint().width());
    return width;
}

int ButtonRows::widthWith(std::size_t columns) const {
    int width = -spacing;
    for (std::size_t column = 0; column < columns; ++column)
        width += columnWidth(column, columns) + spacing;
    return width;
}

std::vector<int> ButtonRows::columnWidths(std::size_t columns) const {
    // What is left over is shared out, the last column taking the remainder.
    const int left = width() - widthWith(columns);
    const int share = left / static_cast<int>(columns);
    std::vector<int> widths(columns);
    for (std::size_t column = 0; column < columns; ++column)
        widths[column] = columnWidth(column, columns) + share;
    widths.back() += left - share * static_cast<int>(columns);
    return widths;
}

std::size_t ButtonRows::columnsFor(int width) const {
    return width >= widthWith(m_buttons.size()) ? m_buttons.size() : (m_buttons.size() + 1) / 2;
}

int ButtonRows::buttonHeight() const {
    int height = 0;
    for (const QPushButton* const button : m_buttons)
        height = std::max(height, button->sizeHint().height());
    return height;
}

int ButtonRows::heightForWidth(int width) const {
    const std::size_t columns = columnsFor(width);
    const int rows = static_cast<int>((m_buttons.size() + columns - 1) / columns);
    return rows * buttonHeight() + (rows - 1) * spacing;
}

QSize ButtonRows::sizeHint() const {
    return {widthWith(m_buttons.size()), buttonHeight()};
}

QSize ButtonRows::minimumSizeHint() const {
    return {widthWith((m_buttons.size() + 1) / 2), buttonHeight()};
}

void ButtonRows::place() {
    const std::size_t columns = columnsFor(width());
    const std::vector<int> widths = columnWidths(columns);
    const int height = buttonHeight();
    int top = 0;
    int x = 0;
    for (std::size_t index = 0; index < m_buttons.size(); ++index) {
        const std::size_t column = index % columns;
        if (column == 0 && index > 0) {
            top += height + spacing;
            x = 0;
        }
        // A row that is not full ends where the others end.
        const int buttonWidth = index + 1 == m_buttons.size() ? width() - x : widths[column];
        m_buttons[index]->setGeometry(
            QStyle::visualRect(layoutDirection(), rect(), QRect(x, top, buttonWidth, height)));
        x += buttonWidth + spacing;
    }
}

void ButtonRows::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    place();
}

bool ButtonRows::event(QEvent* event) {
    const bool isHandled = QWidget::event(event);
    // A button has become wider or narrower, for instance with another font.
    if (event->type() == QEvent::LayoutRequest) {
        place();
        updateGeometry();
    }
    return isHandled;
}

} // namespace corvanta
