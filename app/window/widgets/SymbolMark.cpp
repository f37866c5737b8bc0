// SPDX-License-Identifier: MIT
#include "window/widgets/SymbolMark.h"

#include "window/widgets/AccessibleRoles.h"

#include <QPainter>

namespace corvanta {

SymbolMark::SymbolMark(int side, QWidget* parent)
    : QWidget(parent)
    , m_side(side) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setAccessibleRole(*this, QAccessible::Graphic);
}

void SymbolMark::setSymbol(Symbol symbol, Tint tint, const QString& name) {
    m_symbol = symbol;
    m_tint = tint;
    setAccessibleName(name);
    update();
}

void SymbolMark::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    Symbols::icon(m_symbol, m_tint).paint(&painter, rect());
}

} // namespace corvanta
