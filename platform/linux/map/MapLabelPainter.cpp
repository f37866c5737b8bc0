// SPDX-License-Identifier: MIT
#include "MapLabelPainter.h"

#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int mostLabels = 160;
constexpr int mostShown = 40;
constexpr int mostPictures = 400;
constexpr double haloWidth = 1.5;
constexpr double dotRadius = 2;
/// Below this zoom a town is a point; above, its name stands for all of it.
constexpr double dotZoom = 8.5;
/// Names of countries give way to those of places.
constexpr double countryZooms = 4.5;
/// How far the camera may move before the sources are asked again.
constexpr double zoomSlack = 0.2;

WorldArea areaOf(const MapProjection& projection) {
    const WorldPoint center = projection.camera().center;
    WorldArea area{center.x, center.y, center.x, center.y};
    for (const QPointF& corner : projection.groundCorners()) {
        const WorldPoint place = projection.fromGround(corner);
        area.left = std::min(area.left, place.x);
        area.right = std::max(area.right, place.x);
        area.top = std::min(area.top, place.y);
        area.bottom = std::max(area.bottom, place.y);
    }
    area.top = std::max(0.0, area.top);
    area.bottom = std::min(1.0, area.bottom);
    return area;
}

bool contains(const WorldArea& outer, const WorldArea& inner) {
    return outer.left <= inner.left && outer.right >= inner.right && outer.top <= inner.top &&
           outer.bottom >= inner.bottom;
}

WorldArea widened(const WorldArea& area) {
    const double across = (area.right - area.left) / 2;
    const double down = (area.bottom - area.top) / 2;
    return {area.left - across, std::max(0.0, area.top - down), area.right + across, std::min(1.0, area.bottom + down)};
}

MapLabel::Kind kindOf(BaseMapLabelKind kind) {
    switch (kind) {
    case BaseMapLabelKind::country:
        return MapLabel::Kind::country;
    case BaseMapLabelKind::ocean:
        return MapLabel::Kind::ocean;
    case BaseMapLabelKind::sea:
        break;
    }
    return MapLabel::Kind::sea;
}

bool isWater(MapLabel::Kind kind) {
    return kind == MapLabel::Kind::ocean || kind == MapLabel::Kind::sea;
}

} // namespace

void MapLabelPainter::setSources(const BaseMap* map, const MapLabelSource* source) {
    m_map = map;
    m_source = source;
    m_area.reset();
}

void MapLabelPainter::setLook(const MapPalette& palette, const QFont& font) {
    m_palette = palette;
    m_font = font;
    m_pictures.clear();
}

const std::vector<MapLabel>& MapLabelPainter::labelsFor(const MapProjection& projection) {
    const WorldArea area = areaOf(projection);
    const double zoom = projection.camera().zoom;
    if (m_area && contains(*m_area, area) && std::abs(zoom - m_zoom) < zoomSlack)
        return m_labels;
    m_area = widened(area);
    m_zoom = zoom;
    m_labels.clear();
    if (m_map != nullptr) {
        for (const BaseMapLabel& label : m_map->labels()) {
            const double lowest = label.kind == BaseMapLabelKind::country ? label.minimumZoom : label.minimumZoom - 0.5;
            const double highest = label.kind == BaseMapLabelKind::ocean ? 5.5 : lowest + countryZooms;
            if (zoom >= lowest && zoom < highest)
                m_labels.push_back({kindOf(label.kind), label.name, label.place, 0});
        }
    }
    if (m_source != nullptr) {
        for (MapLabel& label : m_source->labelsIn(*m_area, zoom, mostLabels))
            m_labels.push_back(std::move(label));
    }
    return m_labels;
}

MapLabelPainter::Style MapLabelPainter::styleFor(const MapLabel& label, double zoom) const {
    const int body = std::max(11, m_font.pixelSize() > 0 ? m_font.pixelSize() - 2 : 11);
    switch (label.kind) {
    case MapLabel::Kind::country:
        return {body, QFont::DemiBold, false, 0.6, m_palette.secondaryText, false};
    case MapLabel::Kind::ocean:
        return {body + 1, QFont::Normal, true, 1.2, m_palette.waterText, false};
    case MapLabel::Kind::sea:
        return {body, QFont::Normal, true, 0.4, m_palette.waterText, false};
    case MapLabel::Kind::city:
        return {body + 2, QFont::DemiBold, false, 0, m_palette.text, zoom < dotZoom};
    case MapLabel::Kind::town:
        return {body + 1, QFont::Normal, false, 0, m_palette.text, zoom < dotZoom};
    case MapLabel::Kind::village:
        break;
    }
    return {body, QFont::Normal, false, 0, m_palette.secondaryText, zoom < dotZoom};
}

