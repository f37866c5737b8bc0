// SPDX-License-Identifier: MIT
#include "window/widgets/Buttons.h"

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int symbolSide = 14;
constexpr auto lentFocus = "lentFocus";

template<typename Change>
void changeKeepingFocus(QWidget& control, bool isAvailable, Change change) {
    QWidget* const parent = control.parentWidget();
    if (parent != nullptr && !isAvailable && control.hasFocus()) {
        parent->setFocus(Qt::OtherFocusReason);
        control.setProperty(lentFocus, true);
    }
    change();
    if (isAvailable && control.property(lentFocus).toBool()) {
        control.setProperty(lentFocus, false);
        if (parent != nullptr && parent->hasFocus())
            control.setFocus(Qt::OtherFocusReason);
    }
}

} // namespace

QPushButton* makeButton(const QString& text) {
    auto* const button = new QPushButton(text);
    button->setFocusPolicy(Qt::TabFocus);
    button->setAutoDefault(false);
    return button;
}

QPushButton* makeButton(const QString& text, Symbol symbol, Emphasis emphasis) {
    auto* const button = makeButton(text);
    setSymbolSide(*button, symbolSide);
    switch (emphasis) {
    case Emphasis::plain:
        button->setIcon(Symbols::icon(symbol));
        break;
    case Emphasis::prominent:
        button->setIcon(Symbols::icon(symbol, Tint::onAccent));
        button->setProperty("emphasis", u"prominent"_s);
        break;
    case Emphasis::destructive:
        button->setIcon(Symbols::icon(symbol, Tint::failed));
        button->setProperty("emphasis", u"destructive"_s);
        break;
    }
    return button;
}

QPushButton* makeSmallButton(const QString& text) {
    auto* const button = makeButton(text);
    button->setProperty("density", u"small"_s);
    return button;
}

void setSymbolSide(QPushButton& button, int side) {
    // Styles leave no more than 4 points between symbol and text; the symbol brings the rest along.
    constexpr int furtherSpace = 1;
    button.setIconSize(QSize(side + furtherSpace, side));
}

void setEnabledKeepingFocus(QWidget& control, bool isEnabled) {
    if (control.isEnabled() != isEnabled)
        changeKeepingFocus(control, isEnabled, [&] { control.setEnabled(isEnabled); });
}

void setVisibleKeepingFocus(QWidget& control, bool isVisible) {
    if (control.isHidden() == isVisible)
        changeKeepingFocus(control, isVisible, [&] { control.setVisible(isVisible); });
}

} // namespace corvanta
