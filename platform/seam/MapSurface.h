// SPDX-License-Identifier: MIT
#pragma once

#include "locations/Coordinate.h"

#include <QColor>
#include <QPointF>
#include <QString>

#include <memory>
#include <optional>

class QWidget;

namespace corvanta {

/// An extent on the map, in degrees.
struct MapSpan {
    double latitudeDelta = 0;
    double longitudeDelta = 0;

    bool operator==(const MapSpan&) const = default;
};

/// The part of the earth that a map shows.
struct MapRegion {
    Coordinate center;
    MapSpan span;

    bool operator==(const MapRegion&) const = default;
};

/// What a map lets people do and see.
struct MapFeatures {
    bool showsCompass = false;
    bool showsScale = false;
    bool isZoomEnabled = false;
    bool isScrollEnabled = false;
    bool isPitchEnabled = false;
    bool isRotateEnabled = false;
    /// Points of interest of every category; otherwise none.
    bool showsPointsOfInterest = false;

    bool operator==(const MapFeatures&) const = default;
};

enum class MapMotion { immediate, animated };

enum class MapAnnotationKind {
    /// A pin that somebody set.
    point,
    /// The host's own position, shown by the platform.
    userLocation,
};

/// A thing shown at a point of the map. Identity is the object's; the map follows changes that it is told of.
struct MapAnnotation {
    MapAnnotationKind kind = MapAnnotationKind::point;
    QString title;
    Coordinate coordinate;
};

/// How a marker looks. Views of the same `reuseIdentifier` are reused, keeping the look they were made with.
struct MapMarkerStyle {
    QString reuseIdentifier;
    /// The tint's name in the platform's palette.
    enum class Tint { systemBlue } tint = Tint::systemBlue;
    /// The name of a system symbol.
    QString glyph;
    QString glyphAccessibilityDescription;

    bool operator==(const MapMarkerStyle&) const = default;
};

/// The states of a click recogniser.
enum class MapGestureState { possible, began, changed, ended, cancelled, failed };

/// Asked and told by a MapSurface, on the main thread.
class MapSurfaceDelegate {
public:
    virtual ~MapSurfaceDelegate() = default;

    /// The look of an annotation that comes into view; nothing for the platform's default.
    [[nodiscard]] virtual std::optional<MapMarkerStyle> viewFor(const MapAnnotation& annotation) = 0;

    /// A click of one press; `point` is in the map's own coordinates.
    virtual void handleClick(MapGestureState state, QPointF point) = 0;
};

/// One map in the window. Main thread only.
class MapSurface {
public:
    MapSurface() = default;
    MapSurface(const MapSurface&) = delete;
    MapSurface& operator=(const MapSurface&) = delete;
    virtual ~MapSurface() = default;

    /// The widget that shows the map: a child of the one that the surface was made for. Gone with the surface.
    [[nodiscard]] virtual QWidget& widget() = 0;

    /// Whom to ask and tell; nobody when null. Must be reset before the delegate goes.
    virtual void setDelegate(MapSurfaceDelegate* delegate) = 0;

    virtual void setFeatures(const MapFeatures& features) = 0;

    /// What is shown with north up and no tilt; while the map moves by itself, what it is going to show.
    [[nodiscard]] virtual MapRegion region() const = 0;

    /// Shows at least the region, at the largest scale that does. The span of `region()` itself keeps the zoom,
    /// wherever the centre is.
    virtual void setRegion(const MapRegion& region, MapMotion motion) = 0;

    virtual void addAnnotation(std::shared_ptr<MapAnnotation> annotation) = 0;
    virtual void removeAnnotation(const std::shared_ptr<MapAnnotation>& annotation) = 0;
    /// To be called when a shown annotation has got another coordinate.
    virtual void annotationMoved(const std::shared_ptr<MapAnnotation>& annotation) = 0;

    /// The place under a point of the widget, whatever the zoom, the rotation and the pitch.
    [[nodiscard]] virtual Coordinate coordinateAt(QPointF point) const = 0;
};

} // namespace corvanta
