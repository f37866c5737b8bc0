// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>

class QPalette;

namespace corvanta {

/// The colours of the map: light, dark or of high contrast, as the desktop's palette is.
struct MapPalette {
    bool isDark = false;
    QColor land;
    QColor water;
    QColor countryBorder;
    QColor provinceBorder;
    QColor graticule;
    QColor text;
    QColor secondaryText;
    QColor waterText;
    /// Around lettering, so that it can be read on anything.
    QColor halo;
    QColor accent;
    /// Behind and around what lies on the map.
    QColor control;
    QColor controlBorder;
    /// The tint "system blue", and what is drawn on it.
    QColor systemBlue;
    QColor onSystemBlue;
    QColor compassNorth;

    [[nodiscard]] static MapPalette light();
    [[nodiscard]] static MapPalette dark();
    [[nodiscard]] static MapPalette forPalette(const QPalette& palette);

    bool operator==(const MapPalette&) const = default;
};

} // namespace corvanta
