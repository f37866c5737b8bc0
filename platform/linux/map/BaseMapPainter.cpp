// SPDX-License-Identifier: MIT
#include "BaseMapPainter.h"

#include "map/MapShapes.h"
#include "map/MapTiles.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <bit>
#include <cmath>

namespace corvanta {

namespace {

constexpr int mostTiles = 400;
/// What is cut off lies so far outside that no stroke of its edge is seen.
constexpr double margin = 12;
constexpr double provinceZoom = 3.6;
constexpr double riverZoom = 2.6;
/// From here on the data is coarser than the screen, and its corners show.
constexpr double smoothZoom = 8;
/// From here on a grid shows the scale where there is nothing else to see.
constexpr double graticuleZoom = 10.5;

/// Puts the features of the tiles together as paths in the painter's coordinates.
class Collector {
public:
    Collector(const BaseMap& map, const MapProjection& projection)
        : m_map(map)
        , m_projection(projection)
        , m_level(map.levelFor(projection.camera().zoom))
        , m_rounds(std::clamp(static_cast<int>((projection.camera().zoom - smoothZoom) / 1.5) + 1, 0, 3))
        , m_world(1.0 * m_level.tilesAcross * m_level.extent)
        , m_right(projection.groundUnwrapped({projection.camera().center.x + 1, projection.camera().center.y}))
        , m_down(projection.groundUnwrapped({projection.camera().center.x, projection.camera().center.y + 1})) {
        const auto corners = projection.groundCorners();
        for (const QPointF& corner : corners)
            m_area |= QRectF(corner, QSizeF(1e-6, 1e-6));
        m_area.adjust(-margin, -margin, margin, margin);
        // Even-odd would leave holes where an island of one tile lies over the edge of another.
        for (QPainterPath* const path : {&land, &lakes})
            path->setFillRule(Qt::WindingFill);
    }

    void collect() {
        const int zoom = std::countr_zero(static_cast<unsigned>(m_level.tilesAcross));
        for (const ShownMapTile& shown : MapTiles::visible(m_projection, zoom, mostTiles)) {
            m_column = 1.0 * (shown.tile.column + shown.turn * m_level.tilesAcross) * m_level.extent;
            m_row = 1.0 * shown.tile.row * m_level.extent;
            m_map.visit(m_level, shown.tile.column, shown.tile.row,
                        [this](BaseMapKind kind, std::span<const BaseMapPoint> points) { add(kind, points); });
        }
        addTheSouth();
    }

    QPainterPath land;
    QPainterPath lakes;
    QPainterPath countries;
    QPainterPath provinces;
    QPainterPath rivers;

private:
    [[nodiscard]] bool isShown(BaseMapKind kind) const {
        const double zoom = m_projection.camera().zoom;
        return (kind != BaseMapKind::provinceBorder || zoom >= provinceZoom) &&
               (kind != BaseMapKind::river || zoom >= riverZoom);
    }

    void add(BaseMapKind kind, std::span<const BaseMapPoint> points) {
        if (!isShown(kind))
            return;
        m_vertices.clear();
        const WorldPoint center = m_projection.camera().center;
        for (const BaseMapPoint& point : points) {
            // Whole numbers up to here, so that the points of neighbouring tiles fall exactly together.
            const double x = (m_column + point.x) / m_world - center.x;
            const double y = (m_row + point.y) / m_world - center.y;
            const bool isFixed = point.x <= 0 || point.y <= 0 || point.x >= m_level.extent || point.y >= m_level.extent;
            m_vertices.push_back({m_right * x + m_down * y, isFixed});
        }
        switch (kind) {
        case BaseMapKind::land:
            addRing(land);
            break;
        case BaseMapKind::lake:
            addRing(lakes);
            break;
        case BaseMapKind::countryBorder:
            addLine(countries);
            break;
        case BaseMapKind::provinceBorder:
            addLine(provinces);
            break;
        case BaseMapKind::river:
            addLine(rivers);
            break;
        }
    }

    void addRing(QPainterPath& path) {
        const MapVertices ring = MapShapes::smoothedRing(MapShapes::clippedRing(m_vertices, m_area), m_rounds);
        if (ring.size() < 3)
            return;
        path.moveTo(m_projection.shown(ring.front().at));
        for (std::size_t index = 1; index < ring.size(); ++index)
            path.lineTo(m_projection.shown(ring[index].at));
        path.closeSubpath();
    }

