// SPDX-License-Identifier: MIT
#pragma once

#include "AccessibilityTree.h"
#include "RunningPrograms.h"
#include "WindowObserver.h"

#include "layout/WorkspaceLayout.h"

#include <QRect>
#include <QString>
#include <QStringList>

#include <gtest/gtest.h>

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace corvanta::testing {

/// Longer than a start takes on a busy machine.
constexpr std::chrono::seconds startLimit{60};

/// The frame of a column on screen, origin at the top-left.
[[nodiscard]] QRect onScreen(const Rect& column, const QRect& workArea);

/// Columns of the work area with the default ratios; the screen's bottom-left corner stands in for the origin.
[[nodiscard]] WorkspaceFrames expectedColumns(const QRect& workArea);

[[nodiscard]] ::testing::AssertionResult isWithinTwoPixels(const QRect& actual, const QRect& expected);

/// Corvanta on a device lab of its own, with the sample pages, observed from outside.
class WorkspaceEndToEnd : public ::testing::Test {
protected:
    void SetUp() override;

    /// Starts the program and waits until it can start a workspace.
    void launch(const QStringList& arguments);
    void launchOnSample(const QStringList& more = {});

    void startAndWait();
    void waitUntilRunning();

    /// Opens two more pages on the sample page that the device shows, such that the program, which looks again and
    /// again, finds both of them new at one look.
    void openTwoPagesAtOnce();

    [[nodiscard]] std::string shownTexts() const;

    [[nodiscard]] ::testing::AssertionResult hasFrame(const QString& titleBeginning, const QRect& expected) const;
    [[nodiscard]] std::optional<QRect> frameOf(const QString& titleBeginning) const;

    [[nodiscard]] std::vector<ObservedWindow> inspectorWindows() const;

    /// Whether some object of the inspector's own tree shows the text.
    [[nodiscard]] static bool inspectorShows(const QString& text);

    SampleSite m_site;
    WindowObserver m_windows;
    DrivenCorvanta m_corvanta;
};

} // namespace corvanta::testing
