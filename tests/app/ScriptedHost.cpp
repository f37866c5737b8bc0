// SPDX-License-Identifier: MIT
#include "ScriptedHost.h"

#include "FakeError.h"
#include "simulator/ProcessLaunchError.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <iterator>
#include <utility>

namespace corvanta::testing {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto safariIdentifier = "com.apple.Safari"_L1;
constexpr auto simulatorIdentifier = "com.apple.iphonesimulator"_L1;
constexpr auto safariPath = "/Applications/Safari.app"_L1;
constexpr auto launchTime = 500ms;
/// Shorter than the pause that is made for it after a launch.
constexpr auto menuBarTime = 200ms;
constexpr auto pageLoadTime = 600ms;
constexpr auto inspectorTime = 450ms;
/// How often a tool that hangs looks whether somebody has ended it.
constexpr auto hangLook = 1s;
constexpr int wrongState = 149;

Clock::Duration durationOf(const ProcessCommand& command) {
    const QString operation = command.arguments.value(1);
    return operation == u"boot" || operation == u"bootstatus" ? 1500ms : 80ms;
}

} // namespace

class ScriptedHost::Runner final : public CommandRunning {
public:
    explicit Runner(ScriptedHost& host)
        : m_host(host) {}

    [[nodiscard]] QCoro::Task<ProcessResult> run(ProcessCommand command) override { return m_host.run(command); }

private:
    ScriptedHost& m_host;
};

ScriptedHost::ScriptedHost() {
    desktop.allScreens = {{{0, 0, 1440, 925}, {0, 25, 1440, 875}}};
    desktop.focusedScreen = desktop.allScreens.front();
    desktop.paths.insert(safariIdentifier, safariPath);
    desktop.script.delay(DesktopOperation::openApplication, launchTime);
    desktop.whenOpened = [this](const QString& path) {
        if (path == safariPath)
            launchSafari();
    };
    desktop.running.insert(safariIdentifier);
    launchSafari();
    openControlWindow();
}

std::unique_ptr<CommandRunning> ScriptedHost::makeCommandRunner() {
    return std::make_unique<Runner>(*this);
}

void ScriptedHost::inflict(Fault fault) {
    m_fault = fault;
    switch (fault) {
    case Fault::safariGone:
        killSafari();
        break;
    case Fault::safariCannotBeLaunched:
        killSafari();
        desktop.script.fail(DesktopOperation::openApplication, FakeError(launchErrorText));
        break;
    case Fault::safariHung:
        hangSafari(true);
        break;
    case Fault::deviceNotInMenu:
    case Fault::noDevelopMenu:
        updateMenu();
        break;
    case Fault::simulatorGone:
        killSimulator();
        break;
    case Fault::deviceShutDown:
        shutDown();
        break;
    case Fault::pageCrashed:
        crashLatestPage();
        break;
    case Fault::pageProcessKilled:
        // The page stays where it was.
        break;
    case Fault::displayResized:
        desktop.allScreens = {{{0, 0, 1024, 740}, {0, 25, 1024, 690}}};
        desktop.focusedScreen = desktop.allScreens.front();
        if (controlWindow)
            controlWindow->shownOn = desktop.focusedScreen;
        break;
    case Fault::toolMissing:
    case Fault::toolNotExecutable:
    case Fault::toolFailing:
    case Fault::toolPrintingGarbage:
    case Fault::toolEndedBySignal:
    case Fault::toolHanging:
        // The tools look for themselves.
        break;
    case Fault::preferencesReadOnly:
    case Fault::preferencesOverLimit:
    case Fault::preferencesDamaged:
    case Fault::preferencesNewer:
        // The preferences are not the host's.
        break;
    case Fault::accessibilityGone:
        tree.trusted = false;
        tree.answers = false;
        break;
    case Fault::controlWindowClosed:
        controlWindow.reset();
        break;
    }
}

void ScriptedHost::lift() {
    const auto lifted = std::exchange(m_fault, std::nullopt);
    desktop.script.succeed(DesktopOperation::openApplication);
    tree.trusted = true;
    tree.answers = true;
    if (lifted == Fault::safariHung)
        hangSafari(false);
    if (!controlWindow)
        openControlWindow();
    updateMenu();
}

void ScriptedHost::openControlWindow() {
    controlWindow = std::make_shared<FakeControlWindow>();
    controlWindow->shownOn = desktop.focusedScreen;
}

