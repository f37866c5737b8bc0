// SPDX-License-Identifier: MIT
#include "BaseMapPainter.h"

#include "map/MapShapes.h"
#include "map/MapTiles.h"

#include <QPainter>
#include <QPainterPath>
#include <QString>

#include <algorithm>
#include <bit>
#include <cmath>
#include <utility>
#include <vector>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int mostBaseMapTiles = 400;
/// What is cut off lies so far outside that no stroke of its edge is seen.
constexpr double margin = 12;
/// In device-independent pixels, as is what follows.
constexpr double seam = 0.6;
constexpr double finest = 0.6;
constexpr double hairline = 0.5;
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
    }

    void collect() {
        const int zoom = std::countr_zero(static_cast<unsigned>(m_level.tilesAcross));
        for (const ShownMapTile& shown : MapTiles::visible(m_projection, zoom, mostBaseMapTiles)) {
            m_column = 1.0 * (shown.tile.column + shown.turn * m_level.tilesAcross) * m_level.extent;
            m_row = 1.0 * shown.tile.row * m_level.extent;
            m_tile = {};
            m_map.visit(m_level, shown.tile.column, shown.tile.row,
                        [this](BaseMapKind kind, std::span<const BaseMapPoint> points) { add(kind, points); });
            keepTile();
        }
        addTheSouth();
        keepTile();
    }

    /// A path for each tile: the time that a path takes grows faster than its length.
    std::vector<QPainterPath> land;
    std::vector<QPainterPath> lakes;
    std::vector<QPainterPath> countries;
    std::vector<QPainterPath> provinces;
    std::vector<QPainterPath> rivers;

private:
    struct Tile {
        QPainterPath land;
        QPainterPath lakes;
        QPainterPath countries;
        QPainterPath provinces;
        QPainterPath rivers;
    };

    void keepTile() {
        const auto keep = [](QPainterPath& path, std::vector<QPainterPath>& paths) {
            if (!path.isEmpty())
                paths.push_back(std::move(path));
        };
        keep(m_tile.land, land);
        keep(m_tile.lakes, lakes);
        keep(m_tile.countries, countries);
        keep(m_tile.provinces, provinces);
        keep(m_tile.rivers, rivers);
        m_tile = {};
    }

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
        const bool isRing = kind == BaseMapKind::land || kind == BaseMapKind::lake;
        // A hairline would be seen between two tiles whose edges are smoothed by themselves, so they overlap a little.
        const double overlap = isRing ? seam * m_world / m_projection.scale() : 0;
        for (const BaseMapPoint& point : points) {
            const double right = point.x <= 0 ? -overlap : point.x >= m_level.extent ? overlap : 0;
            const double down = point.y <= 0 ? -overlap : point.y >= m_level.extent ? overlap : 0;
            const double x = (m_column + point.x + right) / m_world - center.x;
            const double y = (m_row + point.y + down) / m_world - center.y;
            const bool isFixed = point.x <= 0 || point.y <= 0 || point.x >= m_level.extent || point.y >= m_level.extent;
            const QPointF at = m_right * x + m_down * y;
            // What is nearer than the screen can show is left out, but the ends of lines.
            const bool isTooNear = !isFixed && !m_vertices.empty() && &point != &points.back() &&
                                   (at - m_vertices.back().at).manhattanLength() < finest;
            if (!isTooNear)
                m_vertices.push_back({at, isFixed});
        }
        if (isRing && m_vertices.size() < 3)
            return;
        switch (kind) {
        case BaseMapKind::land:
            addRing(m_tile.land);
            break;
        case BaseMapKind::lake:
            addRing(m_tile.lakes);
            break;
        case BaseMapKind::countryBorder:
            addLine(m_tile.countries);
            break;
        case BaseMapKind::provinceBorder:
            addLine(m_tile.provinces);
            break;
        case BaseMapKind::river:
            addLine(m_tile.rivers);
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
        addRing(m_tile.land);
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
    Tile m_tile;
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

/// "41°24′30″N", with as many parts as there are.
QString degreesText(double degrees, QChar positive, QChar negative) {
    const auto seconds = static_cast<int>(std::lround(std::abs(degrees) * 3600));
    QString text = u"%1°"_s.arg(seconds / 3600);
    if (seconds % 3600 != 0)
        text += u"%1′"_s.arg(seconds / 60 % 60, 2, 10, QChar(u'0'));
    if (seconds % 60 != 0)
        text += u"%1″"_s.arg(seconds % 60, 2, 10, QChar(u'0'));
    return text + (degrees < 0 ? negative : positive);
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
        const QLineF seen = projection.beforeCamera({projection.groundUnwrapped(from), projection.groundUnwrapped(to)});
        if (!seen.isNull())
            painter.drawLine(projection.shown(seen.p1()), projection.shown(seen.p2()));
    };
    // Turned lines have no place for their numbers.
    const bool isNumbered = projection.isFlat() && projection.camera().bearing == 0;
    QFont small = painter.font();
    small.setPixelSize(9);
    painter.setFont(small);
    QColor ink = palette.secondaryText;
    ink.setAlphaF(static_cast<float>(strength * 0.75));
    const auto number = [&](WorldPoint place, QPointF offset, const QString& text) {
        if (!isNumbered)
            return;
        const QPen line = painter.pen();
        painter.setPen(ink);
        painter.drawText(projection.shown(projection.groundUnwrapped(place)) + offset, text);
        painter.setPen(line);
    };
    const auto first = [step](double degrees) { return std::ceil(degrees / step); };
    for (double count = first((left - 0.5) * 360); count * step <= (right - 0.5) * 360; ++count) {
        const double x = count * step / 360 + 0.5;
        line({x, top}, {x, bottom});
        number({x, top}, {3, 10}, degreesText(std::remainder(count * step, 360.0), u'E', u'W'));
    }
    const double south = Mercator::unproject({0, bottom}).latitude;
    const double north = Mercator::unproject({0, top}).latitude;
    for (double count = first(south); count * step <= north; ++count) {
        const double y = Mercator::project({count * step, 0}).y;
        line({left, y}, {right, y});
        number({left, y}, {4, -3}, degreesText(count * step, u'N', u'S'));
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
    const auto fill = [&](const std::vector<QPainterPath>& paths, const QColor& colour) {
        for (const QPainterPath& path : paths)
            painter.fillPath(path, colour);
    };
    const auto stroke = [&](const std::vector<QPainterPath>& paths, const QColor& colour, double width) {
        // Corners that are cut off look like round ones at this width, and lines of one pixel of the screen are drawn
        // without making outlines of them: both take a fraction of the time.
        QPen pen(colour, width > hairline ? width : 1, Qt::SolidLine, Qt::SquareCap, Qt::BevelJoin);
        pen.setCosmetic(width <= hairline);
        for (const QPainterPath& path : paths)
            painter.strokePath(path, pen);
    };
    const double zoom = projection.camera().zoom;
    fill(collector.land, palette.land);
    paintGraticule(painter, projection, palette);
    stroke(collector.rivers, palette.water, std::clamp(0.5 + (zoom - 5) * 0.25, 0.5, 2.0));
    fill(collector.lakes, palette.water);
    stroke(collector.provinces, palette.provinceBorder, hairline);
    stroke(collector.countries, palette.countryBorder, std::clamp(0.5 + (zoom - 5) * 0.25, 0.5, 1.25));
}

} // namespace corvanta
