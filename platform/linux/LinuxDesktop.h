// SPDX-License-Identifier: MIT
#pragma once

#include "Desktop.h"
#include "LabFolder.h"
#include "X11Screens.h"
#include "X11Windows.h"
#include "support/Clock.h"
#include "support/LocalizedError.h"

#include <QHash>

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
    /// `isReady` says whether the application with a bundle identifier shows its menu bar.
    LinuxDesktop(X11Windows& windows, const X11Screens& screens, Clock& clock, LabFolder lab,
                 std::function<bool(const QString&)> isReady);

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
    /// Starts one of the lab's programs, which goes on by itself; false when it cannot be started.
    bool startLabProgram(const QString& program, const QStringList& arguments) const;
    bool openInSafari(const QString& address) const;

    X11Windows& m_windows;
    const X11Screens& m_screens;
    Clock& m_clock;
    LabFolder m_lab;
    std::function<bool(const QString&)> m_isReady;
    /// What the bus said last; it stands when the bus is slow.
    mutable QHash<QString, bool> m_running;
};

} // namespace corvanta