void ScriptedHost::launchSafari() {
    m_safari.emplace(Safari{
        .application = tree.add(u"Safari"_s),
        .menuBar = tree.addUntitled(u"menu bar"_s),
        .fileItem = tree.add(u"File"_s),
        .developItem = tree.add(u"Develop"_s),
        .developMenu = tree.addUntitled(u"Develop submenu"_s),
        .userAgentItem = tree.add(u"User Agent"_s),
        .deviceItem = tree.add(deviceName + u" – iOS 18.2"_s),
        .deviceMenu = tree.addUntitled(u"device submenu"_s),
        .settingItem = tree.add(u"Automatically Show Web Inspector for JSContexts"_s),
        .windows = {},
    });
    m_safari->application.set(u"AXWindows"_s, Element::Elements{});
    m_safari->developItem.append(m_safari->developMenu);
    m_safari->deviceItem.append(m_safari->deviceMenu);
    for (Page& page : m_pages)
        makeItem(page);
    updateMenu();
    tree.setApplication(safariIdentifier, m_safari->application);
    tree.after(menuBarTime, [&launched = m_safari->application, &menuBar = m_safari->menuBar] {
        launched.set(u"AXMenuBar"_s, &menuBar);
    });
}

void ScriptedHost::killSafari() {
    if (!m_safari)
        return;
    tree.quitApplication(safariIdentifier);
    desktop.running.remove(safariIdentifier);
    for (Element* const window : m_safari->windows)
        tree.remove(*window);
    for (Element* const element : {&m_safari->application, &m_safari->menuBar, &m_safari->developItem,
                                   &m_safari->developMenu, &m_safari->deviceItem, &m_safari->deviceMenu})
        tree.remove(*element);
    for (Page& page : m_pages) {
        tree.remove(*std::exchange(page.item, nullptr));
        page.inspector = nullptr;
    }
    m_safari.reset();
}

void ScriptedHost::hangSafari(bool isHung) {
    // Nothing else of it can be reached but through these.
    m_safari->application.hang(isHung);
    m_safari->menuBar.hang(isHung);
    m_safari->developItem.hang(isHung);
    m_safari->developMenu.hang(isHung);
    m_safari->deviceItem.hang(isHung);
    m_safari->deviceMenu.hang(isHung);
    for (Element* const window : m_safari->windows)
        window->hang(isHung);
    for (Page& page : m_pages)
        page.item->hang(isHung);
}

void ScriptedHost::updateMenu() {
    if (!m_safari)
        return;
    Element::Elements bar{&m_safari->fileItem};
    if (m_fault != Fault::noDevelopMenu)
        bar.push_back(&m_safari->developItem);
    Element::Elements entries{&m_safari->userAgentItem};
    if (m_isBooted && m_fault != Fault::deviceNotInMenu)
        entries.push_back(&m_safari->deviceItem);
    Element::Elements pages{&m_safari->settingItem};
    for (Page& page : m_pages) {
        if (page.isListed)
            pages.push_back(page.item);
    }
    m_safari->menuBar.set(u"AXChildren"_s, bar);
    m_safari->developMenu.set(u"AXChildren"_s, entries);
    m_safari->deviceMenu.set(u"AXChildren"_s, pages);
}

void ScriptedHost::makeItem(Page& page) {
    page.item = &tree.add(page.title);
    page.item->whenPerformed(u"AXPress"_s, [this, &page] { openInspector(page); });
}

void ScriptedHost::openInspector(Page& page) {
    // A page has one inspector; pressing it again brings that one forward.
    if (page.inspector != nullptr)
        return;
    auto& window = tree.add(u"Web Inspector — "_s + page.title).place({700, 100, 600, 500});
    auto& closeButton = tree.addUntitled(u"close button"_s);
    window.set(u"AXCloseButton"_s, &closeButton);
    closeButton.whenPerformed(u"AXPress"_s, [this, &window] { closeInspector(window); });
    page.inspector = &window;
    m_safari->windows.push_back(&window);
    tree.after(inspectorTime, [this, &window, &opener = m_safari->application] {
        if (m_safari && std::ranges::count(m_safari->windows, &window) > 0)
            opener.append(window, u"AXWindows"_s);
    });
}

void ScriptedHost::closeInspector(Element& window) {
    tree.remove(window);
    std::erase(m_safari->windows, &window);
    for (Page& page : m_pages) {
        if (page.inspector == &window)
            page.inspector = nullptr;
    }
}

void ScriptedHost::openPages(const QStringList& titles) {
    m_latestPage = titles.front();
    for (const QString& title : titles) {
        Page& page = m_pages.emplace_back();
        page.title = title;
        if (m_safari)
            makeItem(page);
    }
    tree.after(pageLoadTime, [this] {
        for (Page& page : m_pages)
            page.isListed = true;
        updateMenu();
    });
}

void ScriptedHost::closePage(Page& page) {
    if (page.inspector != nullptr)
        closeInspector(*page.inspector);
    if (page.item != nullptr)
        tree.remove(*page.item);
}

