// SPDX-License-Identifier: MIT
#pragma once

#include "ControlWindow.h"

#include <QString>

#include <functional>
#include <optional>
#include <vector>

/// What the desktop is asked through AppKit. Main thread only.
namespace corvanta::NativeDesktop {

[[nodiscard]] bool isRunning(const QString& bundleIdentifier);

/// With all its windows.
void activate(const QString& bundleIdentifier);

void activateSelf();

[[nodiscard]] std::optional<QString> applicationPath(const QString& bundleIdentifier);

/// The system's text on failure.
using Failure = std::optional<QString>;

/// `done` is called on the main thread, never before this returns; not at all when the program ends first.
void openApplication(const QString& path, std::function<void(const Failure&)> done);

/// False when the address is none or nothing took it.
bool openURL(const QString& address);

/// The primary one first.
[[nodiscard]] std::vector<Screen> screens();

/// The one with the keyboard focus.
[[nodiscard]] std::optional<Screen> mainScreen();

struct Version {
    int major = 0;
    int minor = 0;
};

[[nodiscard]] Version operatingSystemVersion();

} // namespace corvanta::NativeDesktop
