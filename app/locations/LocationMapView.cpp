// SPDX-License-Identifier: MIT
#include "locations/LocationMapView.h"

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr MapRegion firstRegion{.center = {41.3874, 2.1686}, .span = {0.1, 0.1}};

} // namespace

void LocationMapView::makeMap(MapSurface& map, Coordinator& coordinator) {
    map.setDelegate(&coordinator);
    map.setFeatures({.showsCompass = true,
                     .showsScale = true,
                     .isZoomEnabled = true,
                     .isScrollEnabled = true,
                     .isPitchEnabled = true,
                     .isRotateEnabled = true,
                     .showsPointsOfInterest = true});
    map.setRegion(firstRegion, MapMotion::immediate);
}

void LocationMapView::updateMap(MapSurface& map, Coordinator& coordinator) const {
    coordinator.parent = *this;
    coordinator.syncAnnotation(map, selectedCoordinate(), selectionID, recenterOnSelection);
}

void LocationMapView::Coordinator::syncAnnotation(MapSurface& on, const std::optional<Coordinate>& coordinate,
                                                  const QUuid& selection, bool recenters) {
    if (!coordinate) {
        if (annotation)
            on.removeAnnotation(annotation);
        annotation.reset();
        lastSelectionID.reset();
        return;
    }
    if (!annotation) {
        annotation = std::make_shared<MapAnnotation>(
            MapAnnotation{MapAnnotationKind::point, u"Selected Location"_s, *coordinate});
        on.addAnnotation(annotation);
    }
    annotation->coordinate = *coordinate;
    on.annotationMoved(annotation);
    if (lastSelectionID == selection)
        return;
    lastSelectionID = selection;
    if (recenters)
        on.setRegion({.center = *coordinate, .span = on.region().span}, MapMotion::animated);
}

void LocationMapView::Coordinator::handleClick(MapGestureState state, QPointF point) {
    if (state != MapGestureState::ended)
        return;
    // Whoever is told may update the view, and with it replace the function that is running.
    const auto tell = parent.onCoordinateSelected;
    tell(m_map.coordinateAt(point));
}

std::optional<MapMarkerStyle> LocationMapView::Coordinator::viewFor(const MapAnnotation& shown) {
    if (shown.kind != MapAnnotationKind::point)
        return std::nullopt;
    return MapMarkerStyle{.reuseIdentifier = u"selected-location"_s,
                          .tint = MapMarkerStyle::Tint::systemBlue,
                          .glyph = u"location.fill"_s,
                          .glyphAccessibilityDescription = u"Selected location"_s};
}

} // namespace corvanta
