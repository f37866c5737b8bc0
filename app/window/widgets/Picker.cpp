// SPDX-License-Identifier: MIT
#include "window/widgets/Picker.h"

#include "window/Symbols.h"

#include <QStyle>
#include <QStyleOptionComboBox>
#include <QStylePainter>
#include <QStyledItemDelegate>

namespace corvanta {

namespace {

constexpr int arrowsSide = 14;
constexpr int arrowsFromEdge = 9;

} // namespace

Picker::Picker(QWidget* parent)
    : QComboBox(parent) {
    setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    setMinimumContentsLength(4);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    // The entries take the style sheet's measures with this one alone.
    setItemDelegate(new QStyledItemDelegate(this));
}

void Picker::paintEvent(QPaintEvent*) {
    QStylePainter painter(this);
    QStyleOptionComboBox option;
    initStyleOption(&option);
    painter.drawComplexControl(QStyle::CC_ComboBox, option);
    const QRect field = style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, this);
    option.currentText = option.fontMetrics.elidedText(option.currentText, Qt::ElideMiddle, field.width() - 2);
    painter.drawControl(QStyle::CE_ComboBoxLabel, option);
    const QRect arrows(width() - arrowsFromEdge - arrowsSide, (height() - arrowsSide) / 2, arrowsSide, arrowsSide);
    Symbols::icon(Symbol::chevronUpDown, Tint::secondary)
        .paint(&painter, arrows, Qt::AlignCenter, isEnabled() ? QIcon::Normal : QIcon::Disabled);
}

} // namespace corvanta
