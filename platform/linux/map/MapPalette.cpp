// SPDX-License-Identifier: MIT
#include "MapPalette.h"

#include <QPalette>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

MapPalette MapPalette::light() {
    return {.isDark = false,
            .land = QColor(u"#f3efe7"_s),
            .water = QColor(u"#cfdfec"_s),
            .countryBorder = QColor(u"#b3a7a0"_s),
            .provinceBorder = QColor(u"#dcd3c9"_s),
            .graticule = QColor(40, 30, 10, 18),
            .text = QColor(u"#1d1d1f"_s),
            .secondaryText = QColor(u"#5c5c64"_s),
            .waterText = QColor(u"#43708f"_s),
            .halo = QColor(u"#f9f7f3"_s),
            .accent = QColor(u"#0a66d8"_s),
            .control = QColor(u"#ffffff"_s),
            .controlBorder = QColor(u"#cfcfd6"_s),
            .systemBlue = QColor(u"#0a66d8"_s),
            .onSystemBlue = QColor(u"#ffffff"_s),
            .compassNorth = QColor(u"#d9362b"_s)};
}

MapPalette MapPalette::dark() {
    return {.isDark = true,
            .land = QColor(u"#35363b"_s),
            .water = QColor(u"#1c2733"_s),
            .countryBorder = QColor(u"#70707a"_s),
            .provinceBorder = QColor(u"#484950"_s),
            .graticule = QColor(255, 255, 255, 16),
            .text = QColor(u"#ececef"_s),
            .secondaryText = QColor(u"#b9b9c2"_s),
            .waterText = QColor(u"#86a9c6"_s),
            .halo = QColor(u"#26272b"_s),
            .accent = QColor(u"#4a95f5"_s),
            .control = QColor(u"#2c2d32"_s),
            .controlBorder = QColor(u"#505159"_s),
            .systemBlue = QColor(u"#3f8cf0"_s),
            .onSystemBlue = QColor(u"#ffffff"_s),
            .compassNorth = QColor(u"#ff6b5e"_s)};
}

MapPalette MapPalette::forPalette(const QPalette& palette) {
    const QColor ground = palette.color(QPalette::Window);
    const QColor text = palette.color(QPalette::WindowText);
    MapPalette result = ground.lightness() < text.lightness() ? dark() : light();
    const bool isPure = ground.rgb() == QColor(Qt::black).rgb() || ground.rgb() == QColor(Qt::white).rgb();
    if (isPure && qAbs(ground.lightness() - text.lightness()) > 240) {
        result.land = result.halo = result.control = ground;
        result.text = result.secondaryText = result.waterText = result.countryBorder = result.controlBorder = text;
    }
    return result;
}

} // namespace corvanta
