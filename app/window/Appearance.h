// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>

class QApplication;
class QFont;
class QPalette;

namespace corvanta {

/// What a symbol or a text is coloured after.
enum class Tint { text, secondary, accent, onAccent, passed, failed, blocked };

/// The colours of the control window: light, dark or of high contrast, as the desktop's palette is.
struct Appearance {
    QColor ground;
    QColor card;
    /// The bar at the foot of the window.
    QColor bar;
    /// Between the rows of a card and around it.
    QColor hairline;
    /// Around what can be pressed or typed into.
    QColor controlBorder;
    /// Behind what is pressed, and behind what is typed into.
    QColor control;
    QColor field;
    QColor controlHover;
    QColor controlPressed;
    /// Behind a row of a list.
    QColor rowHover;
    QColor rowPressed;
    QColor text;
    QColor secondaryText;
    QColor accent;
    QColor accentHover;
    QColor accentPressed;
    QColor accentDisabled;
    QColor onAccent;
    QColor onAccentDisabled;
    QColor passed;
    QColor failed;
    QColor blocked;

    [[nodiscard]] static Appearance light();
    [[nodiscard]] static Appearance dark();

    /// The one that suits the desktop's palette. A palette on pure black or pure white is taken for one of high
    /// contrast, whose own colours are used.
    [[nodiscard]] static Appearance forPalette(const QPalette& palette);

    /// The one that suits the application's palette at this moment.
    [[nodiscard]] static Appearance current();

    [[nodiscard]] QColor colour(Tint tint, bool isEnabled = true) const;

    bool operator==(const Appearance&) const = default;
};

/// The ratio of the luminances of two opaque colours, from 1 to 21, as WCAG 2.1 defines it.
[[nodiscard]] double contrastRatio(const QColor& first, const QColor& second);

/// The three sizes of the control window's type in pixels of the platform-independent kind; they grow with the
/// platform's own font and are never below 17, 13 and 12.
struct TypeScale {
    int title = 17;
    int body = 13;
    int secondary = 12;

    [[nodiscard]] static TypeScale forFont(const QFont& font);

    bool operator==(const TypeScale&) const = default;
};

/// Chooses how controls are drawn. Called before the first widget is made.
void prepareAppearance();

/// Gives the application's widgets their colours, type, corners and states, and keeps them right while the desktop's
/// palette and font change. Called once, before the first window is shown; widgets that are there already cost less
/// than such as are put together afterwards.
void applyAppearance(QApplication& application);

} // namespace corvanta
