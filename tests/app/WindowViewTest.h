// SPDX-License-Identifier: MIT
#pragma once

#include "TaskWaiting.h"
#include "WindowSectionTest.h"
#include "window/Appearance.h"
#include "window/WorkspaceView.h"

#include <QAccessible>
#include <QApplication>
#include <QCoreApplication>

#include <memory>

namespace corvanta {

/// The whole control window, with the look that it has in the program.
class WindowViewTest : public WindowSectionTest {
protected:
    static void SetUpTestSuite() {
        static const bool isApplied = [] {
            applyAppearance(*qApp);
            return true;
        }();
        Q_UNUSED(isApplied)
    }

    void showView(QSize size = {430, 860}) {
        m_view = std::make_unique<WorkspaceView>(context(), [](QWidget*) {});
        m_view->resize(size);
        map = nullptr;
        m_view->show();
        QApplication::setActiveWindow(m_view.get());
        settle();
        // It comes a moment after the rest.
        EXPECT_TRUE(testing::waitUntil([this] { return map != nullptr; }));
    }

    void resizeView(QSize size) {
        m_view->resize(size);
        settle();
    }

    [[nodiscard]] WorkspaceView& view() const { return *m_view; }

    /// Starts, so that two pages are there to choose from.
    void askForPage(const QString& first = QStringLiteral("One"), const QString& second = QStringLiteral("Two")) {
        safari.willList({});
        safari.listed = {page(first, 0), page(second, 1)};
        const auto task = start();
        clock.advance(std::chrono::milliseconds(300));
        ASSERT_EQ(coordinator->candidateTargets().size(), 2U);
        settle();
    }

    /// Whether the keyboard stops at it.
    [[nodiscard]] static bool isTabStop(const QWidget& widget) { return (widget.focusPolicy() & Qt::TabFocus) != 0; }

    /// What a control is called. Qt 6 gives a picker and tabs the name of what is current in them.
    [[nodiscard]] static QString nameOf(QWidget& widget) {
        return widget.accessibleName().isEmpty()
                   ? QAccessible::queryAccessibleInterface(&widget)->text(QAccessible::Name)
                   : widget.accessibleName();
    }

    /// Lets what was posted to the widgets reach them.
    static void settle() {
        for (int round = 0; round < 3; ++round) {
            QCoreApplication::sendPostedEvents();
            QCoreApplication::processEvents();
        }
    }

private:
    std::unique_ptr<WorkspaceView> m_view;
};

} // namespace corvanta
