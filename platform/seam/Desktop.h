// SPDX-License-Identifier: MIT
#pragma once

#include "ControlWindow.h"
#include "support/URL.h"

#include <QCoroTask>

#include <QString>

#include <vector>

namespace corvanta {

/// The version of the host's operating system; the patch number is not used anywhere.
struct OperatingSystemVersion {
    int major = 0;
    int minor = 0;

    bool operator==(const OperatingSystemVersion&) const = default;
};

/// The running applications, the screens and the system's own launcher. Main thread only.
class Desktop {
public:
    Desktop() = default;
    Desktop(const Desktop&) = delete;
    Desktop& operator=(const Desktop&) = delete;
    virtual ~Desktop() = default;

    /// Whether at least one running application has that bundle identifier.
    [[nodiscard]] virtual bool isRunning(const QString& bundleIdentifier) const = 0;

    /// Brings the first running application with that bundle identifier forward with all its windows.
    /// Does nothing when none runs.
    virtual void activate(const QString& bundleIdentifier) = 0;

    /// Brings this application forward.
    virtual void activateSelf() = 0;

    /// The path of the application with that bundle identifier; nothing when it is not installed.
    [[nodiscard]] virtual std::optional<QString> applicationPath(const QString& bundleIdentifier) const = 0;

    /// Launches the application at `path` and returns once it runs. On macOS it comes forward, as applications do that
    /// are opened there; on Linux it does not take the focus away.
    /// Throws LocalizedError with the platform's own text when it cannot be launched.
    [[nodiscard]] virtual QCoro::Task<void> openApplication(QString path) = 0;

    /// Opens an address (http, https, mailto, a settings pane) with the default handler; false when nothing took it.
    virtual bool openURL(const URL& url) = 0;

    /// All screens; the first is the primary one, whose bottom-left corner is the origin.
    [[nodiscard]] virtual std::vector<Screen> screens() const = 0;

    /// The screen with the keyboard focus, nothing when there is no screen.
    [[nodiscard]] virtual std::optional<Screen> mainScreen() const = 0;

    [[nodiscard]] virtual OperatingSystemVersion operatingSystemVersion() const = 0;
};

} // namespace corvanta
