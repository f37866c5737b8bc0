// SPDX-License-Identifier: MIT
#include "LinuxDesktop.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDesktopServices>
#include <QFileInfo>
#include <QProcess>
#include <QUrl>
#include <QWidget>

#include <chrono>
#include <utility>

namespace corvanta {

namespace {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

constexpr int busTimeLimit = 80;
constexpr auto launchPoll = 50ms;
constexpr auto launchLimit = 20s;

/// An application of a Mac that the lab plays.
struct PlayedApplication {
    QString bundleIdentifier;
    QString path;
    QString program;
    QStringList arguments;
};

const PlayedApplication safari{u"com.apple.Safari"_s, u"/Applications/Safari.app"_s, u"Safari"_s, {u"--background"_s}};
const PlayedApplication simulator{
    u"com.apple.iphonesimulator"_s,
    u"/Applications/Xcode.app/Contents/Developer/Applications/Simulator.app"_s,
    u"open"_s,
    {u"-g"_s, u"-a"_s, u"Simulator"_s},
};

bool isForBrowsersAndMail(const QString& scheme) {
    return scheme == u"http" || scheme == u"https" || scheme == u"mailto";
}

/// The page that says how the lab plays a pane or a store that only a Mac has.
QString helpPageName(const URL& url) {
    const QString scheme = url.scheme().value_or(QString()).toLower();
    if (scheme != u"x-apple.systempreferences")
        return scheme == u"macappstore" ? u"help/app-store.html"_s : QString();
    return url.absoluteString().contains(u"Privacy_Accessibility") ? u"help/accessibility.html"_s
                                                                   : u"help/system-settings.html"_s;
}

} // namespace

ApplicationLaunchError::ApplicationLaunchError(Reason reason, QString application)
    : m_reason(reason)
    , m_application(std::move(application)) {}

QString ApplicationLaunchError::errorDescription() const {
    switch (m_reason) {
    case Reason::notFound:
        return u"The application “%1” could not be found."_s.arg(m_application);
    case Reason::notStarted:
        return u"The application “%1” could not be started."_s.arg(m_application);
    case Reason::notReady:
        return u"The application “%1” did not become ready in time."_s.arg(m_application);
    }
    return {};
}

LinuxDesktop::LinuxDesktop(X11Windows& windows, const X11Screens& screens, Clock& clock, LabFolder lab,
                           std::function<bool(const QString&)> isReady)
    : m_windows(windows)
    , m_screens(screens)
    , m_clock(clock)
    , m_lab(std::move(lab))
    , m_isReady(std::move(isReady)) {}

bool LinuxDesktop::isRunning(const QString& bundleIdentifier) const {
    QDBusMessage question = QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s,
                                                           u"org.freedesktop.DBus"_s, u"NameHasOwner"_s);
    question << bundleIdentifier;
    const QDBusMessage reply = QDBusConnection::sessionBus().call(question, QDBus::Block, busTimeLimit);
    if (reply.type() == QDBusMessage::ReplyMessage)
        m_running.insert(bundleIdentifier, reply.arguments().value(0).toBool());
    return m_running.value(bundleIdentifier);
}

void LinuxDesktop::activate(const QString& bundleIdentifier) {
    for (const X11Windows::Window window : m_windows.windows()) {
        if (m_windows.instanceName(window) == bundleIdentifier)
            m_windows.activate(window);
    }
}

void LinuxDesktop::activateSelf() {
    QWidget* const active = QApplication::activeWindow();
    const QWidgetList all = QApplication::topLevelWidgets();
    for (QWidget* const widget : all) {
        if (widget->isVisible() && widget->isWindow() && widget->windowType() == Qt::Window && widget != active)
            m_windows.activate(static_cast<X11Windows::Window>(widget->winId()));
    }
    if (active != nullptr)
        m_windows.activate(static_cast<X11Windows::Window>(active->winId()));
}

std::optional<QString> LinuxDesktop::applicationPath(const QString& bundleIdentifier) const {
    for (const PlayedApplication* const application : {&safari, &simulator}) {
        if (application->bundleIdentifier == bundleIdentifier &&
            QFileInfo(m_lab.program(application->program)).isExecutable())
            return application->path;
    }
    return std::nullopt;
}

QCoro::Task<void> LinuxDesktop::openApplication(QString path) {
    using Reason = ApplicationLaunchError::Reason;
    const QString name = QFileInfo(path).completeBaseName();
    const PlayedApplication* const application =
        path == safari.path ? &safari : (path == simulator.path ? &simulator : nullptr);
    if (application == nullptr || !QFileInfo(m_lab.program(application->program)).isExecutable())
        throw ApplicationLaunchError(Reason::notFound, name);
    // It outlives this program, so it must not hold its terminal or its pipes.
    QProcess launch;
    launch.setProgram(m_lab.program(application->program));
    launch.setArguments(application->arguments);
    launch.setStandardInputFile(QProcess::nullDevice());
    launch.setStandardOutputFile(QProcess::nullDevice());
    launch.setStandardErrorFile(QProcess::nullDevice());
    if (!launch.startDetached())
        throw ApplicationLaunchError(Reason::notStarted, name);
    const Clock::TimePoint end = m_clock.now() + launchLimit;
    const auto isUp = [&] {
        return isRunning(application->bundleIdentifier) &&
               (application != &safari || m_isReady(application->bundleIdentifier));
    };
    while (!isUp()) {
        if (m_clock.now() >= end)
            throw ApplicationLaunchError(Reason::notReady, name);
        co_await m_clock.sleepFor(launchPoll);
    }
}

bool LinuxDesktop::openURL(const URL& url) {
    if (isForBrowsersAndMail(url.scheme().value_or(QString()).toLower()))
        return QDesktopServices::openUrl(QUrl(url.absoluteString(), QUrl::StrictMode));
    const QString page = helpPageName(url);
    if (page.isEmpty() || !QFileInfo::exists(m_lab.shared(page)))
        return false;
    return QDesktopServices::openUrl(QUrl::fromLocalFile(m_lab.shared(page)));
}

std::vector<Screen> LinuxDesktop::screens() const {
    return m_screens.screens();
}

std::optional<Screen> LinuxDesktop::mainScreen() const {
    if (const auto window = m_windows.activeWindow()) {
        if (const auto frame = m_windows.outerFrame(*window)) {
            if (const auto screen = m_screens.screenShowing(m_screens.toDesktop(*frame)))
                return screen;
        }
    }
    const std::vector<Screen> all = screens();
    return all.empty() ? std::nullopt : std::optional(all.front());
}

OperatingSystemVersion LinuxDesktop::operatingSystemVersion() const {
    return m_lab.operatingSystemVersion();
}

} // namespace corvanta
