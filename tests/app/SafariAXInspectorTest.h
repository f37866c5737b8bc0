// SPDX-License-Identifier: MIT
#pragma once

#include "FakeAccessibilityTree.h"
#include "FakeDesktop.h"
#include "Printing.h"
#include "SafariTargetPrinting.h"
#include "TaskWaiting.h"
#include "safari/SafariAXInspector.h"
#include "safari/WorkspaceAutomationError.h"
#include "support/CancelledError.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace corvanta {

/// A Safari with a menu bar, a Develop menu, and one device in it.
class SafariAXInspectorTest : public ::testing::Test {
protected:
    using Element = testing::FakeAccessibilityTree::Element;

    SafariAXInspectorTest() {
        tree.setApplication(safariIdentifier, safari);
        safari.set(QStringLiteral("AXMenuBar"), &menuBar).set(QStringLiteral("AXWindows"), Element::Elements{});
        menuBar.append(tree.add(QStringLiteral("Safari"))).append(tree.add(QStringLiteral("File"))).append(develop);
        develop.append(developMenu);
        device.append(deviceMenu);
        developMenu.append(tree.add(QStringLiteral("User Agent"))).append(device);
    }

    ~SafariAXInspectorTest() override {
        while (clock.step()) {
        }
    }

    Element& addPage(const QString& title) {
        auto& page = tree.add(title);
        deviceMenu.append(page);
        return page;
    }

    Element& addInspectorWindow(const QString& name) {
        auto& window = tree.add(name)
                           .description(QStringLiteral("Web Inspector"))
                           .title(QStringLiteral("Web Inspector — ") + name);
        safari.append(window, QStringLiteral("AXWindows"));
        return window;
    }

    /// A page whose press opens an inspector window after a while.
    Element& addPageThatOpens(const QString& title, const QString& windowName, Clock::Duration after) {
        auto& page = addPage(title);
        page.whenPerformed(QStringLiteral("AXPress"), [this, windowName, after] {
            tree.after(after, [this, windowName] { addInspectorWindow(windowName); });
        });
        return page;
    }

    [[nodiscard]] static SafariTarget target(const QString& title, int index) {
        return {QStringLiteral("0.%1|%2").arg(index).arg(title), title, {0, index}};
    }

    [[nodiscard]] testing::WatchedTask<std::vector<SafariTarget>> snapshot(CancellationToken token = {}) {
        return testing::WatchedTask(inspector.snapshotTargets(QStringLiteral("iPhone 16"), token));
    }

    [[nodiscard]] testing::WatchedTask<void> attach(const SafariTarget& target, CancellationToken token = {}) {
        return testing::WatchedTask(inspector.attach(target, QStringLiteral("iPhone 16"), token));
    }

    template<typename Value>
    static std::optional<WorkspaceAutomationError> errorOf(const testing::WatchedTask<Value>& task) {
        try {
            (void)task.result();
        } catch (const WorkspaceAutomationError& error) {
            return error;
        }
        return std::nullopt;
    }

    template<typename Value>
    static bool wasCancelled(const testing::WatchedTask<Value>& task) {
        try {
            (void)task.result();
        } catch (const CancelledError&) {
            return true;
        }
        return false;
    }

    const QString safariIdentifier = QStringLiteral("com.apple.Safari");
    testing::VirtualClock clock;
    testing::CallLog desktopLog{clock};
    testing::FakeAccessibilityTree tree{clock};
    testing::FakeDesktop desktop{clock, desktopLog};
    Element& safari = tree.add(QStringLiteral("Safari application"));
    Element& menuBar = tree.addUntitled(QStringLiteral("menu bar"));
    Element& develop = tree.add(QStringLiteral("Develop"));
    Element& developMenu = tree.addUntitled(QStringLiteral("Develop submenu"));
    Element& device = tree.add(QStringLiteral("iPhone 16"));
    Element& deviceMenu = tree.addUntitled(QStringLiteral("device submenu"));
    SafariAXInspector inspector{tree, desktop, clock};
};

} // namespace corvanta
