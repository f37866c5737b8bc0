// SPDX-License-Identifier: MIT
#include "FaultyLab.h"

#include "AccessibilityTree.h"
#include "DisplaySize.h"
#include "RunningPrograms.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QSettings>

#include <csignal>
#include <stdexcept>
#include <tuple>
#include <utility>

#include <sys/resource.h>

namespace corvanta::testing {

using namespace Qt::Literals::StringLiterals;

namespace {

const QString safariName = u"com.apple.Safari"_s;
const QStringList developerTools{u"xcrun"_s, u"open"_s, u"xcodebuild"_s};

void require(bool isSo, const QString& what) {
    if (!isSo)
        throw std::runtime_error(what.toStdString());
}

void replaceFile(const QString& path, const QByteArray& text) {
    QFile file(path);
    require(file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(text) == text.size(), path);
}

void makeExecutable(const QString& path, bool isExecutable) {
    auto permissions = QFile::ReadOwner | QFile::WriteOwner;
    if (isExecutable)
        permissions |= QFile::ExeOwner;
    require(QFile::setPermissions(path, permissions), path);
}

QString labHome() {
    return qEnvironmentVariable("XDG_DATA_HOME") + u"/corvanta-lab"_s;
}

QString preferencesFile() {
    return QSettings(QSettings::NativeFormat, QSettings::UserScope, u"Corvanta"_s, u"Corvanta"_s).fileName();
}

void killAndWait(const QString& busName) {
    const int process = sessionProcess(busName);
    if (process == 0)
        return;
    ::kill(process, SIGKILL);
    require(eventually([&] { return sessionProcess(busName) != process; }), busName + u" did not end"_s);
}

QString deviceBusName() {
    const QStringList names = QDBusConnection::sessionBus().interface()->registeredServiceNames();
    for (const QString& name : names) {
        if (name.startsWith(u"dev.corvanta.Lab.Device."_s))
            return name;
    }
    return {};
}

std::optional<Accessible> menuBarOfSafari() {
    const int process = sessionProcess(safariName);
    const auto safari = process == 0 ? std::nullopt : application(process);
    return safari ? safari->find([](const Accessible& object) { return object.role() == u"menu bar"; }, 3)
                  : std::nullopt;
}

int count(const Accessible& menu, const QString& beginning) {
    int result = menu.role().contains(u"menu") && menu.name().startsWith(beginning) ? 1 : 0;
    for (const Accessible& child : menu.children())
        result += count(child, beginning);
    return result;
}

void setAccessibility(bool isEnabled) {
    QProcess::execute(u"dbus-send"_s,
                      {u"--session"_s, u"--print-reply=literal"_s, u"--dest=org.a11y.Bus"_s, u"/org/a11y/bus"_s,
                       u"org.freedesktop.DBus.Properties.Set"_s, u"string:org.a11y.Status"_s, u"string:IsEnabled"_s,
                       u"variant:boolean:"_s + (isEnabled ? u"true"_s : u"false"_s)});
}

/// What the application was told in the instant before may still stand for what is there now: so a program that has
/// just stopped seems to take a press.
void outliveMemories() {
    std::ignore = eventually([] { return false; }, std::chrono::milliseconds(400));
}

/// The launcher takes its bus with it. Whoever asks for one gets a new one, on which nobody is, and which is off.
void takeAccessibilityAway() {
    const QString name = u"org.a11y.Bus"_s;
    setAccessibility(false);
    const int launcher = sessionProcess(name);
    ::kill(launcher, SIGTERM);
    require(eventually([&] { return sessionProcess(name) != launcher; }), u"the accessibility bus stays"_s);
    setAccessibility(false);
    outliveMemories();
}

/// Whether there is an accessibility bus with a registry that answers.
bool isAccessibilityBack() {
    const auto request =
        QDBusMessage::createMethodCall(u"org.a11y.Bus"_s, u"/org/a11y/bus"_s, u"org.a11y.Bus"_s, u"GetAddress"_s);
    const QDBusReply<QString> address = QDBusConnection::sessionBus().call(request);
    // Not over a connection of this process, which stays with the bus that has gone.
    return address.isValid() &&
           QProcess::execute(u"dbus-send"_s, {u"--bus="_s + address.value(), u"--print-reply=literal"_s,
                                              u"--dest=org.a11y.atspi.Registry"_s, u"/org/a11y/atspi/accessible/root"_s,
                                              u"org.a11y.atspi.Accessible.GetRole"_s}) == 0;
}

/// The process of the page that was opened last: its engine has one for each.
int newestPageProcess(int device) {
    int newest = 0;
    const QStringList processes = QDir(u"/proc"_s).entryList(QDir::Dirs);
    unsigned long long newestStart = 0;
    for (const QString& process : processes) {
        QFile file(u"/proc/"_s + process + u"/stat"_s);
        if (!process.at(0).isDigit() || !file.open(QIODevice::ReadOnly))
            continue;
        const QByteArray text = file.readAll();
        const qsizetype end = text.lastIndexOf(')');
        const QByteArrayList fields = text.sliced(end + 2).split(' ');
        constexpr qsizetype parent = 1;
        constexpr qsizetype startTime = 19;
        if (!text.contains("(WebKitWebProces") || fields.value(parent).toInt() != device)
            continue;
        if (const auto start = fields.value(startTime).toULongLong(); start >= newestStart) {
            newestStart = start;
            newest = process.toInt();
        }
    }
    return newest;
}

void waitForPages(int count) {
    require(eventually([&] { return FaultyLab::entriesInMenus(u"127.0.0.1"_s) == count; }),
            u"%1 pages are not what Safari lists"_s.arg(count));
}

/// The device shows the page that was opened last, and the keyboard closes what it shows.
void closeNewestPage(const FaultyLab::Application& application) {
    if (application.pages == 0)
        return;
    waitForPages(application.pages);
    const WindowObserver windows;
    const auto window = windows.window(application.deviceName + u" –"_s);
    require(window.has_value(), u"the device has no window"_s);
    require(eventually([&] {
                windows.activate(window->id);
                return windows.activeWindow() == window->id;
            }),
            u"the device does not come to the front"_s);
    QProcess::execute(u"xdotool"_s, {u"key"_s, u"ctrl+w"_s});
    waitForPages(application.pages - 1);
}

void killNewestPage(const FaultyLab::Application& application) {
    if (application.pages == 0)
        return;
    waitForPages(application.pages);
    const int device = FaultyLab::deviceProcess();
    const int page = newestPageProcess(device);
    require(page != 0, u"the page has no process"_s);
    ::kill(page, SIGKILL);
    const auto hasEnded = [&] {
        const auto simulator = testing::application(device);
        return simulator && simulator->find([](const Accessible& object) {
            return object.name() == u"This page ended unexpectedly.";
        });
    };
    require(eventually(hasEnded), u"the page does not say that it ended"_s);
}

/// All that an application is told about a device is what its name stands for.
void rename(const QString& deviceID, const QString& name) {
    int status = -1;
    runTool(u"xcrun"_s, {u"simctl"_s, u"rename"_s, deviceID, name}, &status);
    require(status == 0, u"the device could not be renamed"_s);
}

void limitFiles(int process, bool isLimited) {
    rlimit limit{};
    ::prlimit(process, RLIMIT_FSIZE, nullptr, &limit);
    limit.rlim_cur = isLimited ? 0 : limit.rlim_max;
    require(::prlimit(process, RLIMIT_FSIZE, &limit, nullptr) == 0, u"prlimit"_s);
}

} // namespace

FaultyLab::FaultyLab() {
    require(m_folder.isValid(), m_folder.errorString());
    const QDir programs(QStringLiteral(CORVANTA_LAB_DIRECTORY));
    require(QDir().mkpath(path(u"lab"_s)) && QDir().mkpath(path(u"hanging"_s)), m_folder.path());
    require(QFile::link(programs.absolutePath(), path(u"real"_s)), programs.path());
    const QStringList names = programs.entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
    for (const QString& name : names) {
        if (!developerTools.contains(name) && name != u"Safari")
            require(QFile::link(programs.absoluteFilePath(name), tool(name)), name);
    }
    putToolsInPlace();
    setBehaviour("works");
    qputenv("CORVANTA_LAB_DIR", path(u"lab"_s).toUtf8());
}

FaultyLab::~FaultyLab() {
    if (m_stopped != 0)
        ::kill(m_stopped, SIGCONT);
    endHangingTools();
}

void FaultyLab::write(const QString& name, const QByteArray& text) const {
    // In one step: somebody may be reading it.
    const QString scratch = path(name + u".new"_s);
    replaceFile(scratch, text);
    require(std::rename(QFile::encodeName(scratch).constData(), QFile::encodeName(path(name)).constData()) == 0, name);
}

void FaultyLab::putToolsInPlace() const {
    QStringList names = developerTools;
    names.append(u"Safari"_s);
    for (const QString& name : names) {
        QFile::remove(tool(name));
        require(QFile::copy(QStringLiteral(CORVANTA_DEVELOPER_TOOL), tool(name)), name);
        makeExecutable(tool(name), true);
    }
}

void FaultyLab::endHangingTools() const {
    const QDir folder(path(u"hanging"_s));
    const QStringList processes = folder.entryList(QDir::Files);
    for (const QString& process : processes) {
        ::kill(process.toInt(), SIGTERM);
        QFile::remove(folder.filePath(process));
    }
}

void FaultyLab::holdTool(const QString& operation) {
    QFile::remove(path(u"held-"_s + operation));
    replaceFile(path(u"hold-"_s + operation), {});
}

bool FaultyLab::isToolHeld(const QString& operation) const {
    return QFileInfo::exists(path(u"held-"_s + operation));
}

void FaultyLab::releaseTool(const QString& operation) {
    QFile::remove(path(u"hold-"_s + operation));
}

void FaultyLab::storeProfile() {
    const QByteArray profile = R"({"pageURL":"http://localhost:3000","coordinate":{"latitude":41.3874,)"
                               R"("longitude":2.1686},"locationName":"Barcelona","columnRatios":{"controls":0.25,)"
                               R"("simulator":0.3,"inspector":0.45},"lastUsedAt":800000000})";
    QSettings(QSettings::NativeFormat, QSettings::UserScope, u"Corvanta"_s, u"Corvanta"_s)
        .setValue(u"workspaceProfile"_s, profile);
}

int FaultyLab::entriesInMenus(const QString& beginning) {
    const auto bar = menuBarOfSafari();
    return bar ? count(*bar, beginning) : 0;
}

int FaultyLab::deviceProcess() {
    const QString name = deviceBusName();
    return name.isEmpty() ? 0 : sessionProcess(name);
}

void FaultyLab::inflict(Fault fault, const Application& application) {
    m_fault = fault;
    switch (fault) {
    case Fault::safariGone:
        killAndWait(safariName);
        return;
    case Fault::safariCannotBeLaunched:
        replaceFile(tool(u"Safari"_s), "#!/nowhere/interpreter\n");
        killAndWait(safariName);
        return;
    case Fault::safariHung:
        m_stopped = sessionProcess(safariName);
        if (m_stopped != 0) {
            ::kill(m_stopped, SIGSTOP);
            outliveMemories();
        }
        return;
    case Fault::deviceNotInMenu:
        // Its menu is told by its name.
        rename(application.deviceID, u"Somebody else's"_s);
        require(eventually([&] { return entriesInMenus(application.deviceName + u" –"_s) == 0; }),
                u"the device stays in the menu"_s);
        return;
    case Fault::noDevelopMenu:
        replaceFile(labHome() + u"/safari.json"_s, "{\"developerFeatures\": false}\n");
        // A menu bar that cannot be read just then would look as if it had no such menu.
        require(eventually([] {
                    const auto menuBar = menuBarOfSafari();
                    return menuBar && count(*menuBar, u"Develop"_s) == 0;
                }),
                u"the Develop menu stays"_s);
        outliveMemories();
        return;
    case Fault::simulatorGone:
        killAndWait(deviceBusName());
        return;
    case Fault::deviceShutDown:
        runTool(u"xcrun"_s, {u"simctl"_s, u"shutdown"_s, u"all"_s});
        require(eventually([] { return deviceProcess() == 0; }), u"the device runs on"_s);
        return;
    case Fault::pageCrashed:
        closeNewestPage(application);
        return;
    case Fault::pageProcessKilled:
        killNewestPage(application);
        return;
    case Fault::toolMissing:
        for (const QString& name : developerTools)
            QFile::remove(tool(name));
        return;
    case Fault::toolNotExecutable:
        for (const QString& name : developerTools)
            makeExecutable(tool(name), false);
        return;
    case Fault::toolFailing:
        setBehaviour("fails");
        return;
    case Fault::toolPrintingGarbage:
        setBehaviour("garbage");
        return;
    case Fault::toolEndedBySignal:
        setBehaviour("killed");
        return;
    case Fault::toolHanging:
        setBehaviour("hangs");
        return;
    case Fault::accessibilityGone:
        takeAccessibilityAway();
        return;
    case Fault::controlWindowClosed:
        WindowObserver().close(application.window);
        return;
    case Fault::preferencesReadOnly:
    case Fault::preferencesOverLimit:
    case Fault::preferencesDamaged:
    case Fault::preferencesNewer:
        breakPreferences(fault, application);
        return;
    case Fault::displayResized:
        setDisplaySize({1280, 800});
        return;
    }
}

void FaultyLab::breakPreferences(Fault fault, const Application& application) {
    const QString file = preferencesFile();
    const QString folder = QFileInfo(file).path();
    QDir().mkpath(folder);
    switch (fault) {
    case Fault::preferencesReadOnly:
        // No modes keep out an administrator, but nobody makes a file in a folder that is none.
        require(QFile::rename(folder, folder + u".aside"_s), folder);
        replaceFile(folder, {});
        return;
    case Fault::preferencesOverLimit:
        if (application.processID != 0)
            limitFiles(application.processID, true);
        return;
    case Fault::preferencesDamaged:
        replaceFile(file, QByteArray("\0\xff[General]\nworkspaceProfile=@ByteArray({\"pageURL\n%[[=\r\n\0", 60));
        return;
    default:
        replaceFile(file, "[General]\nversion=99\nworkspaceProfile=@ByteArray({\\\"schema\\\":99,\\\"pageURL\\\":"
                          "[\\\"http://localhost:3000\\\"],\\\"columnRatios\\\":\\\"wide\\\"})\n"
                          "favoriteLocations=@Variant(\\0\\0\\0\\x7f)\nworkspaceWindow=12\n");
        return;
    }
}

void FaultyLab::lift(const Application& application) {
    const auto fault = std::exchange(m_fault, std::nullopt);
    if (!fault)
        return;
    switch (*fault) {
    case Fault::safariHung:
        if (m_stopped != 0)
            ::kill(std::exchange(m_stopped, 0), SIGCONT);
        return;
    case Fault::deviceNotInMenu:
        rename(application.deviceID, application.deviceName);
        return;
    case Fault::noDevelopMenu:
        replaceFile(labHome() + u"/safari.json"_s, "{\"developerFeatures\": true}\n");
        return;
    case Fault::accessibilityGone:
        setAccessibility(true);
        require(eventually(isAccessibilityBack), u"the accessibility bus does not come back"_s);
        // Who was on the bus that has gone does not come to another one by itself.
        killAndWait(safariName);
        killAndWait(deviceBusName());
        return;
    case Fault::preferencesReadOnly: {
        const QString folder = QFileInfo(preferencesFile()).path();
        require(QFile::remove(folder) && QFile::rename(folder + u".aside"_s, folder), folder);
        return;
    }
    case Fault::preferencesOverLimit:
        limitFiles(application.processID, false);
        return;
    case Fault::displayResized:
        setDisplaySize({1600, 1000});
        return;
    default:
        putToolsInPlace();
        setBehaviour("works");
        endHangingTools();
        return;
    }
}

} // namespace corvanta::testing
