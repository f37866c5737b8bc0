// SPDX-License-Identifier: MIT
#pragma once

#import <AppKit/AppKit.h>
#import <CoreLocation/CoreLocation.h>

SDK_NONNULL_BEGIN

typedef struct MKCoordinateSpan {
    CLLocationDegrees latitudeDelta;
    CLLocationDegrees longitudeDelta;
} MKCoordinateSpan;

typedef struct MKCoordinateRegion {
    CLLocationCoordinate2D center;
    MKCoordinateSpan span;
} MKCoordinateRegion;

static inline MKCoordinateSpan MKCoordinateSpanMake(CLLocationDegrees latitudeDelta, CLLocationDegrees longitudeDelta) {
    MKCoordinateSpan s = {latitudeDelta, longitudeDelta};
    return s;
}

static inline MKCoordinateRegion MKCoordinateRegionMake(CLLocationCoordinate2D centerCoordinate,
                                                        MKCoordinateSpan span) {
    MKCoordinateRegion r = {centerCoordinate, span};
    return r;
}

@protocol MKAnnotation <NSObject>
@property(nonatomic, readonly) CLLocationCoordinate2D coordinate;
@optional
@property(nonatomic, readonly, copy, nullable) NSString* title;
@end
@interface MKShape : NSObject <MKAnnotation>
@property(nonatomic, copy, nullable) NSString* title;
@end
@interface MKPointAnnotation : MKShape
@property(nonatomic, assign) CLLocationCoordinate2D coordinate;
@end
@interface MKAnnotationView : NSView
- (instancetype)initWithAnnotation:(nullable id<MKAnnotation>)annotation
                   reuseIdentifier:(nullable NSString*)reuseIdentifier;
@property(nonatomic, strong, nullable) id<MKAnnotation> annotation;
@end
@interface MKMarkerAnnotationView : MKAnnotationView
@property(nonatomic, copy, nullable) NSColor* markerTintColor;
@property(nonatomic, copy, nullable) NSImage* glyphImage;
@end
@interface MKPointOfInterestFilter : NSObject <NSCopying>
@property(class, nonatomic, readonly) MKPointOfInterestFilter* filterIncludingAllCategories;
@property(class, nonatomic, readonly) MKPointOfInterestFilter* filterExcludingAllCategories;
@end
@class MKMapView;
@protocol MKMapViewDelegate <NSObject>
@optional
- (nullable MKAnnotationView*)mapView:(MKMapView*)mapView viewForAnnotation:(id<MKAnnotation>)annotation;
@end
@interface MKMapView : NSView
@property(nonatomic, weak, nullable) id<MKMapViewDelegate> delegate;
@property(nonatomic) MKCoordinateRegion region;
- (void)setRegion:(MKCoordinateRegion)region animated:(BOOL)animated;
- (CLLocationCoordinate2D)convertPoint:(CGPoint)point toCoordinateFromView:(nullable NSView*)view;
@property(nonatomic, getter=isZoomEnabled) BOOL zoomEnabled;
@property(nonatomic, getter=isScrollEnabled) BOOL scrollEnabled;
@property(nonatomic, getter=isRotateEnabled) BOOL rotateEnabled;
@property(nonatomic, getter=isPitchEnabled) BOOL pitchEnabled;
@property(nonatomic) BOOL showsCompass;
@property(nonatomic) BOOL showsScale;
// Newer than what the program may call.
@property(nonatomic) BOOL newInTwentySix SDK_AVAILABLE(26.0);
@property(nonatomic, copy, nullable) MKPointOfInterestFilter* pointOfInterestFilter SDK_AVAILABLE(10.15);
- (void)addAnnotation:(id<MKAnnotation>)annotation;
- (void)removeAnnotation:(id<MKAnnotation>)annotation;
- (nullable MKAnnotationView*)dequeueReusableAnnotationViewWithIdentifier:(NSString*)identifier;
@end
typedef SDK_OPTIONS(NSUInteger, MKLocalSearchCompleterResultType){
    MKLocalSearchCompleterResultTypeAddress = 1 << 0,
    MKLocalSearchCompleterResultTypePointOfInterest = 1 << 1,
    MKLocalSearchCompleterResultTypeQuery = 1 << 2,
};
@class MKLocalSearchCompleter;
@interface MKLocalSearchCompletion : NSObject
@property(nonatomic, readonly, strong) NSString* title;
@property(nonatomic, readonly, strong) NSString* subtitle;
@end
@protocol MKLocalSearchCompleterDelegate <NSObject>
@optional
- (void)completerDidUpdateResults:(MKLocalSearchCompleter*)completer;
- (void)completer:(MKLocalSearchCompleter*)completer didFailWithError:(NSError*)error;
@end
@interface MKLocalSearchCompleter : NSObject
@property(nonatomic, copy) NSString* queryFragment;
@property(nonatomic, assign) MKLocalSearchCompleterResultType resultTypes SDK_AVAILABLE(10.15);
@property(nonatomic, weak, nullable) id<MKLocalSearchCompleterDelegate> delegate;
@property(nonatomic, readonly, strong) NSArray<MKLocalSearchCompletion*>* results;
@end
@interface MKPlacemark : NSObject <MKAnnotation>
@end
@interface MKMapItem : NSObject
@property(nonatomic, readonly) MKPlacemark* placemark;
@property(nonatomic, copy, nullable) NSString* name;
@end
@interface MKLocalSearchRequest : NSObject
- (instancetype)initWithCompletion:(MKLocalSearchCompletion*)completion;
@end
@interface MKLocalSearchResponse : NSObject
@property(nonatomic, readonly) NSArray<MKMapItem*>* mapItems;
@end
typedef void (^MKLocalSearchCompletionHandler)(MKLocalSearchResponse* _Nullable response, NSError* _Nullable error);
@interface MKLocalSearch : NSObject
- (instancetype)initWithRequest:(MKLocalSearchRequest*)request;
- (void)startWithCompletionHandler:(MKLocalSearchCompletionHandler)completionHandler;
@end
SDK_NONNULL_END
