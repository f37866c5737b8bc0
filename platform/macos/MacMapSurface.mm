// SPDX-License-Identifier: MIT
#include "MacMapSurface.h"

#include "NativeValues.h"

#include <QPointer>
#include <QWidget>
#include <QWindow>

#import <AppKit/AppKit.h>
#import <MapKit/MapKit.h>

#include <map>
#include <utility>

/// The view that stands in Qt's window: points count from its top left corner, as they do there.
@interface CorvantaMapHost : NSView
@end

@implementation CorvantaMapHost

- (BOOL)isFlipped {
    return YES;
}

@end

@interface CorvantaPin : MKPointAnnotation {
@public
    std::shared_ptr<corvanta::MapAnnotation> source;
}
@end

@implementation CorvantaPin
@end

@interface CorvantaMapCoordinator : NSObject <MKMapViewDelegate> {
@public
    corvanta::MapSurfaceDelegate* delegate;
    __weak NSView* host;
}
- (void)handleClick:(NSClickGestureRecognizer*)recognizer;
@end

namespace corvanta {

namespace {

CLLocationCoordinate2D nativeCoordinate(const Coordinate& coordinate) {
    return CLLocationCoordinate2DMake(coordinate.latitude, coordinate.longitude);
}

Coordinate coordinateOf(CLLocationCoordinate2D coordinate) {
    return {coordinate.latitude, coordinate.longitude};
}

MapGestureState gestureStateOf(NSGestureRecognizerState state) {
    switch (state) {
    case NSGestureRecognizerStatePossible:
        return MapGestureState::possible;
    case NSGestureRecognizerStateBegan:
        return MapGestureState::began;
    case NSGestureRecognizerStateChanged:
        return MapGestureState::changed;
    case NSGestureRecognizerStateEnded:
        return MapGestureState::ended;
    case NSGestureRecognizerStateCancelled:
        return MapGestureState::cancelled;
    case NSGestureRecognizerStateFailed:
        return MapGestureState::failed;
    }
    return MapGestureState::failed;
}

NSColor* nativeTint(MapMarkerStyle::Tint tint) {
    switch (tint) {
    case MapMarkerStyle::Tint::systemBlue:
        return NSColor.systemBlueColor;
    }
    return NSColor.systemBlueColor;
}

/// What the delegate is asked about: a pin of ours, or something that the map shows by itself.
MapAnnotation annotationOf(id<MKAnnotation> annotation) {
    if ([annotation isKindOfClass:[CorvantaPin class]])
        return *static_cast<CorvantaPin*>(annotation)->source;
    return {.kind = MapAnnotationKind::userLocation, .title = {}, .coordinate = coordinateOf(annotation.coordinate)};
}

MKAnnotationView* makeMarker(id<MKAnnotation> annotation, const MapMarkerStyle& style) {
    MKMarkerAnnotationView* const view =
        [[MKMarkerAnnotationView alloc] initWithAnnotation:annotation
                                           reuseIdentifier:nativeText(style.reuseIdentifier)];
    view.markerTintColor = nativeTint(style.tint);
    view.glyphImage = [NSImage imageWithSystemSymbolName:nativeText(style.glyph)
                                accessibilityDescription:nativeText(style.glyphAccessibilityDescription)];
    return view;
}

} // namespace

} // namespace corvanta

@implementation CorvantaMapCoordinator

- (void)handleClick:(NSClickGestureRecognizer*)recognizer {
    const NSPoint point = [recognizer locationInView:host];
    if (delegate != nullptr)
        delegate->handleClick(corvanta::gestureStateOf(recognizer.state), {point.x, point.y});
}

- (MKAnnotationView*)mapView:(MKMapView*)mapView viewForAnnotation:(id<MKAnnotation>)annotation {
    const auto style = delegate != nullptr ? delegate->viewFor(corvanta::annotationOf(annotation)) : std::nullopt;
    if (!style)
        return nil;
    MKAnnotationView* const reused =
        [mapView dequeueReusableAnnotationViewWithIdentifier:corvanta::nativeText(style->reuseIdentifier)];
    if (reused == nil)
        return corvanta::makeMarker(annotation, *style);
    reused.annotation = annotation;
    return reused;
}

@end

