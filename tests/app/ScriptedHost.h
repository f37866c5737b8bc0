// SPDX-License-Identifier: MIT
#pragma once

#include "CallLog.h"
#include "FakeAccessibilityTree.h"
#include "FakeControlWindow.h"
#include "FakeDesktop.h"
#include "FaultTable.h"
#include "VirtualClock.h"
#include "simulator/CommandRunning.h"

#include <QStringList>

#include <functional>
#include <list>
#include <memory>
#include <optional>
#include <vector>

namespace corvanta::testing {

/// A host on virtual time: developer tools that answer, a Simulator with a window, and a Safari whose Develop menu
/// lists the booted device and its pages and opens their inspectors. Each of the faults can be put upon it and lifted.
///
/// The device and its pages belong to neither program: they survive the end of both. Inspectors belong to Safari.
class ScriptedHost {
public:
    ScriptedHost();
    ScriptedHost(const ScriptedHost&) = delete;
    ScriptedHost& operator=(const ScriptedHost&) = delete;

    /// Runs the host's tools, each of which takes its time. The host outlives it.
    [[nodiscard]] std::unique_ptr<CommandRunning> makeCommandRunner();

    /// Puts a fault upon the host. One at a time.
    void inflict(Fault fault);
    /// Ends it. What was killed or closed stays gone until somebody launches or opens it again.
    void lift();

    /// Pages that the device opens by itself, at once.
    void openPages(const QStringList& titles);

    /// The page that was opened last, the first of those opened together.
    [[nodiscard]] const QString& latestPage() const { return m_latestPage; }

    const QString deviceName = QStringLiteral("iPhone 16 Pro");
    const QString deviceID = QStringLiteral("5D6F2A7B-0C1E-4B7A-9C55-3A2F0F6E8D11");
    const QString launchErrorText = QStringLiteral("No such file or directory");
    const QString toolMessage = QStringLiteral("The tool is out of order.");
    /// With what a careless reader would cut off.
    const QString garbage = QStringLiteral("\n %$ not what was asked for \n");

    /// The titles of the pages that each address opens.
    QStringList pagesOfAddress{QStringLiteral("Start")};
    /// Called with each command before anything becomes of it.
    std::function<void(const ProcessCommand&)> beforeCommand;

    VirtualClock clock;
    CallLog log{clock};
    FakeAccessibilityTree tree{clock};
    FakeDesktop desktop{clock, log};
    /// Empty while the window is closed.
    std::shared_ptr<FakeControlWindow> controlWindow;

private:
    using Element = FakeAccessibilityTree::Element;
    class Runner;

    struct Page {
        QString title;
        bool isListed = false;
        /// Null while Safari does not run.
        Element* item = nullptr;
        /// Null while the page is not inspected.
        Element* inspector = nullptr;
    };

    /// What stands on the screen of a running Safari.
    struct Safari {
        Element& application;
        Element& menuBar;
        Element& fileItem;
        Element& developItem;
        Element& developMenu;
        Element& userAgentItem;
        Element& deviceItem;
        Element& deviceMenu;
        Element& settingItem;
        std::vector<Element*> windows;
    };

    void launchSafari();
    void killSafari();
    void hangSafari(bool isHung);
    /// Makes the menus show the device and the pages that there are.
    void updateMenu();
    void makeItem(Page& page);
    void openInspector(Page& page);
    void closeInspector(Element& window);
    /// Its inspector closes with it.
    void closePage(Page& page);
    void crashLatestPage();

    void boot();
    void shutDown();

    void launchSimulator();
    void killSimulator();
    void openControlWindow();

    [[nodiscard]] QCoro::Task<ProcessResult> run(ProcessCommand command);
    [[nodiscard]] ProcessResult answer(const ProcessCommand& command);
    [[nodiscard]] ProcessResult answerSimctl(const QStringList& arguments);
    [[nodiscard]] QByteArray deviceList() const;

    std::optional<Fault> m_fault;
    std::optional<Safari> m_safari;
    Element* m_simulator = nullptr;
    Element* m_simulatorWindow = nullptr;
    bool m_isBooted = false;
    std::list<Page> m_pages;
    QString m_latestPage;
};

} // namespace corvanta::testing
