// SPDX-License-Identifier: MIT
#pragma once

#include "MapPalette.h"
#include "map/BaseMap.h"
#include "map/MapCamera.h"
#include "map/MapLabels.h"

#include <QFont>
#include <QHash>
#include <QImage>

#include <functional>
#include <optional>
#include <vector>

class QPainter;

namespace corvanta {

/// Writes the names of places on the map, as many as there is room for.
///
/// Lettering is drawn once and kept as a picture for as long as it is seen.
class MapLabelPainter {
public:
    /// Either may be null.
    void setSources(const BaseMap* map, const MapLabelSource* source);
    /// Forgets the pictures.
    void setLook(const MapPalette& palette, const QFont& font);

    /// Nothing is written where `isCovered` says so of a point, nor on the rooms that are `reserved`.
    void paint(QPainter& painter, const MapProjection& projection, const std::vector<QRectF>& reserved,
               const std::function<bool(const WorldPoint&)>& isCovered);

    /// The names that the last frame shows.
    [[nodiscard]] const std::vector<QString>& shownNames() const { return m_shownNames; }

private:
    struct Style {
        int pixelSize = 11;
        int weight = QFont::Normal;
        bool isItalic = false;
        double spacing = 0;
        QColor colour;
        bool hasDot = false;
    };

    struct Picture {
        QImage image;
        /// Of the lettering with its halo, in device-independent pixels.
        QSizeF size;
        quint64 lastFrame = 0;
    };

    [[nodiscard]] const std::vector<MapLabel>& labelsFor(const MapProjection& projection);
    [[nodiscard]] Style styleFor(const MapLabel& label, double zoom) const;
    [[nodiscard]] Picture& pictureOf(const QString& name, const Style& style, double ratio);
    void forgetUnseen();

    const BaseMap* m_map = nullptr;
    const MapLabelSource* m_source = nullptr;
    MapPalette m_palette = MapPalette::light();
    QFont m_font;
    QHash<QString, Picture> m_pictures;
    quint64 m_frame = 0;
    /// What the sources said last, and for which part of the world and which zoom.
    std::vector<MapLabel> m_labels;
    std::optional<WorldArea> m_area;
    double m_zoom = 0;
    std::vector<QString> m_shownNames;
};

} // namespace corvanta
