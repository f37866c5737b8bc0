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

int ButtonRows::widthOf(std::size_t first, std::size_t count) const {
    int width = -spacing;
    for (std::size_t index = first; index < std::min(first + count, m_buttons.size()); ++index)
        width += m_buttons[index]->sizeHint().width() + spacing;
    return width;
}

std::size_t ButtonRows::columnsFor(int width) const {
    return width >= widthOf(0, m_buttons.size()) ? m_buttons.size() : (m_buttons.size() + 1) / 2;
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
    return {widthOf(0, m_buttons.size()), buttonHeight()};
}

QSize ButtonRows::minimumSizeHint() const {
    const std::size_t columns = (m_buttons.size() + 1) / 2;
    return {std::max(widthOf(0, columns), widthOf(columns, columns)), buttonHeight()};
}

void ButtonRows::place() {
    const std::size_t columns = columnsFor(width());
    const int height = buttonHeight();
    for (std::size_t first = 0; first < m_buttons.size(); first += columns) {
        const std::size_t end = std::min(first + columns, m_buttons.size());
        // What is left over is shared out, the last button taking the remainder.
        const int count = static_cast<int>(end - first);
        const int left = width() - widthOf(first, columns);
        const int top = static_cast<int>(first / columns) * (height + spacing);
        int x = 0;
        for (std::size_t index = first; index < end; ++index) {
            const int share = index + 1 == end ? width() - x - m_buttons[index]->sizeHint().width() : left / count;
            const int buttonWidth = m_buttons[index]->sizeHint().width() + share;
            const QRect place(x, top, buttonWidth, height);
            m_buttons[index]->setGeometry(QStyle::visualRect(layoutDirection(), rect(), place));
            x += buttonWidth + spacing;
        }
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
