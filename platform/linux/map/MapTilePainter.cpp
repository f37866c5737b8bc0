// SPDX-License-Identifier: MIT
#include "MapTilePainter.h"

#include <QPainter>

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

namespace corvanta {

namespace {

constexpr int mostTiles = 80;
/// How many zooms further out a picture still stands in for one that is not there.
constexpr int mostLevels = 4;

/// Draws a part of a picture, from 0 to 1, onto a part of the world. Of what reaches behind the camera, where it would
/// be turned inside out, only what lies before it.
void paintTile(QPainter& painter, const MapProjection& now, const QImage& image, const QRectF& source,
               const QRectF& place, int halvings = 5) {
    std::array<QPointF, 4> corners{place.topLeft(), place.topRight(), place.bottomRight(), place.bottomLeft()};
    for (QPointF& corner : corners)
        corner = now.groundUnwrapped({corner.x(), corner.y()});
    const auto isBefore = [&now](const QPointF& ground) { return now.isBeforeCamera(ground); };
    if (!std::ranges::all_of(corners, isBefore)) {
        if (halvings == 0 || std::ranges::none_of(corners, isBefore))
            return;
        for (const QPointF& half : {QPointF(0, 0), QPointF(0.5, 0), QPointF(0, 0.5), QPointF(0.5, 0.5)}) {
            const auto quarter = [&half](const QRectF& all) {
                return QRectF(all.x() + half.x() * all.width(), all.y() + half.y() * all.height(), all.width() / 2,
                              all.height() / 2);
            };
            paintTile(painter, now, image, quarter(source), quarter(place), halvings - 1);
        }
        return;
    }
    const QSizeF size = image.size();
    const QRectF pixels(source.x() * size.width(), source.y() * size.height(), source.width() * size.width(),
                        source.height() * size.height());
    QPolygonF shown;
    for (const QPointF& corner : corners)
        shown.append(now.shown(corner));
    QTransform transform;
    if (!QTransform::quadToQuad(
            QPolygonF{pixels.topLeft(), pixels.topRight(), pixels.bottomRight(), pixels.bottomLeft()}, shown,
            transform))
        return;
    painter.save();
    painter.setTransform(transform, true);
    painter.drawImage(pixels, image, pixels);
    painter.restore();
}

} // namespace

std::optional<MapTilePainter::Part> MapTilePainter::standIn(const MapTile& tile) const {
    for (int levels = 1; levels <= mostLevels && levels <= tile.zoom; ++levels) {
        const MapTile parent = MapTiles::ancestor(tile, levels);
        const MapTileStore::Picture picture = m_store.picture(parent);
        if (picture.image == nullptr)
            continue;
        const double side = std::exp2(-levels);
        return Part{
            picture.image,
            picture.opacity,
            {(tile.column - (parent.column << levels)) * side, (tile.row - (parent.row << levels)) * side, side, side}};
    }
    return std::nullopt;
}

std::vector<MapTile> MapTilePainter::paint(QPainter& painter, const MapProjection& projection, const MapCamera& camera,
                                           double pixelRatio) {
    m_zoom = MapTiles::zoomFor(camera, pixelRatio, m_store.options().highestZoom);
    m_isShowing = false;
    std::vector<MapTile> seen;
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    for (const ShownMapTile& one : MapTiles::visible(projection, m_zoom, mostTiles)) {
        if (std::ranges::find(seen, one.tile) == seen.end())
            seen.push_back(one.tile);
        const WorldPoint corner = MapTiles::corner(one);
        const double side = std::exp2(-one.tile.zoom);
        const auto draw = [&](const Part& part) {
            painter.setOpacity(part.opacity);
            paintTile(painter, projection, *part.image, part.source, {corner.x, corner.y, side, side});
            painter.setOpacity(1);
            m_isShowing = true;
        };
        const MapTileStore::Picture picture = m_store.picture(one.tile);
        // Until it is there, or quite opaque, an earlier zoom's picture of the same land stands in.
        if (picture.image == nullptr || picture.opacity < 1) {
            if (const auto part = standIn(one.tile))
                draw(*part);
        }
        if (picture.image != nullptr)
            draw({picture.image, picture.opacity, {0, 0, 1, 1}});
    }
    return seen;
}

bool MapTilePainter::covers(const WorldPoint& place) const {
    if (!m_isShowing)
        return false;
    const double across = std::exp2(m_zoom);
    const MapTile tile{m_zoom, static_cast<int>(Mercator::wrapped(place.x) * across),
                       static_cast<int>(place.y * across)};
    return m_store.picture(tile).image != nullptr || standIn(tile).has_value();
}

} // namespace corvanta
