// SPDX-License-Identifier: MIT
#include "AtspiAccessibilityClient.h"

#include "FixtureProcess.h"
#include "MapWatcher.h"

#include <QElapsedTimer>

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <cstdio>

namespace corvanta {
namespace {

using namespace Qt::Literals::StringLiterals;
using namespace corvanta::testing;

const QString fixtureName = u"dev.corvanta.MenuFixture"_s;
const QString deviceTitle = u"iPhone 16 Pro – iOS 18.2"_s;

class AtspiClient : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(waitUntil([this] { return client.requestTrust(); }));
    }

    /// Waits until the fixture's menu bar can be read.
    void awaitMenuBar() {
        ASSERT_TRUE(waitUntil([this] { return menuBarOf(client, fixtureName).has_value(); }));
    }

    std::optional<AccessibilityElement> developItem() {
        const auto menuBar = menuBarOf(client, fixtureName);
        return menuBar ? findTitled(client, *menuBar, u"Develop"_s) : std::nullopt;
    }

    /// Presses its way to the device's submenu as the driver does, and answers the titles of its entries.
    QStringList readPages() {
        const auto develop = developItem();
        if (!develop || !client.performAction(*develop, u"AXPress"))
            return {u"no Develop"_s};
        pauseAsTheDriver();
        const auto device = findTitled(client, *develop, deviceTitle);
        if (!device || !client.performAction(*device, u"AXPress"))
            return {u"no device"_s};
        pauseAsTheDriver();
        const auto menus = childrenOf(client, *device);
        if (menus.size() != 1 || !titleOf(client, menus.front()).isEmpty())
            return {u"no untitled submenu"_s};
        return titlesOf(client, childrenOf(client, menus.front()));
    }

    X11Windows windows;
    AtspiAccessibilityClient client{windows, [] { return Point(); }};
};

TEST_F(AtspiClient, ReadsTheCompleteTreeOfMenusThatWereNeverShown) {
    FixtureProcess fixture(fixtureName);
    awaitMenuBar();
    MapWatcher watcher;
    EXPECT_EQ(titlesOf(client, childrenOf(client, *menuBarOf(client, fixtureName))),
              (QStringList{u"File"_s, u"Develop"_s}));
    EXPECT_EQ(readPages(), (QStringList{u"iPhone 16 Pro Simulator"_s, u"localhost — first"_s, u"localhost — second"_s,
                                        QString(), u"Automatically Show Web Inspector for JSContexts"_s}));
    EXPECT_FALSE(fixture.reports().contains(u"popped up"_s));
    EXPECT_EQ(watcher.popUpsSeen(), 0);
}

TEST_F(AtspiClient, TellsInsensitiveEntriesApart) {
    FixtureProcess fixture(fixtureName);
    awaitMenuBar();
    const auto menuBar = menuBarOf(client, fixtureName);
    const auto enabled = [&](const QString& title) {
        const auto element = findTitled(client, *menuBar, title);
        return element ? client.attribute(*element, u"AXEnabled") : std::nullopt;
    };
    EXPECT_EQ(enabled(u"iPhone 16 Pro Simulator"_s), AccessibilityValue(false));
    EXPECT_EQ(enabled(u"localhost — first"_s), AccessibilityValue(true));
    EXPECT_EQ(enabled(deviceTitle), AccessibilityValue(true));
}

TEST_F(AtspiClient, SeesChangesAtTheNextRead) {
    FixtureProcess fixture(fixtureName);
    awaitMenuBar();
    ASSERT_EQ(readPages().mid(1, 2), (QStringList{u"localhost — first"_s, u"localhost — second"_s}));
    ASSERT_TRUE(fixture.command(u"rename localhost — first|localhost — renamed"_s));
    EXPECT_EQ(readPages().mid(1, 2), (QStringList{u"localhost — renamed"_s, u"localhost — second"_s}));
    ASSERT_TRUE(fixture.command(u"add localhost — third"_s));
    EXPECT_EQ(readPages().mid(1, 3),
              (QStringList{u"localhost — renamed"_s, u"localhost — second"_s, u"localhost — third"_s}));
    ASSERT_TRUE(fixture.command(u"remove localhost — second"_s));
    EXPECT_EQ(readPages().mid(1, 3), (QStringList{u"localhost — renamed"_s, u"localhost — third"_s, QString()}));
}

TEST_F(AtspiClient, PressesAnEntryWithoutOpeningItsMenu) {
    FixtureProcess fixture(fixtureName);
    awaitMenuBar();
    const auto page = findTitled(client, *menuBarOf(client, fixtureName), u"localhost — second"_s);
    ASSERT_TRUE(page);
    MapWatcher watcher;
    EXPECT_TRUE(client.performAction(*page, u"AXPress"));
    EXPECT_TRUE(waitUntil([&] { return fixture.reports().contains(u"pressed localhost — second"_s); }));
    EXPECT_FALSE(fixture.reports().contains(u"popped up"_s));
    EXPECT_EQ(watcher.popUpsSeen(), 0);
}

TEST_F(AtspiClient, ReportsThatAnEntryThatIsGoneOrInsensitiveWasNotPressed) {
    FixtureProcess fixture(fixtureName);
    awaitMenuBar();
    const auto menuBar = menuBarOf(client, fixtureName);
    const auto header = findTitled(client, *menuBar, u"iPhone 16 Pro Simulator"_s);
    const auto page = findTitled(client, *menuBar, u"localhost — second"_s);
    ASSERT_TRUE(header && page);
    EXPECT_FALSE(client.performAction(*header, u"AXPress"));
    ASSERT_TRUE(fixture.command(u"remove localhost — second"_s));
    EXPECT_FALSE(client.performAction(*page, u"AXPress"));
}

