// SPDX-License-Identifier: MIT
#include "LinuxDesktop.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDesktopServices>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QUrl>
#include <QWidget>

#include <algorithm>
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

bool isForBrowsers(const QString& scheme) {
    return scheme == u"http" || scheme == u"https";
}

/// Whether some line of the file is `key`, which ends in "=", with a value.
bool hasValue(const QString& path, QByteArrayView key) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    const QByteArrayList lines = file.readAll().split('\n');
    return std::ranges::any_of(
        lines, [key](const QByteArray& line) { return line.startsWith(key) && line.trimmed().size() > key.size(); });
}

/// Whether some program on this desktop takes web addresses. Where none does, the desktop's opener says that it has
/// opened them and does nothing.
bool hasBrowser() {
    if (QStandardPaths::findExecutable(u"xdg-open"_s).isEmpty())
        return false;
    if (qEnvironmentVariableIsSet("BROWSER") || !QStandardPaths::findExecutable(u"x-www-browser"_s).isEmpty())
        return true;
    const QStringList applications = QStandardPaths::standardLocations(QStandardPaths::ApplicationsLocation);
    const QStringList settings = QStandardPaths::standardLocations(QStandardPaths::GenericConfigLocation);
    const auto takesAddresses = [](const QString& folder) {
        return hasValue(folder + u"/mimeinfo.cache"_s, "x-scheme-handler/https=") ||
               hasValue(folder + u"/mimeapps.list"_s, "x-scheme-handler/https=");
    };
    return std::ranges::any_of(applications, takesAddresses) || std::ranges::any_of(settings, takesAddresses);
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
    if (!startLabProgram(application->program, application->arguments))
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

bool LinuxDesktop::startLabProgram(const QString& program, const QStringList& arguments) const {
    // It outlives this program, so it must not hold its terminal or its pipes.
    QProcess launch;
    launch.setProgram(m_lab.program(program));
    launch.setArguments(arguments);
    launch.setStandardInputFile(QProcess::nullDevice());
    launch.setStandardOutputFile(QProcess::nullDevice());
    launch.setStandardErrorFile(QProcess::nullDevice());
    return QFileInfo(launch.program()).isExecutable() && launch.startDetached();
}

bool LinuxDesktop::openURL(const URL& url) {
    const QString scheme = url.scheme().value_or(QString()).toLower();
    if (scheme == u"mailto" || (isForBrowsers(scheme) && hasBrowser()))
        return QDesktopServices::openUrl(QUrl(url.absoluteString(), QUrl::StrictMode));
    if (isForBrowsers(scheme))
        return openInSafari(url.absoluteString());
    const QString page = helpPageName(url);
    // In the lab's own browser, which is there on every desktop.
    return !page.isEmpty() && QFileInfo::exists(m_lab.shared(page)) && openInSafari(m_lab.shared(page));
}

bool LinuxDesktop::openInSafari(const QString& address) const {
    return startLabProgram(u"open"_s, {u"-a"_s, u"Safari"_s, address});
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
