// SPDX-License-Identifier: MIT
#include "MapMarks.h"

#include "map/MapScale.h"

#include <QPainter>
#include <QPainterPath>

namespace corvanta {

namespace {

constexpr double longestScale = 90;

MapScale::Units unitsOf(const QLocale& locale) {
    return locale.measurementSystem() == QLocale::MetricSystem ? MapScale::Units::metric : MapScale::Units::imperial;
}

} // namespace

QRectF roomOfMapScale(const QRectF& map) {
    return {map.left(), map.bottom() - 26, longestScale + 60, 26};
}

void paintMapScale(QPainter& painter, const QRectF& map, const MapCamera& camera, const MapPalette& palette,
                   const QFont& font, const QLocale& locale) {
    const MapScale scale = MapScale::forCamera(camera, longestScale, unitsOf(locale));
    const double left = map.left() + 12;
    const double bottom = map.bottom() - 10;
    QPainterPath bar;
    bar.moveTo(left, bottom - 5);
    bar.lineTo(left, bottom);
    bar.lineTo(left + scale.length, bottom);
    bar.lineTo(left + scale.length, bottom - 5);
    QFont small = font;
    small.setPixelSize(11);
    QPainterPath text;
    text.addText(left + scale.length + 7, bottom + 1, small, scale.text);
    painter.setRenderHint(QPainter::Antialiasing);
    QColor halo = palette.halo;
    halo.setAlpha(210);
    painter.strokePath(bar, QPen(halo, 4, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.strokePath(text, QPen(halo, 3, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.strokePath(bar, QPen(palette.text, 1.5));
    painter.fillPath(text, palette.text);
}

void paintMapCrosshair(QPainter& painter, const QRectF& map, const MapPalette& palette) {
    painter.setRenderHint(QPainter::Antialiasing);
    const QPointF middle = map.center();
    QPainterPath cross;
    for (const QPointF& way : {QPointF(1, 0), QPointF(-1, 0), QPointF(0, 1), QPointF(0, -1)}) {
        cross.moveTo(middle + way * 4);
        cross.lineTo(middle + way * 12);
    }
    painter.strokePath(cross, QPen(palette.halo, 4, Qt::SolidLine, Qt::RoundCap));
    painter.strokePath(cross, QPen(palette.accent, 2, Qt::SolidLine, Qt::RoundCap));
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(palette.accent, 2));
    painter.drawRoundedRect(map.adjusted(1.5, 1.5, -1.5, -1.5), 5, 5);
}

} // namespace corvanta