namespace corvanta {

namespace {

class MacMapSurface final : public MapSurface {
public:
    explicit MacMapSurface(QWidget& parent) {
        m_map.autoresizingMask = NSViewWidthSizable | NSViewHeightSizable;
        [m_host addSubview:m_map];
        m_coordinator->host = m_host;
        m_map.delegate = m_coordinator;
        NSClickGestureRecognizer* const click =
            [[NSClickGestureRecognizer alloc] initWithTarget:m_coordinator action:@selector(handleClick:)];
        click.numberOfClicksRequired = 1;
        [m_map addGestureRecognizer:click];
        // The container owns the window, which keeps the view for as long as it is there.
        QWindow* const window = QWindow::fromWinId(reinterpret_cast<WId>((__bridge void*)m_host));
        m_widget = QWidget::createWindowContainer(window, &parent);
    }

    ~MacMapSurface() override {
        m_coordinator->delegate = nullptr;
        m_map.delegate = nil;
        delete m_widget;
    }

    [[nodiscard]] QWidget& widget() override { return *m_widget; }

    void setDelegate(MapSurfaceDelegate* delegate) override { m_coordinator->delegate = delegate; }

    void setFeatures(const MapFeatures& features) override {
        m_map.showsCompass = features.showsCompass;
        m_map.showsScale = features.showsScale;
        m_map.zoomEnabled = features.isZoomEnabled;
        m_map.scrollEnabled = features.isScrollEnabled;
        m_map.pitchEnabled = features.isPitchEnabled;
        m_map.rotateEnabled = features.isRotateEnabled;
        m_map.pointOfInterestFilter = features.showsPointsOfInterest
                                          ? MKPointOfInterestFilter.filterIncludingAllCategories
                                          : MKPointOfInterestFilter.filterExcludingAllCategories;
    }

    [[nodiscard]] MapRegion region() const override {
        const MKCoordinateRegion region = m_map.region;
        return {coordinateOf(region.center), {region.span.latitudeDelta, region.span.longitudeDelta}};
    }

    void setRegion(const MapRegion& region, MapMotion motion) override {
        const MKCoordinateSpan span = MKCoordinateSpanMake(region.span.latitudeDelta, region.span.longitudeDelta);
        [m_map setRegion:MKCoordinateRegionMake(nativeCoordinate(region.center), span)
                animated:motion == MapMotion::animated];
    }

    void addAnnotation(std::shared_ptr<MapAnnotation> annotation) override {
        CorvantaPin* const pin = [[CorvantaPin alloc] init];
        pin.title = nativeText(annotation->title);
        pin.coordinate = nativeCoordinate(annotation->coordinate);
        pin->source = annotation;
        m_pins[std::move(annotation)] = pin;
        [m_map addAnnotation:pin];
    }

    void removeAnnotation(const std::shared_ptr<MapAnnotation>& annotation) override {
        const auto found = m_pins.find(annotation);
        if (found == m_pins.end())
            return;
        [m_map removeAnnotation:found->second];
        m_pins.erase(found);
    }

    void annotationMoved(const std::shared_ptr<MapAnnotation>& annotation) override {
        const auto found = m_pins.find(annotation);
        if (found != m_pins.end())
            found->second.coordinate = nativeCoordinate(annotation->coordinate);
    }

    [[nodiscard]] Coordinate coordinateAt(QPointF point) const override {
        return coordinateOf([m_map convertPoint:NSMakePoint(point.x(), point.y()) toCoordinateFromView:m_host]);
    }

private:
    /// Until the container gives them the place they have in the window.
    static constexpr NSRect firstFrame = {{0, 0}, {320, 250}};

    CorvantaMapHost* const m_host = [[CorvantaMapHost alloc] initWithFrame:firstFrame];
    MKMapView* const m_map = [[MKMapView alloc] initWithFrame:firstFrame];
    /// The map's and the recogniser's own references are weak.
    CorvantaMapCoordinator* const m_coordinator = [[CorvantaMapCoordinator alloc] init];
    std::map<std::shared_ptr<MapAnnotation>, CorvantaPin*> m_pins;
    QPointer<QWidget> m_widget;
};

} // namespace

std::unique_ptr<MapSurface> makeMacMapSurface(QWidget& parent) {
    return std::make_unique<MacMapSurface>(parent);
}

} // namespace corvanta
