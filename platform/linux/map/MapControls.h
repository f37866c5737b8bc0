// SPDX-License-Identifier: MIT
#pragma once

#include "MapPalette.h"

#include "MapSurface.h"

#include <QAbstractButton>
#include <QWidget>

namespace corvanta {

/// Shows where north is, and turns the map back to it when pressed.
class MapCompass final : public QAbstractButton {
    Q_OBJECT

public:
    explicit MapCompass(QWidget* parent);

    void show(double bearing, double pitch, const MapPalette& palette);

    [[nodiscard]] QSize sizeHint() const override { return {34, 34}; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    double m_bearing = 0;
    double m_pitch = 0;
    MapPalette m_palette = MapPalette::light();
};

/// Says whose data is shown, and opens their page when pressed.
class MapAttribution final : public QAbstractButton {
    Q_OBJECT

public:
    explicit MapAttribution(QWidget* parent);

    void show(const QString& text, const MapPalette& palette);

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    [[nodiscard]] QFont smallFont() const;

    MapPalette m_palette = MapPalette::light();
};

/// A marker whose tip stands on a place of the map.
class MapPin final : public QWidget {
    Q_OBJECT

public:
    MapPin(const MapAnnotation& annotation, const MapMarkerStyle& style, QWidget* parent);

    /// Stands with its tip on that point of the parent, or is hidden outside of it.
    void standAt(QPointF point);
    void setPalette(const MapPalette& palette);
    /// As assistive technology reads it.
    void describe(const Coordinate& coordinate);

    /// The room that the marker takes up around its tip.
    [[nodiscard]] static QRectF roomAround(QPointF tip);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    MapMarkerStyle m_style;
    MapPalette m_palette = MapPalette::light();
};

} // namespace corvanta
