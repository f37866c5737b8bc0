// SPDX-License-Identifier: MIT
//
// Prints for how long placing a window holds the main thread: position and size, as the arranger sets them.
#include "AtspiAccessibilityClient.h"

#include "FixtureProcess.h"
#include "WindowManagerProcess.h"

#include <QElapsedTimer>

#include <gtest/gtest.h>

#include <csignal>
#include <cstdio>

namespace corvanta {
namespace {

using namespace Qt::Literals::StringLiterals;
using namespace corvanta::testing;

const QString fixtureName = u"dev.corvanta.TimedPlacement"_s;

class PlacementTime : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(waitUntil([this] { return client.requestTrust(); }));
    }

    std::optional<AccessibilityElement> windowTitled(const QString& title) {
        std::optional<AccessibilityElement> found;
        (void)waitUntil([&] {
            for (const AccessibilityElement& window : windowsOf(client, fixtureName)) {
                if (titleOf(client, window) == title && client.attribute(window, u"AXSize"))
                    found = window;
            }
            return found.has_value();
        });
        return found;
    }

    /// Sets both attributes in one turn of the event loop and prints what each of them took.
    void print(const char* what, const AccessibilityElement& window, Point position, Size size) {
        (void)client.attribute(window, u"AXTitle");
        QElapsedTimer timer;
        timer.start();
        const bool moved = client.setAttribute(window, u"AXPosition", position);
        const double positionTime = static_cast<double>(timer.nsecsElapsed()) / 1e6;
        timer.restart();
        const bool resized = client.setAttribute(window, u"AXSize", size);
        const double sizeTime = static_cast<double>(timer.nsecsElapsed()) / 1e6;
        std::printf("%s: position %.1f ms (%s), size %.1f ms (%s)\n", what, positionTime, moved ? "true" : "false",
                    sizeTime, resized ? "true" : "false");
        pauseAsTheDriver();
    }

    X11Windows windows;
    AtspiAccessibilityClient client{windows, [] { return Point(); }};
    FixtureProcess fixture{fixtureName};
};

TEST_F(PlacementTime, IsPrintedForEachKindOfWindow) {
    const auto window = windowTitled(u"Fixture Window"_s);
    ASSERT_TRUE(window);
    print("decorated window", *window, {200, 100}, {640, 480});
    print("decorated window, already there", *window, {200, 100}, {640, 480});
    ASSERT_TRUE(fixture.command(u"maximize"_s));
    ASSERT_TRUE(waitUntil([&] { return std::get<Size>(*client.attribute(*window, u"AXSize")).width > 1500; }));
    print("maximised window", *window, {120, 80}, {640, 480});
    ASSERT_TRUE(fixture.command(u"minimum 500"_s));
    pauseAsTheDriver();
    print("window that refuses its size", *window, {150, 90}, {300, 300});
    print("and again", *window, {150, 90}, {300, 300});
    fixture.sendSignal(SIGSTOP);
    print("window of a stopped program", *window, {220, 110}, {650, 550});
    fixture.sendSignal(SIGCONT);
    ASSERT_TRUE(fixture.command(u"headerbar Own Frame"_s));
    const auto ownFrame = windowTitled(u"Own Frame"_s);
    ASSERT_TRUE(ownFrame);
    print("window with its own frame", *ownFrame, {300, 150}, {700, 500});
    fixture.sendSignal(SIGSTOP);
    print("and of a stopped program", *ownFrame, {320, 170}, {600, 450});
    fixture.sendSignal(SIGCONT);
    {
        const StoppedWindowManager stopped;
        print("window while the window manager hangs", *window, {250, 140}, {700, 600});
    }
    pauseAsTheDriver();
}

} // namespace
} // namespace corvanta
