// SPDX-License-Identifier: MIT
#include "Doubles.h"

using namespace corvanta::testing;

extern "C" CLLocationCoordinate2D CLLocationCoordinate2DMake(CLLocationDegrees latitude, CLLocationDegrees longitude) {
    return {latitude, longitude};
}

@implementation MKPointOfInterestFilter

+ (MKPointOfInterestFilter*)filterIncludingAllCategories {
    static MKPointOfInterestFilter* const filter = [[MKPointOfInterestFilter alloc] init];
    return filter;
}

+ (MKPointOfInterestFilter*)filterExcludingAllCategories {
    static MKPointOfInterestFilter* const filter = [[MKPointOfInterestFilter alloc] init];
    return filter;
}

- (id)copyWithZone:(NSZone*)__unused zone {
    return self;
}

@end

@implementation MKShape
@synthesize title;
@dynamic coordinate;
@end

@implementation MKPointAnnotation
@synthesize coordinate;
@end

@implementation MKAnnotationView
@synthesize annotation;

- (instancetype)initWithAnnotation:(id<MKAnnotation>)shown reuseIdentifier:(NSString*)identifier {
    if ((self = [super initWithFrame:NSMakeRect(0, 0, 1, 1)])) {
        self.annotation = shown;
        world().lastReuseIdentifier = textIn(identifier);
    }
    return self;
}

@end

@implementation MKMarkerAnnotationView
@synthesize markerTintColor, glyphImage;
@end

@implementation MKMapView
@synthesize delegate, region, zoomEnabled, scrollEnabled, rotateEnabled, pitchEnabled, showsCompass, showsScale,
    newInTwentySix, pointOfInterestFilter;

- (instancetype)initWithFrame:(NSRect)frame {
    if ((self = [super initWithFrame:frame]))
        world().map = self;
    return self;
}

- (void)setRegion:(MKCoordinateRegion)shown animated:(BOOL)animated {
    self.region = shown;
    world().wasRegionAnimated = animated;
}

- (CLLocationCoordinate2D)convertPoint:(CGPoint)point toCoordinateFromView:(NSView*)view {
    constexpr CGFloat height = 250;
    return {view.flipped ? height - point.y : point.y, point.x};
}

- (void)addAnnotation:(id<MKAnnotation>)annotation {
    world().shownPins.push_back(annotation);
}

- (void)removeAnnotation:(id<MKAnnotation>)annotation {
    std::erase(world().shownPins, annotation);
}

- (MKAnnotationView*)dequeueReusableAnnotationViewWithIdentifier:(NSString*)identifier {
    const auto found = world().reusable.find(textIn(identifier));
    return found == world().reusable.end() ? nil : found->second;
}

@end

@implementation MKLocalSearchCompletion
@synthesize title, subtitle;

+ (MKLocalSearchCompletion*)titled:(NSString*)titleText with:(NSString*)subtitleText {
    MKLocalSearchCompletion* const completion = [[MKLocalSearchCompletion alloc] init];
    completion->title = titleText;
    completion->subtitle = subtitleText;
    return completion;
}

@end

@implementation MKLocalSearchCompleter {
    NSArray* m_results;
}
@synthesize queryFragment, resultTypes, delegate;

- (instancetype)init {
    if ((self = [super init])) {
        m_results = @[];
        world().completer = self;
    }
    return self;
}

- (NSArray*)results {
    return m_results;
}

- (void)answer:(NSArray*)completions {
    m_results = completions;
    id<MKLocalSearchCompleterDelegate> const told = self.delegate;
    if ([told respondsToSelector:@selector(completerDidUpdateResults:)])
        [told completerDidUpdateResults:self];
}

- (void)fail:(NSError*)error {
    id<MKLocalSearchCompleterDelegate> const told = self.delegate;
    if ([told respondsToSelector:@selector(completer:didFailWithError:)])
        [told completer:self didFailWithError:error];
}

@end

@implementation MKPlacemark {
@public
    CLLocationCoordinate2D m_coordinate;
}

- (CLLocationCoordinate2D)coordinate {
    return m_coordinate;
}

@end

@implementation MKMapItem {
    MKPlacemark* m_placemark;
}
@synthesize name;

+ (MKMapItem*)named:(NSString*)nameText at:(CLLocationCoordinate2D)coordinate {
    MKMapItem* const item = [[MKMapItem alloc] init];
    item->name = nameText;
    item->m_placemark = [[MKPlacemark alloc] init];
    item->m_placemark->m_coordinate = coordinate;
    return item;
}

- (MKPlacemark*)placemark {
    return m_placemark;
}

@end

@implementation MKLocalSearchRequest {
@public
    MKLocalSearchCompletion* m_completion;
}

- (instancetype)initWithCompletion:(MKLocalSearchCompletion*)completion {
    if ((self = [super init]))
        m_completion = completion;
    return self;
}

@end

@implementation MKLocalSearchResponse {
@public
    NSArray* m_items;
}

- (NSArray*)mapItems {
    return m_items;
}

@end

@implementation MKLocalSearch {
    MKLocalSearchRequest* m_request;
}

- (instancetype)initWithRequest:(MKLocalSearchRequest*)request {
    if ((self = [super init]))
        m_request = request;
    return self;
}

- (void)startWithCompletionHandler:(MKLocalSearchCompletionHandler)done {
    world().searchedTitle = textIn(m_request->m_completion.title);
    world().pendingSearch = done;
}

- (void)dealloc {
    world().searchedTitle += " given up";
}

@end

namespace corvanta::testing {

void answerSearch(NSArray* items, NSError* error) {
    const MKLocalSearchCompletionHandler done = world().pendingSearch;
    world().pendingSearch = nil;
    MKLocalSearchResponse* response = nil;
    if (items != nil) {
        response = [[MKLocalSearchResponse alloc] init];
        response->m_items = items;
    }
    done(response, error);
}

} // namespace corvanta::testing
