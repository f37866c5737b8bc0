// SPDX-License-Identifier: MIT
#pragma once

#include "Desktop.h"
#include "LabFolder.h"
#include "X11Screens.h"
#include "X11Windows.h"
#include "support/Clock.h"
#include "support/LocalizedError.h"

#include <functional>

namespace corvanta {

/// An application that could not be opened.
class ApplicationLaunchError final : public LocalizedError {
public:
    enum class Reason { notFound, notStarted, notReady };

    ApplicationLaunchError(Reason reason, QString application);

    [[nodiscard]] QString errorDescription() const override;

    bool operator==(const ApplicationLaunchError& other) const {
        return m_reason == other.m_reason && m_application == other.m_application;
    }

private:
    Reason m_reason;
    QString m_application;
};

/// The desktop by way of the session bus, EWMH and the device lab, whose programs own their bundle identifiers on the
/// session bus while they run.
class LinuxDesktop final : public Desktop {
public:
    /// What the accessibility interface knows of applications, by their bundle identifiers.
    struct ApplicationState {
        /// Whether the application shows its menu bar.
        std::function<bool(const QString&)> isReady;
        /// Told of an application that runs and is about to be looked at.
        std::function<void(const QString&)> prepare = [](const QString&) {};
    };

    LinuxDesktop(X11Windows& windows, const X11Screens& screens, Clock& clock, LabFolder lab, ApplicationState state);

    [[nodiscard]] bool isRunning(const QString& bundleIdentifier) const override;
    void activate(const QString& bundleIdentifier) override;
    void activateSelf() override;
    [[nodiscard]] std::optional<QString> applicationPath(const QString& bundleIdentifier) const override;
    [[nodiscard]] QCoro::Task<void> openApplication(QString path) override;
    bool openURL(const URL& url) override;
    [[nodiscard]] std::vector<Screen> screens() const override;
    [[nodiscard]] std::optional<Screen> mainScreen() const override;
    [[nodiscard]] OperatingSystemVersion operatingSystemVersion() const override;

private:
    X11Windows& m_windows;
    const X11Screens& m_screens;
    Clock& m_clock;
    LabFolder m_lab;
    ApplicationState m_state;
};

} // namespace corvanta