void ScriptedHost::crashLatestPage() {
    // Of several with one title, the one that was opened last.
    const auto latest =
        std::find_if(m_pages.rbegin(), m_pages.rend(), [this](const Page& page) { return page.title == m_latestPage; });
    if (latest == m_pages.rend())
        return;
    closePage(*latest);
    m_pages.erase(std::next(latest).base());
    updateMenu();
}

void ScriptedHost::boot() {
    m_isBooted = true;
    updateMenu();
}

void ScriptedHost::shutDown() {
    killSimulator();
    for (Page& page : m_pages)
        closePage(page);
    m_pages.clear();
    m_isBooted = false;
    updateMenu();
}

void ScriptedHost::launchSimulator() {
    if (m_simulator != nullptr)
        return;
    m_simulator = &tree.add(u"Simulator"_s);
    m_simulatorWindow = &tree.add(deviceName + u" – iOS 18.2"_s).place({300, 50, 400, 800});
    m_simulator->append(*m_simulatorWindow, u"AXWindows"_s);
    tree.setApplication(simulatorIdentifier, *m_simulator);
}

void ScriptedHost::killSimulator() {
    if (m_simulator == nullptr)
        return;
    tree.quitApplication(simulatorIdentifier);
    tree.remove(*std::exchange(m_simulatorWindow, nullptr));
    tree.remove(*std::exchange(m_simulator, nullptr));
}

QCoro::Task<ProcessResult> ScriptedHost::run(ProcessCommand command) {
    if (beforeCommand)
        beforeCommand(command);
    const auto fault = m_fault;
    if (fault == Fault::toolMissing || fault == Fault::toolNotExecutable)
        throw ProcessLaunchError(command.executablePath, launchErrorText);
    co_await clock.sleepFor(durationOf(command));
    if (fault == Fault::toolFailing)
        co_return ProcessResult{1, {}, "\n  " + toolMessage.toUtf8() + "\n"};
    if (fault == Fault::toolEndedBySignal)
        co_return ProcessResult{SIGKILL, {}, {}};
    if (fault == Fault::toolHanging) {
        while (m_fault == Fault::toolHanging)
            co_await clock.sleepFor(hangLook);
        co_return ProcessResult{SIGTERM, {}, {}};
    }
    ProcessResult result = answer(command);
    if (fault == Fault::toolPrintingGarbage)
        result.standardOutput = garbage.toUtf8();
    co_return result;
}

ProcessResult ScriptedHost::answer(const ProcessCommand& command) {
    const QStringList& arguments = command.arguments;
    if (command.executablePath == u"/usr/bin/xcodebuild" && arguments == QStringList{u"-version"_s})
        return {0, "Xcode 16.2\nBuild version 16C5032a\n", {}};
    if (command.executablePath == u"/usr/bin/open" && arguments.value(1) == u"Simulator") {
        launchSimulator();
        boot();
        return {};
    }
    if (command.executablePath == u"/usr/bin/xcrun" && arguments == QStringList{u"--find"_s, u"simctl"_s})
        return {0, "/usr/bin/simctl\n", {}};
    if (command.executablePath == u"/usr/bin/xcrun" && arguments.value(0) == u"simctl")
        return answerSimctl(arguments.mid(1));
    ADD_FAILURE() << "unexpected command: " << command.displayString().toStdString();
    return {1, {}, {}};
}

ProcessResult ScriptedHost::answerSimctl(const QStringList& arguments) {
    const QString operation = arguments.value(0);
    if (operation == u"list" && arguments.value(2) == u"runtimes")
        return {0, R"({"runtimes":[{"identifier":"com.apple.CoreSimulator.SimRuntime.iOS-18-2"}]})", {}};
    if (operation == u"list")
        return {0, deviceList(), {}};
    EXPECT_EQ(arguments.value(1).toStdString(), deviceID.toStdString());
    if (operation == u"boot" && m_isBooted)
        return {wrongState, {}, "Unable to boot device in current state: Booted\n"};
    if (operation == u"boot" || operation == u"bootstatus")
        boot();
    else if (!m_isBooted)
        return {wrongState, {}, toolMessage.toUtf8()};
    else if (operation == u"openurl")
        openPages(pagesOfAddress);
    else if (operation != u"location")
        ADD_FAILURE() << "unexpected operation: " << operation.toStdString();
    return {};
}

QByteArray ScriptedHost::deviceList() const {
    return uR"({"devices":{"com.apple.CoreSimulator.SimRuntime.iOS-18-2":[{"udid":"%1","name":"%2","state":"%3"}]}})"_s
        .arg(deviceID, deviceName, m_isBooted ? u"Booted"_s : u"Shutdown"_s)
        .toUtf8();
}

} // namespace corvanta::testing
