// SPDX-License-Identifier: MIT
#include "window/widgets/AddressField.h"

#include "window/widgets/ToolTip.h"

#include <QStyle>
#include <QStyleOptionFrame>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

AddressField::AddressField(QWidget* parent)
    : QLineEdit(parent) {
    setPlaceholderText(u"http://localhost:3000"_s);
    setAccessibleName(u"Page address"_s);
    connect(this, &QLineEdit::textChanged, this, &AddressField::showWhatFits);
}

void AddressField::showAddress(const QString& address) {
    if (text() != address)
        setText(address);
}

void AddressField::resizeEvent(QResizeEvent* event) {
    QLineEdit::resizeEvent(event);
    showWhatFits();
}

void AddressField::showWhatFits() {
    QStyleOptionFrame option;
    initStyleOption(&option);
    const int room = style()->subElementRect(QStyle::SE_LineEditContents, &option, this).width();
    const bool isLonger = fontMetrics().horizontalAdvance(text()) > room;
    setToolTip(isLonger ? plainToolTip(text()) : QString());
    if (isLonger && !hasFocus())
        setCursorPosition(0);
}

} // namespace corvanta