    void addLine(QPainterPath& path) {
        for (const MapVertices& part : MapShapes::clippedLine(m_vertices, m_area)) {
            const MapVertices line = MapShapes::smoothedLine(part, m_rounds);
            path.moveTo(m_projection.shown(line.front().at));
            for (std::size_t index = 1; index < line.size(); ++index)
                path.lineTo(m_projection.shown(line[index].at));
        }
    }

    /// The projection ends before the south pole does; a turned map shows a corner of what is beyond.
    void addTheSouth() {
        m_vertices.clear();
        const WorldPoint center = m_projection.camera().center;
        for (const WorldPoint& place : {WorldPoint{-2, 2}, WorldPoint{-2, 1}, WorldPoint{3, 1}, WorldPoint{3, 2}})
            m_vertices.push_back({m_right * (place.x - center.x) + m_down * (place.y - center.y), true});
        addRing(land);
    }

    const BaseMap& m_map;
    const MapProjection& m_projection;
    const BaseMapLevel& m_level;
    int m_rounds;
    double m_world;
    QPointF m_right;
    QPointF m_down;
    QRectF m_area;
    MapVertices m_vertices;
    double m_column = 0;
    double m_row = 0;
};

double stepped(double least) {
    for (const double step :
         {1.0 / 3600, 2.0 / 3600, 5.0 / 3600, 15.0 / 3600, 30.0 / 3600, 1.0 / 60, 2.0 / 60, 5.0 / 60})
        if (step >= least)
            return step;
    return 10.0 / 60;
}

void paintGraticule(QPainter& painter, const MapProjection& projection, const MapPalette& palette) {
    const double strength = std::clamp((projection.camera().zoom - graticuleZoom) / 1.5, 0.0, 1.0);
    if (strength == 0)
        return;
    double left = 1e9;
    double right = -1e9;
    double top = 1e9;
    double bottom = -1e9;
    for (const QPointF& corner : projection.groundCorners()) {
        const WorldPoint place = projection.fromGround(corner);
        left = std::min(left, place.x);
        right = std::max(right, place.x);
        top = std::min(top, place.y);
        bottom = std::max(bottom, place.y);
    }
    const double step = stepped(90 / projection.scale() * 360);
    QColor colour = palette.graticule;
    colour.setAlpha(static_cast<int>(std::lround(colour.alpha() * strength)));
    painter.setPen(QPen(colour, 1));
    const auto line = [&](WorldPoint from, WorldPoint to) {
        painter.drawLine(projection.shown(projection.groundUnwrapped(from)),
                         projection.shown(projection.groundUnwrapped(to)));
    };
    const auto first = [step](double degrees) { return std::ceil(degrees / step); };
    for (double number = first((left - 0.5) * 360); number * step <= (right - 0.5) * 360; ++number) {
        const double x = number * step / 360 + 0.5;
        line({x, top}, {x, bottom});
    }
    const double south = Mercator::unproject({0, bottom}).latitude;
    const double north = Mercator::unproject({0, top}).latitude;
    for (double number = first(south); number * step <= north; ++number) {
        const double y = Mercator::project({number * step, 0}).y;
        line({left, y}, {right, y});
    }
}

} // namespace

void paintBaseMap(QPainter& painter, const BaseMap* map, const MapProjection& projection, const MapPalette& palette) {
    const QRectF all(0, 0, projection.viewport().width, projection.viewport().height);
    painter.setRenderHint(QPainter::Antialiasing, false);
    if (map == nullptr) {
        painter.fillRect(all, palette.land);
        paintGraticule(painter, projection, palette);
        return;
    }
    painter.fillRect(all, palette.water);
    Collector collector(*map, projection);
    collector.collect();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(collector.land, palette.land);
    paintGraticule(painter, projection, palette);
    const double zoom = projection.camera().zoom;
    const auto stroke = [&](const QPainterPath& path, const QColor& colour, double width) {
        if (!path.isEmpty())
            painter.strokePath(path, QPen(colour, width, Qt::SolidLine, Qt::FlatCap, Qt::RoundJoin));
    };
    stroke(collector.rivers, palette.water, std::clamp(0.6 + (zoom - 3) * 0.2, 0.6, 2.0));
    painter.fillPath(collector.lakes, palette.water);
    stroke(collector.provinces, palette.provinceBorder, 1);
    stroke(collector.countries, palette.countryBorder, std::clamp(0.5 + zoom * 0.1, 0.5, 1.25));
}

} // namespace corvanta
