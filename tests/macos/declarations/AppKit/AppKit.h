// SPDX-License-Identifier: MIT
#pragma once

#include <CoreFoundation/CoreFoundation.h>
#include <CoreGraphics/CoreGraphics.h>

#import <Foundation/Foundation.h>

SDK_NONNULL_BEGIN
typedef SDK_OPTIONS(NSUInteger, NSApplicationActivationOptions){
    NSApplicationActivateAllWindows = 1 << 0,
};
@interface NSRunningApplication : NSObject
+ (NSArray<NSRunningApplication*>*)runningApplicationsWithBundleIdentifier:(NSString*)bundleIdentifier;
@property(readonly) pid_t processIdentifier;
- (BOOL)activateWithOptions:(NSApplicationActivationOptions)options;
@end
@interface NSWorkspaceOpenConfiguration : NSObject <NSCopying>
+ (instancetype)configuration;
@end
@interface NSWorkspace : NSObject
@property(class, readonly, strong) NSWorkspace* sharedWorkspace;
- (BOOL)openURL:(NSURL*)url;
- (nullable NSURL*)URLForApplicationWithBundleIdentifier:(NSString*)bundleIdentifier;
- (void)openApplicationAtURL:(NSURL*)applicationURL
               configuration:(NSWorkspaceOpenConfiguration*)configuration
           completionHandler:(void (^_Nullable)(NSRunningApplication* _Nullable app,
                                                NSError* _Nullable error))completionHandler SDK_AVAILABLE(10.15);
@end
@interface NSScreen : NSObject
@property(class, readonly, copy) NSArray<NSScreen*>* screens;
@property(class, readonly, strong, nullable) NSScreen* mainScreen;
@property(readonly) NSRect frame;
@property(readonly) NSRect visibleFrame;
@end
@interface NSColor : NSObject
@property(class, strong, readonly) NSColor* systemBlueColor;
@end
@interface NSImage : NSObject
+ (nullable instancetype)imageWithSystemSymbolName:(NSString*)name
                          accessibilityDescription:(nullable NSString*)description SDK_AVAILABLE(11.0);
@end
@class NSView;
typedef SDK_ENUM(NSInteger, NSGestureRecognizerState){
    NSGestureRecognizerStatePossible = 0, NSGestureRecognizerStateBegan = 1,     NSGestureRecognizerStateChanged = 2,
    NSGestureRecognizerStateEnded = 3,    NSGestureRecognizerStateCancelled = 4, NSGestureRecognizerStateFailed = 5,
};
@interface NSGestureRecognizer : NSObject
- (instancetype)initWithTarget:(nullable id)target action:(nullable SEL)action;
@property(readonly) NSGestureRecognizerState state;
- (NSPoint)locationInView:(nullable NSView*)view;
@end
@interface NSClickGestureRecognizer : NSGestureRecognizer
@property NSInteger numberOfClicksRequired;
@end
@class NSWindow;
@interface NSResponder : NSObject
@end
@interface NSApplication : NSResponder
@property(class, readonly, strong) __kindof NSApplication* sharedApplication;
- (void)activate SDK_AVAILABLE(14.0);
@end
typedef SDK_OPTIONS(NSUInteger, NSAutoresizingMaskOptions){
    NSViewWidthSizable = 2,
    NSViewHeightSizable = 16,
};
@interface NSView : NSResponder
- (instancetype)initWithFrame:(NSRect)frameRect;
@property(nullable, readonly, assign) NSWindow* window;
@property NSAutoresizingMaskOptions autoresizingMask;
@property(getter=isFlipped, readonly) BOOL flipped;
- (void)addSubview:(NSView*)view;
- (void)addGestureRecognizer:(NSGestureRecognizer*)gestureRecognizer;
@end
@interface NSWindow : NSResponder
@property(nullable, readonly, strong) NSScreen* screen;
@property(readonly) NSRect frame;
- (void)setFrame:(NSRect)frameRect display:(BOOL)displayFlag animate:(BOOL)animateFlag;
@end
SDK_NONNULL_END
