// SPDX-License-Identifier: MIT
#pragma once

#include "Foundation.h"
#include "ObjectiveCRuntime.h"

#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

#import <AppKit/AppKit.h>
#import <ApplicationServices/ApplicationServices.h>
#import <MapKit/MapKit.h>

class QWidget;

/// An element of another program. Elements of the same number are equal, as two references to one element are.
@interface DoubleElement : NSObject {
@public
    int number;
    pid_t program;
    std::map<std::string, id> attributes;
    std::set<std::string> refused;
    std::vector<std::string> actions;
    std::vector<std::string> written;
    /// What every question is answered with, when it is not success.
    AXError failure;
    int questions;
    float limit;
    /// The limits that counted while actions were performed.
    std::vector<float> actionLimits;
}
+ (DoubleElement*)numbered:(int)number;
@end

@interface DoubleView : NSView
- (void)setWindow:(NSWindow*)window;
@end

@interface NSWindow (Double)
- (void)setScreen:(NSScreen*)screen;
- (void)place:(NSRect)frame;
/// "display animate", as the frame was set last.
- (std::string)lastFlags;
@end

@interface NSView (Double)
- (NSArray*)shownViews;
- (NSArray*)recognisers;
@end

@interface MKLocalSearchCompletion (Double)
+ (MKLocalSearchCompletion*)titled:(NSString*)title with:(NSString*)subtitle;
@end

@interface MKLocalSearchCompleter (Double)
- (void)answer:(NSArray*)completions;
- (void)fail:(NSError*)error;
@end

@interface MKMapItem (Double)
+ (MKMapItem*)named:(NSString*)name at:(CLLocationCoordinate2D)coordinate;
@end

namespace corvanta::testing {

struct DoubleScreen {
    NSRect frame;
    NSRect visibleFrame;
};

struct OpenedApplication {
    std::string address;
    void (^done)(NSRunningApplication*, NSError*);
};

/// Everything that the system's own functions and classes know, as a test sets it up.
struct World {
    std::map<std::string, pid_t> running;
    std::map<pid_t, DoubleElement*> applications;
    bool isTrusted = false;
    bool isTrustGrantedWhenAsked = false;
    bool wasPrompted = false;
    float everyonesLimit = 0;
    std::vector<std::string> activated;
    int selfActivations = 0;
    std::map<std::string, std::string> installed;
    std::vector<OpenedApplication> openedApplications;
    std::vector<std::string> openedAddresses;
    bool takesAddresses = true;
    std::vector<DoubleScreen> screens;
    /// What the map keeps ready for reuse, by identifier.
    std::map<std::string, MKAnnotationView*> reusable;
    /// Under which the newest view is to be reused.
    std::string lastReuseIdentifier;
    __weak MKMapView* map = nil;
    std::vector<id> shownPins;
    bool wasRegionAnimated = false;
    __weak MKLocalSearchCompleter* completer = nil;
    MKLocalSearchCompletionHandler pendingSearch = nil;
    std::string searchedTitle;
};

[[nodiscard]] World& world();

/// References handed out by calls with Create and Copy in their names and by CFRetain, less those given back.
[[nodiscard]] long ownedReferences();

[[nodiscard]] CGPoint pointIn(id value);
[[nodiscard]] CGSize sizeIn(id value);
[[nodiscard]] id makePoint(CGFloat x, CGFloat y);
[[nodiscard]] id makeSize(CGFloat width, CGFloat height);
/// A geometry that the layer does not know.
[[nodiscard]] id makeRect();

/// Clicks at a point of the window, counted from its bottom left corner.
void click(MKMapView* map, NSPoint point, NSGestureRecognizerState state);

/// Answers the search that has been started.
void answerSearch(NSArray* items, NSError* error);

/// Makes a widget the owner of a native view.
void setNativeView(const QWidget& widget, NSView* view);

/// The view that was put into a window of Qt's last.
[[nodiscard]] NSView* embeddedView();

} // namespace corvanta::testing