MapLabelPainter::Picture& MapLabelPainter::pictureOf(const QString& name, const Style& style, double ratio) {
    const QString key = u"%1 %2 %3 %4 %5 %6"_s.arg(name)
                            .arg(style.pixelSize)
                            .arg(style.weight)
                            .arg(style.isItalic)
                            .arg(style.colour.rgba())
                            .arg(ratio);
    Picture& picture = m_pictures[key];
    picture.lastFrame = m_frame;
    if (!picture.image.isNull())
        return picture;
    QFont font = m_font;
    font.setPixelSize(style.pixelSize);
    font.setWeight(static_cast<QFont::Weight>(style.weight));
    font.setItalic(style.isItalic);
    font.setLetterSpacing(QFont::AbsoluteSpacing, style.spacing);
    const QFontMetricsF metrics(font);
    picture.size = QSizeF(std::ceil(metrics.horizontalAdvance(name) + 2 * haloWidth + 1),
                          std::ceil(metrics.height() + 2 * haloWidth));
    picture.image = QImage((picture.size * ratio).toSize(), QImage::Format_ARGB32_Premultiplied);
    picture.image.setDevicePixelRatio(ratio);
    picture.image.fill(Qt::transparent);
    QPainter painter(&picture.image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setFont(font);
    const QPointF base(haloWidth, haloWidth + metrics.ascent());
    if (!style.isItalic) {
        // Once in each direction, which is much quicker than the outline of an outline.
        painter.setPen(m_palette.halo);
        for (int direction = 0; direction < 8; ++direction) {
            const double angle = direction * std::numbers::pi / 4;
            painter.drawText(base + haloWidth * QPointF(std::cos(angle), std::sin(angle)), name);
        }
    }
    painter.setPen(style.colour);
    painter.drawText(base, name);
    return picture;
}

void MapLabelPainter::forgetUnseen() {
    if (m_pictures.size() > mostPictures)
        m_pictures.removeIf([this](const auto& entry) { return entry.value().lastFrame + 60 < m_frame; });
}

void MapLabelPainter::paint(QPainter& painter, const MapProjection& projection, const std::vector<QRectF>& reserved,
                            const std::function<bool(const WorldPoint&)>& isCovered) {
    ++m_frame;
    m_shownNames.clear();
    const double zoom = projection.camera().zoom;
    const double ratio = painter.device()->devicePixelRatioF();
    const QRectF bounds(0, 0, projection.viewport().width, projection.viewport().height);
    LabelLayout layout(bounds.adjusted(2, 2, -2, -2));
    for (const QRectF& room : reserved)
        layout.reserve(room);
    painter.setRenderHint(QPainter::Antialiasing);
    for (const MapLabel& label : labelsFor(projection)) {
        if (m_shownNames.size() == mostShown)
            break;
        const QPointF ground = projection.ground(label.place);
        if (!projection.isBeforeCamera(ground))
            continue;
        const QPointF anchor = projection.shown(ground);
        if (!bounds.contains(anchor) || isCovered(label.place))
            continue;
        const Style style = styleFor(label, zoom);
        const QString name = label.kind == MapLabel::Kind::country ? label.name.toUpper() : label.name;
        const Picture& picture = pictureOf(name, style, ratio);
        const double lift = style.hasDot ? picture.size.height() / 2 + dotRadius : 0;
        const QRectF room(anchor - QPointF(picture.size.width() / 2, picture.size.height() / 2 + lift), picture.size);
        const double space = isWater(label.kind) || label.kind == MapLabel::Kind::country ? 6 : 3;
        if (!layout.place(room.adjusted(-space, -1, space, style.hasDot ? 2 * dotRadius : 1)))
            continue;
        if (style.hasDot) {
            painter.setPen(QPen(m_palette.halo, 1));
            painter.setBrush(style.colour);
            painter.drawEllipse(anchor, dotRadius, dotRadius);
        }
        // On whole pixels of the screen, or the lettering would blur.
        const QPointF corner = room.topLeft() * ratio;
        painter.drawImage(QPointF(std::round(corner.x()), std::round(corner.y())) / ratio, picture.image);
        m_shownNames.push_back(label.name);
    }
    forgetUnseen();
}

} // namespace corvanta
