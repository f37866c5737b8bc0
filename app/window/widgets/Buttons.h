// SPDX-License-Identifier: MIT
#pragma once

#include "window/Symbols.h"

#include <QPushButton>

/// The buttons of the control window. They take the focus by the keyboard alone, so that a click leaves it in the field
/// where somebody types.
namespace corvanta {

enum class Emphasis { plain, prominent, destructive };

/// A button with a text alone.
[[nodiscard]] QPushButton* makeButton(const QString& text);

/// A button with a symbol before its text.
[[nodiscard]] QPushButton* makeButton(const QString& text, Symbol symbol, Emphasis emphasis = Emphasis::plain);

/// A smaller button, which stands in a row of texts.
[[nodiscard]] QPushButton* makeSmallButton(const QString& text);

/// Changes the size of the symbol before a button's text.
void setSymbolSide(QPushButton& button, int side);

/// Enables or disables a control. A focused one that is disabled lends its focus to its parent and gets it back later;
/// otherwise the focus would jump to another control, and the next key press would do what nobody meant.
void setEnabledKeepingFocus(QWidget& control, bool isEnabled);

/// Likewise shows or hides it.
void setVisibleKeepingFocus(QWidget& control, bool isVisible);

} // namespace corvanta
