// SPDX-License-Identifier: MIT
#include "MacDesktop.h"

#include "MacControlWindow.h"
#include "MacLayerTest.h"
#include "MacPreferencesStore.h"
#include "NativeDesktop.h"
#include "NativeError.h"
#include "SingleInstance.h"
#include "safari/AXSupport.h"

#include <QGuiApplication>
#include <QWidget>

#include <thread>

namespace corvanta {
namespace {

using namespace Qt::Literals::StringLiterals;
using namespace corvanta::testing;

class MacDesktopTest : public MacLayerTest {
protected:
    MacDesktop desktop;
};

TEST_F(MacDesktopTest, KnowsWhatRunsAndWhatIsInstalled) {
    world().running = {{"com.apple.Safari", 42}};
    world().installed = {{"com.apple.dt.Xcode", "/Applications/Xcode.app"}};
    EXPECT_TRUE(desktop.isRunning(u"com.apple.Safari"_s));
    EXPECT_FALSE(desktop.isRunning(u"com.apple.dt.Xcode"_s));
    EXPECT_EQ(desktop.applicationPath(u"com.apple.dt.Xcode"_s), u"/Applications/Xcode.app");
    EXPECT_FALSE(desktop.applicationPath(u"com.apple.Safari"_s));
}

TEST_F(MacDesktopTest, BringsARunningApplicationForwardWithAllItsWindows) {
    world().running = {{"com.apple.Safari", 42}};
    desktop.activate(u"com.apple.Safari"_s);
    desktop.activate(u"com.example.None"_s);
    EXPECT_EQ(world().activated, std::vector<std::string>{"com.apple.Safari"});
    desktop.activateSelf();
    EXPECT_EQ(world().selfActivations, 1);
}

TEST_F(MacDesktopTest, ReturnsOnceTheApplicationRuns) {
    const WatchedTask<void> task(desktop.openApplication(u"/Applications/Safari.app"_s));
    ASSERT_EQ(world().openedApplications.size(), 1U);
    EXPECT_EQ(world().openedApplications.front().address, "file:///Applications/Safari.app");
    EXPECT_FALSE(task.isDone());
    // AppKit answers on a thread of its own.
    std::thread([] { world().openedApplications.front().done(nil, nil); }).join();
    EXPECT_FALSE(task.isDone());
    EXPECT_TRUE(waitUntil([&] { return task.isDone(); }));
    EXPECT_NO_THROW(task.result());
}

TEST_F(MacDesktopTest, AnswersOnTheMainThread) {
    std::thread::id answered;
    NativeDesktop::openApplication(u"/Applications/Safari.app"_s,
                                   [&](const NativeDesktop::Failure&) { answered = std::this_thread::get_id(); });
    std::thread([] { world().openedApplications.front().done(nil, nil); }).join();
    EXPECT_EQ(answered, std::thread::id());
    EXPECT_TRUE(waitUntil([&] { return answered != std::thread::id(); }));
    EXPECT_EQ(answered, std::this_thread::get_id());
}

TEST_F(MacDesktopTest, FailsWithTheSystemsOwnText) {
    const WatchedTask<void> task(desktop.openApplication(u"/Applications/Safari.app"_s));
    NSError* const error = makeError(u"The application “Safari” is damaged."_s);
    std::thread([error] { world().openedApplications.front().done(nil, error); }).join();
    ASSERT_TRUE(waitUntil([&] { return task.isDone(); }));
    try {
        task.result();
        FAIL() << "it did not throw";
    } catch (const NativeError& thrown) {
        EXPECT_EQ(thrown.errorDescription(), u"The application “Safari” is damaged.");
        EXPECT_FALSE(thrown.recoverySuggestion());
    }
}

TEST_F(MacDesktopTest, EndsALaunchThatNobodyAnswers) {
    const WatchedTask<void> task(desktop.openApplication(u"/Applications/Safari.app"_s));
    world().openedApplications.clear();
    EXPECT_TRUE(waitUntil([&] { return task.isDone(); }));
}

TEST_F(MacDesktopTest, OpensAddresses) {
    const URL pane =
        URL::parse(u"x-apple.systempreferences:com.apple.preference.security?Privacy_Accessibility").value();
    EXPECT_TRUE(desktop.openURL(pane));
    EXPECT_EQ(world().openedAddresses,
              std::vector<std::string>{"x-apple.systempreferences:com.apple.preference.security?"
                                       "Privacy_Accessibility"});
    world().takesAddresses = false;
    EXPECT_FALSE(desktop.openURL(pane));
    EXPECT_FALSE(desktop.openURL(URL()));
    EXPECT_EQ(world().openedAddresses.size(), 2U);
}

TEST_F(MacDesktopTest, TellsTheScreensInAppKitsOwnCoordinates) {
    EXPECT_TRUE(desktop.screens().empty());
    EXPECT_FALSE(desktop.mainScreen());
    world().screens = {{NSMakeRect(0, 0, 1600, 1000), NSMakeRect(0, 80, 1600, 895)},
                       {NSMakeRect(1600, 200, 1920, 1080), NSMakeRect(1600, 200, 1920, 1055)}};
    const std::vector<Screen> screens = desktop.screens();
    ASSERT_EQ(screens.size(), 2U);
    EXPECT_EQ(screens[0], (Screen{{0, 0, 1600, 1000}, {0, 80, 1600, 895}}));
    EXPECT_EQ(screens[1], (Screen{{1600, 200, 1920, 1080}, {1600, 200, 1920, 1055}}));
    EXPECT_EQ(desktop.mainScreen(), screens[1]);
    EXPECT_EQ(AXSupport::flipHeight(screens), 1000);
}

TEST_F(MacDesktopTest, KnowsTheSystemsVersion) {
    EXPECT_EQ(desktop.operatingSystemVersion(), (OperatingSystemVersion{15, 4}));
}

TEST_F(MacDesktopTest, PlacesTheControlWindowWithItsDecorationsAnimated) {
    QWidget widget;
    NSWindow* const window = [[NSWindow alloc] init];
    DoubleView* const view = [[DoubleView alloc] initWithFrame:NSMakeRect(0, 0, 430, 860)];
    [view setWindow:window];
    [window place:NSMakeRect(10, 20, 430, 888)];
    setNativeView(widget, view);
    const auto control = makeMacControlWindow(widget);
    EXPECT_EQ(control->frame(), (Rect{10, 20, 430, 888}));
    EXPECT_FALSE(control->screen());
    control->setFrame({0, 80, 398, 895});
    EXPECT_EQ(control->frame(), (Rect{0, 80, 398, 895}));
    EXPECT_EQ([window lastFlags], "display animate");
    world().screens = {{NSMakeRect(0, 0, 1600, 1000), NSMakeRect(0, 80, 1600, 895)}};
    [window setScreen:NSScreen.mainScreen];
    EXPECT_EQ(control->screen(), (Screen{{0, 0, 1600, 1000}, {0, 80, 1600, 895}}));
    setNativeView(widget, nil);
}

TEST_F(MacDesktopTest, OpensAgainWhenItIsActivatedWithoutAWindow) {
    const auto instance = makeSingleInstance();
    EXPECT_EQ(instance->claim({u"Corvanta"_s}), SingleInstance::Standing::alone);
    int openings = 0;
    instance->setOpenedHandler([&](const QStringList& arguments) { openings += arguments.size() == 1 ? 1 : 100; });
    Q_EMIT qGuiApp->applicationStateChanged(Qt::ApplicationInactive);
    EXPECT_EQ(openings, 0);
    Q_EMIT qGuiApp->applicationStateChanged(Qt::ApplicationActive);
    EXPECT_EQ(openings, 1);
    QWidget window;
    window.show();
    Q_EMIT qGuiApp->applicationStateChanged(Qt::ApplicationActive);
    EXPECT_EQ(openings, 1);
    window.hide();
    instance->release();
    Q_EMIT qGuiApp->applicationStateChanged(Qt::ApplicationActive);
    EXPECT_EQ(openings, 1);
}

TEST_F(MacDesktopTest, KeepsPreferencesAsDataValues) {
    const auto preferences = makeMacPreferencesStore();
    EXPECT_FALSE(preferences->data(u"workspaceProfile"_s));
    const QByteArray value("{\"a\":1}\0\xff", 9);
    preferences->setData(u"workspaceProfile"_s, value);
    EXPECT_EQ(preferences->data(u"workspaceProfile"_s), value);
    EXPECT_TRUE([storedDefaults()["workspaceProfile"] isKindOfClass:[NSData class]]);
    preferences->setData(u"workspaceProfile"_s, QByteArray());
    EXPECT_EQ(preferences->data(u"workspaceProfile"_s), QByteArray());
    [NSUserDefaults.standardUserDefaults setObject:@"a text" forKey:@"recentLocations"];
    EXPECT_FALSE(preferences->data(u"recentLocations"_s));
}

} // namespace
} // namespace corvanta
