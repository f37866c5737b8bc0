// SPDX-License-Identifier: MIT
#include "layout/WindowAccessor.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace corvanta {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class WindowAccessorTest : public ::testing::Test {
protected:
    [[nodiscard]] WindowCallback recorder() {
        return [this](QWidget* window) { reported.push_back(window); };
    }

    std::vector<QWidget*> reported;
};

TEST_F(WindowAccessorTest, SaysNothingBeforeTheWindowIsShown) {
    QWidget window;
    const WindowAccessor accessor(window, recorder());
    EXPECT_THAT(reported, IsEmpty());
}

TEST_F(WindowAccessorTest, ReportsTheWindowOnceItIsShown) {
    QWidget window;
    const WindowAccessor accessor(window, recorder());
    window.show();
    EXPECT_THAT(reported, ElementsAre(&window));
}

TEST_F(WindowAccessorTest, ReportsTheTopLevelWindowOfANestedHost) {
    QWidget window;
    auto* const host = new QWidget(new QWidget(&window));
    const WindowAccessor accessor(*host, recorder());
    window.show();
    EXPECT_THAT(reported, ElementsAre(&window));
}

TEST_F(WindowAccessorTest, ReportsNothingMoreOfAWindowThatIsClosed) {
    QWidget window;
    const WindowAccessor accessor(window, recorder());
    window.show();
    window.close();
    EXPECT_THAT(reported, ElementsAre(&window, nullptr));
}

TEST_F(WindowAccessorTest, ReportsAWindowThatIsDestroyedWhileShown) {
    auto window = std::make_unique<QWidget>();
    QWidget* const shown = window.get();
    const WindowAccessor accessor(*window, recorder());
    window->show();
    window.reset();
    EXPECT_THAT(reported, ElementsAre(shown, nullptr));
}

TEST_F(WindowAccessorTest, ReportsTheNewWindowAfterAMove) {
    QWidget first;
    QWidget second;
    auto* const host = new QWidget(&first);
    const WindowAccessor accessor(*host, recorder());
    first.show();
    second.show();
    host->setParent(&second);
    host->show();
    EXPECT_THAT(reported, ElementsAre(&first, nullptr, &second));
}

TEST_F(WindowAccessorTest, CallsTheLatestCallbackOnly) {
    QWidget window;
    WindowAccessor accessor(window, [](QWidget*) { ADD_FAILURE() << "the old callback was called"; });
    accessor.update(recorder());
    window.show();
    EXPECT_THAT(reported, ElementsAre(&window));
}

TEST_F(WindowAccessorTest, DoesWithoutACallback) {
    QWidget window;
    const WindowAccessor accessor(window, {});
    window.show();
    window.close();
}

TEST_F(WindowAccessorTest, TakesNoRoomAndNoFocus) {
    QWidget window;
    const WindowAccessor accessor(window, recorder());
    const auto* const view = window.findChild<WindowCaptureView*>();
    ASSERT_NE(view, nullptr);
    EXPECT_TRUE(view->size().isEmpty());
    EXPECT_EQ(view->focusPolicy(), Qt::NoFocus);
}

} // namespace

} // namespace corvanta