TEST_F(AtspiClient, KeepsTheIdentityOfElementsAcrossReads) {
    FixtureProcess fixture(fixtureName);
    awaitMenuBar();
    const auto before = developItem();
    ASSERT_TRUE(fixture.command(u"add localhost — third"_s));
    pauseAsTheDriver();
    const auto after = developItem();
    ASSERT_TRUE(before && after);
    EXPECT_EQ(*before, *after);
    EXPECT_EQ(before->hash(), after->hash());
    EXPECT_FALSE(*before == *menuBarOf(client, fixtureName));
}

TEST_F(AtspiClient, IsHeldByAStoppedProgramOnceAndBriefly) {
    FixtureProcess fixture(fixtureName);
    awaitMenuBar();
    const auto develop = developItem();
    ASSERT_TRUE(develop);
    pauseAsTheDriver();
    fixture.sendSignal(SIGSTOP);
    QElapsedTimer timer;
    timer.start();
    for (int reading = 0; reading < 30; ++reading) {
        // A program that is silent for a moment reads as it was.
        EXPECT_EQ(titleOf(client, *develop), u"Develop");
        EXPECT_FALSE(childrenOf(client, *develop).empty());
    }
    const auto held = timer.elapsed();
    std::printf("a stopped program held 60 calls for %lld ms\n", static_cast<long long>(held));
    EXPECT_LT(held, 500);
    EXPECT_TRUE(waitUntil([&] { return !client.attribute(*develop, u"AXTitle"); }));
    EXPECT_TRUE(childrenOf(client, *develop).empty());
    EXPECT_FALSE(client.performAction(*develop, u"AXPress"));
    timer.restart();
    EXPECT_FALSE(menuBarOf(client, fixtureName));
    EXPECT_TRUE(windowsOf(client, fixtureName).empty());
    std::printf("and the calls after those for %lld ms\n", static_cast<long long>(timer.elapsed()));
    fixture.sendSignal(SIGCONT);
    EXPECT_TRUE(waitUntil([&] { return titleOf(client, *develop) == u"Develop"; }));
    EXPECT_EQ(readPages().size(), 5);
}

TEST_F(AtspiClient, ReadsTheOthersWhileOneProgramIsStopped) {
    FixtureProcess stopped(fixtureName);
    FixtureProcess other(u"dev.corvanta.OtherFixture"_s);
    awaitMenuBar();
    ASSERT_TRUE(waitUntil([&] { return menuBarOf(client, u"dev.corvanta.OtherFixture"_s).has_value(); }));
    pauseAsTheDriver();
    stopped.sendSignal(SIGSTOP);
    EXPECT_TRUE(waitUntil([&] { return !menuBarOf(client, fixtureName); }));
    EXPECT_TRUE(waitUntil([&] { return menuBarOf(client, u"dev.corvanta.OtherFixture"_s).has_value(); }));
    stopped.sendSignal(SIGCONT);
    awaitMenuBar();
}

TEST_F(AtspiClient, ReadsNothingOfAProgramThatDied) {
    FixtureProcess fixture(fixtureName);
    awaitMenuBar();
    const auto develop = developItem();
    const auto application = client.application(fixtureName);
    ASSERT_TRUE(develop && application);
    fixture.kill();
    EXPECT_TRUE(waitUntil([&] { return !client.application(fixtureName); }));
    QElapsedTimer timer;
    timer.start();
    EXPECT_FALSE(client.attribute(*develop, u"AXTitle"));
    EXPECT_FALSE(client.attribute(*application, u"AXMenuBar"));
    EXPECT_FALSE(client.performAction(*develop, u"AXPress"));
    EXPECT_LT(timer.elapsed(), 60);
}

TEST_F(AtspiClient, ListsTheWindowsOfEveryProgramOfThatNameByTitle) {
    FixtureProcess first(fixtureName);
    FixtureProcess second(fixtureName);
    ASSERT_TRUE(first.command(u"title Window 10"_s));
    ASSERT_TRUE(second.command(u"title window 9"_s));
    ASSERT_TRUE(second.command(u"headerbar Window 11"_s));
    const QStringList expected{u"window 9"_s, u"Window 10"_s, u"Window 11"_s};
    EXPECT_TRUE(waitUntil([&] { return titlesOf(client, windowsOf(client, fixtureName)) == expected; }))
        << titlesOf(client, windowsOf(client, fixtureName)).join(u", "_s).toStdString();
}

TEST_F(AtspiClient, ListsIconifiedWindowsAndLeavesHiddenOnesOut) {
    FixtureProcess fixture(fixtureName);
    ASSERT_TRUE(fixture.command(u"window Second"_s));
    ASSERT_TRUE(waitUntil([&] { return windowsOf(client, fixtureName).size() == 2; }));
    ASSERT_TRUE(fixture.command(u"iconify"_s));
    ASSERT_TRUE(waitUntil([&] {
        const auto all = windows.windows();
        return std::ranges::any_of(all, [&](auto window) { return windows.isIconified(window); });
    }));
    pauseAsTheDriver();
    EXPECT_EQ(windowsOf(client, fixtureName).size(), 2U);
    EXPECT_TRUE(menuBarOf(client, fixtureName));
    ASSERT_TRUE(fixture.command(u"hide"_s));
    EXPECT_TRUE(waitUntil([&] { return windowsOf(client, fixtureName).size() == 1; }));
}

} // namespace
} // namespace corvanta
