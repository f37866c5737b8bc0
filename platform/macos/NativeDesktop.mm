// SPDX-License-Identifier: MIT
#include "NativeDesktop.h"

#include "NativeValues.h"

#include <QCoreApplication>
#include <QMetaObject>

#import <AppKit/AppKit.h>

namespace corvanta::NativeDesktop {

namespace {

NSRunningApplication* firstRunning(const QString& bundleIdentifier) {
    return [NSRunningApplication runningApplicationsWithBundleIdentifier:nativeText(bundleIdentifier)].firstObject;
}

} // namespace

bool isRunning(const QString& bundleIdentifier) {
    return firstRunning(bundleIdentifier) != nil;
}

void activate(const QString& bundleIdentifier) {
    [firstRunning(bundleIdentifier) activateWithOptions:NSApplicationActivateAllWindows];
}

void activateSelf() {
    [NSApplication.sharedApplication activate];
}

std::optional<QString> applicationPath(const QString& bundleIdentifier) {
    NSURL* const url = [NSWorkspace.sharedWorkspace URLForApplicationWithBundleIdentifier:nativeText(bundleIdentifier)];
    NSString* const path = url.path;
    if (path == nil)
        return std::nullopt;
    return textOf(path);
}

void openApplication(const QString& path, std::function<void(const Failure&)> done) {
    [NSWorkspace.sharedWorkspace
        openApplicationAtURL:[NSURL fileURLWithPath:nativeText(path)]
               configuration:[NSWorkspaceOpenConfiguration configuration]
           completionHandler:^([[maybe_unused]] NSRunningApplication* application, NSError* error) {
               // On a queue of AppKit's own: plain values alone go on to the main thread.
               Failure failure;
               if (error != nil)
                   failure = textOf(error.localizedDescription);
               if (QObject* const mainThread = QCoreApplication::instance())
                   QMetaObject::invokeMethod(mainThread, [done, failure] { done(failure); }, Qt::QueuedConnection);
           }];
}

bool openURL(const QString& address) {
    NSURL* const url = [NSURL URLWithString:nativeText(address)];
    return url != nil && [NSWorkspace.sharedWorkspace openURL:url];
}

std::vector<Screen> screens() {
    std::vector<Screen> all;
    for (NSScreen* screen in NSScreen.screens)
        all.push_back(screenOf(screen));
    return all;
}

std::optional<Screen> mainScreen() {
    NSScreen* const screen = NSScreen.mainScreen;
    if (screen == nil)
        return std::nullopt;
    return screenOf(screen);
}

Version operatingSystemVersion() {
    const NSOperatingSystemVersion version = NSProcessInfo.processInfo.operatingSystemVersion;
    return {static_cast<int>(version.majorVersion), static_cast<int>(version.minorVersion)};
}

} // namespace corvanta::NativeDesktop
