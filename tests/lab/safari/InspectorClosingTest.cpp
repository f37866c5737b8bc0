// SPDX-License-Identifier: MIT
#include "SafariDesktop.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>

namespace corvanta::lab::testing {

namespace {

using Titles = std::vector<std::string>;

const std::string deviceTitle = "iPhone 16 Pro – iOS 18.2";
const std::string closedTitle = "Web Inspector — apple.test";
const std::string otherTitle = "Web Inspector — shop.test";

/// One round of each way; CORVANTA_ROUNDS names another number of rounds for a long run by hand.
int roundsToGo() {
    const char* const text = std::getenv("CORVANTA_ROUNDS");
    return text ? std::atoi(text) : 3;
}

} // namespace

/// With two pages open, and the inspector of the second one, which stays.
class SafariInspectorClosing : public SafariDesktop {
public:
    using Way = bool (SafariInspectorClosing::*)() const;

    [[nodiscard]] std::optional<Accessible> closeButton() const { return inFrame(closedTitle, "Close", 6); }

    /// As a person does it, with the mouse.
    [[nodiscard]] bool byItsButton() const {
        const auto button = closeButton();
        const auto place = button ? button->screenCentre() : std::nullopt;
        if (!place)
            return false;
        const std::string command =
            "xdotool mousemove " + std::to_string(place->x) + ' ' + std::to_string(place->y) + " click 1";
        return std::system(command.c_str()) == 0; // NOLINT(*-env33-c): numbers only
    }

    [[nodiscard]] bool byTheWindowManager() const {
        const auto windows = m_windows.titled(closedTitle);
        if (!windows.empty())
            m_windows.close(windows.front());
        return !windows.empty();
    }

    [[nodiscard]] bool byTheAccessibilityBus() const {
        const auto button = closeButton();
        return button && button->doAction();
    }

protected:
    void SetUp() override {
        SafariDesktop::SetUp();
        device().open("page://apple.test/");
        device().open("page://shop.test/");
        startSafari();
        ASSERT_TRUE(eventually([this] { return pages() == Titles{"apple.test", "shop.test"}; }));
        ASSERT_TRUE(press({"Develop", deviceTitle, "shop.test"}));
        ASSERT_TRUE(eventually([this] { return m_windows.titled(otherTitle).size() == 1; }));
    }

    /// Opens the first page's inspector and closes it again in one of the ways.
    void closeOnce(Way way, bool waitsForContents) {
        ASSERT_TRUE(press({"Develop", deviceTitle, "apple.test"}));
        ASSERT_TRUE(eventually([this] { return m_windows.titled(closedTitle).size() == 1; }));
        const auto window = m_windows.titled(closedTitle).front();
        ASSERT_TRUE(eventually([&] { return m_windows.active() == window; }));
        if (waitsForContents)
            ASSERT_TRUE(eventually([this] { return frameHolds(closedTitle, "Elements", 7); }));
        // The mouse may miss a window that is just being placed.
        ASSERT_TRUE(eventually([&] {
            return inspectorTitles() == Titles{otherTitle} ||
                   ((this->*way)() &&
                    eventually([this] { return inspectorTitles() == Titles{otherTitle}; }, std::chrono::seconds(2)));
        })) << ::testing::PrintToString(inspectorTitles());
    }
};

TEST_F(SafariInspectorClosing, LeavesBrowserDeviceAndTheOtherInspectorsRunning) {
    const auto otherProcess = m_windows.process(m_windows.titled(otherTitle).front());
    ASSERT_TRUE(otherProcess);
    constexpr Way ways[] = {&SafariInspectorClosing::byItsButton, &SafariInspectorClosing::byTheWindowManager,
                            &SafariInspectorClosing::byTheAccessibilityBus};
    const int rounds = roundsToGo();
    int closed = 0;
    for (; closed < rounds; ++closed) {
        // Every fourth one is closed in the midst of loading.
        closeOnce(ways[closed % 3], closed % 4 != 0);
        if (HasFatalFailure())
            break;
        ASSERT_TRUE(m_safari->isRunning());
        ASSERT_TRUE(device().program().isRunning());
        ASSERT_EQ(pages(), (Titles{"apple.test", "shop.test"}));
        ASSERT_EQ(m_windows.process(m_windows.titled(otherTitle).front()), otherProcess);
    }
    EXPECT_TRUE(frameHolds(otherTitle, "Elements", 7)) << "the other inspector still has its contents";
    std::printf("closed %d of %d inspectors, in turn by their button, the window manager and the accessibility bus\n",
                closed, rounds);
}

TEST_F(SafariInspectorClosing, DoesNotComeOfThePagesNavigation) {
    const auto window = m_windows.titled(otherTitle).front();
    ASSERT_TRUE(eventually([this] { return frameHolds(otherTitle, "Elements", 7); }));

    for (const char* const host : {"news.test", "other.test", "news.test"}) {
        device().navigate(2, std::string("page://") + host + "/");
        ASSERT_TRUE(eventually([&] { return inspectorTitles() == Titles{std::string("Web Inspector — ") + host}; }))
            << ::testing::PrintToString(inspectorTitles());
    }

    EXPECT_EQ(m_windows.titled("Web Inspector"), std::vector{window}) << "it is the same window";
    EXPECT_TRUE(frameHolds("Web Inspector — news.test", "Elements", 7));
}

} // namespace corvanta::lab::testing
