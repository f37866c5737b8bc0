// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>

class QApplication;
class QPalette;

namespace corvanta {

/// The colours of the control window, light or dark as the palette is.
struct Appearance {
    QColor ground;
    QColor card;
    QColor hairline;
    QColor text;
    QColor secondaryText;
    QColor accent;
    QColor passed;
    QColor failed;
    QColor blocked;

    [[nodiscard]] static Appearance light();
    [[nodiscard]] static Appearance dark();

    /// The one that suits the desktop's own palette.
    [[nodiscard]] static Appearance forPalette(const QPalette& palette);
};

/// Gives the application's widgets their colours, corners and states. Called once, before the first window.
void applyAppearance(QApplication& application);

} // namespace corvanta
