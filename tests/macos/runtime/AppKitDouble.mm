// SPDX-License-Identifier: MIT
#include "Doubles.h"

#include <QWidget>
#include <QWindow>

#include <dlfcn.h>

using namespace corvanta::testing;

@implementation NSRunningApplication {
@public
    pid_t m_program;
    std::string m_bundleIdentifier;
}

+ (NSArray*)runningApplicationsWithBundleIdentifier:(NSString*)bundleIdentifier {
    const auto found = world().running.find(textIn(bundleIdentifier));
    if (found == world().running.end())
        return @[];
    NSRunningApplication* const application = [[NSRunningApplication alloc] init];
    application->m_program = found->second;
    application->m_bundleIdentifier = found->first;
    return @[ application ];
}

- (pid_t)processIdentifier {
    return m_program;
}

- (BOOL)activateWithOptions:(NSApplicationActivationOptions)options {
    if (options == NSApplicationActivateAllWindows)
        world().activated.push_back(m_bundleIdentifier);
    return YES;
}

@end

@implementation NSWorkspaceOpenConfiguration

+ (instancetype)configuration {
    return [[self alloc] init];
}

- (id)copyWithZone:(NSZone*)__unused zone {
    return self;
}

@end

@implementation NSWorkspace

+ (NSWorkspace*)sharedWorkspace {
    static NSWorkspace* const workspace = [[NSWorkspace alloc] init];
    return workspace;
}

- (BOOL)openURL:(NSURL*)url {
    world().openedAddresses.push_back(addressOf(url));
    return world().takesAddresses;
}

- (NSURL*)URLForApplicationWithBundleIdentifier:(NSString*)bundleIdentifier {
    const auto found = world().installed.find(textIn(bundleIdentifier));
    return found == world().installed.end() ? nil
                                            : [NSURL fileURLWithPath:makeText(QString::fromStdString(found->second))];
}

- (void)openApplicationAtURL:(NSURL*)url
               configuration:(NSWorkspaceOpenConfiguration*)configuration
           completionHandler:(void (^)(NSRunningApplication*, NSError*))done {
    if (configuration != nil)
        world().openedApplications.push_back({addressOf(url), done});
}

@end

@implementation NSScreen {
@public
    DoubleScreen m_screen;
}

+ (NSArray*)screens {
    NSMutableArray* const all = [NSMutableArray array];
    for (const DoubleScreen& screen : world().screens) {
        NSScreen* const made = [[NSScreen alloc] init];
        made->m_screen = screen;
        [all addObject:made];
    }
    return all;
}

+ (NSScreen*)mainScreen {
    if (world().screens.empty())
        return nil;
    NSScreen* const last = [[NSScreen alloc] init];
    last->m_screen = world().screens.back();
    return last;
}

- (NSRect)frame {
    return m_screen.frame;
}

- (NSRect)visibleFrame {
    return m_screen.visibleFrame;
}

@end

@implementation NSColor

+ (NSColor*)systemBlueColor {
    static NSColor* const blue = [[NSColor alloc] init];
    return blue;
}

- (id)copyWithZone:(NSZone*)__unused zone {
    return self;
}

@end

@implementation NSImage {
@public
    std::string m_description;
}

+ (instancetype)imageWithSystemSymbolName:(NSString*)name accessibilityDescription:(NSString*)description {
    NSImage* const image = [[NSImage alloc] init];
    image->m_description = textIn(name) + "|" + textIn(description);
    return image;
}

- (id)copyWithZone:(NSZone*)__unused zone {
    return self;
}

- (NSUInteger)hash {
    return std::hash<std::string>()(m_description);
}

@end

@implementation NSResponder
@end

@implementation NSApplication

+ (NSApplication*)sharedApplication {
    static NSApplication* const application = [[NSApplication alloc] init];
    return application;
}

- (void)activate {
    ++world().selfActivations;
}

@end

@implementation NSView {
@public
    NSRect m_frame;
    NSWindow* m_window;
    NSMutableArray* m_subviews;
    NSMutableArray* m_recognisers;
    NSAutoresizingMaskOptions m_mask;
}

- (instancetype)initWithFrame:(NSRect)frame {
    if ((self = [super init])) {
        m_frame = frame;
        m_subviews = [NSMutableArray array];
        m_recognisers = [NSMutableArray array];
    }
    return self;
}

- (NSWindow*)window {
    return m_window;
}

- (NSAutoresizingMaskOptions)autoresizingMask {
    return m_mask;
}

- (void)setAutoresizingMask:(NSAutoresizingMaskOptions)mask {
    m_mask = mask;
}

- (BOOL)isFlipped {
    return NO;
}

- (void)addSubview:(NSView*)view {
    [m_subviews addObject:view];
}

- (void)addGestureRecognizer:(NSGestureRecognizer*)recogniser {
    [m_recognisers addObject:recogniser];
}

- (NSArray*)shownViews {
    return m_subviews;
}

- (NSArray*)recognisers {
    return m_recognisers;
}

@end

@implementation DoubleView

- (void)setWindow:(NSWindow*)window {
    m_window = window;
}

@end

@implementation NSWindow {
    NSRect m_frame;
    NSScreen* m_screen;
    std::string m_flags;
}

- (NSScreen*)screen {
    return m_screen;
}

- (void)setScreen:(NSScreen*)screen {
    m_screen = screen;
}

- (NSRect)frame {
    return m_frame;
}

- (void)place:(NSRect)frame {
    m_frame = frame;
}

- (void)setFrame:(NSRect)frame display:(BOOL)display animate:(BOOL)animate {
    m_frame = frame;
    m_flags = std::string(display ? "display" : "") + (animate ? " animate" : "");
}

- (std::string)lastFlags {
    return m_flags;
}

@end

@implementation NSGestureRecognizer {
@public
    __weak id m_target;
    SEL m_action;
    NSPoint m_point;
    NSGestureRecognizerState m_state;
}

- (instancetype)initWithTarget:(id)target action:(SEL)action {
    if ((self = [super init])) {
        m_target = target;
        m_action = action;
    }
    return self;
}

- (NSGestureRecognizerState)state {
    return m_state;
}

- (NSPoint)locationInView:(NSView*)view {
    return view.flipped ? NSMakePoint(m_point.x, view->m_frame.size.height - m_point.y) : m_point;
}

@end

@implementation NSClickGestureRecognizer
@synthesize numberOfClicksRequired;
@end

namespace corvanta::testing {

namespace {

auto& nativeViews() {
    static auto& views = *new std::map<const QWidget*, NSView*>;
    return views;
}

__weak NSView* lastEmbedded = nil;

/// Keeps the view for as long as it is there, as Qt's window of a foreign view does.
class ForeignWindow final : public QWindow {
public:
    explicit ForeignWindow(NSView* view)
        : m_view(view) {}

private:
    NSView* m_view;
};

} // namespace

void click(MKMapView* map, NSPoint point, NSGestureRecognizerState state) {
    for (NSGestureRecognizer* recogniser in [map recognisers]) {
        recogniser->m_point = point;
        recogniser->m_state = state;
        reinterpret_cast<void (*)(id, SEL, id)>(objc_msgSend)(recogniser->m_target, recogniser->m_action, recogniser);
    }
}

void setNativeView(const QWidget& widget, NSView* view) {
    if (view == nil)
        nativeViews().erase(&widget);
    else
        nativeViews()[&widget] = view;
}

NSView* embeddedView() {
    return lastEmbedded;
}

} // namespace corvanta::testing

// In the place of Qt's own, whose platform plug-in here knows no native views.

WId QWidget::winId() const {
    const auto& views = nativeViews();
    if (const auto found = views.find(this); found != views.end())
        return reinterpret_cast<WId>((__bridge void*)found->second);
    using Original = WId (*)(const QWidget*);
    static const auto original = reinterpret_cast<Original>(dlsym(RTLD_NEXT, "_ZNK7QWidget5winIdEv"));
    return original(this);
}

QWindow* QWindow::fromWinId(WId id) {
    NSView* const view = (__bridge NSView*)reinterpret_cast<void*>(id);
    lastEmbedded = view;
    return new ForeignWindow(view);
}
