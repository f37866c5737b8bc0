// SPDX-License-Identifier: MIT
#include "MacAccessibilityClient.h"

#include "MacLayerTest.h"
#include "SilentPrograms.h"
#include "safari/AXSupport.h"

#include <memory>

namespace corvanta {
namespace {

using namespace Qt::Literals::StringLiterals;
using namespace corvanta::testing;
using namespace std::chrono_literals;

using Elements = std::vector<AccessibilityElement>;

/// Safari with a menu bar of two items, and a second program.
class MacAccessibilityClient : public MacLayerTest {
protected:
    void SetUp() override {
        MacLayerTest::SetUp();
        safari = add(1, 42);
        menuBar = add(2, 42);
        file = add(3, 42);
        develop = add(4, 42);
        other = add(5, 43);
        world().isTrusted = true;
        world().running = {{"com.apple.Safari", 42}, {"com.example.Other", 43}};
        world().applications[42] = safari;
        world().applications[43] = other;
        safari->attributes["AXMenuBar"] = menuBar;
        menuBar->attributes["AXChildren"] = @[ file, develop ];
        file->attributes["AXTitle"] = @"File";
        develop->attributes["AXTitle"] = makeText(u"Développement \U0001F600"_s);
        client = makeMacAccessibilityClient(clock);
    }

    void TearDown() override {
        client.reset();
        safari = menuBar = file = develop = other = nil;
        MacLayerTest::TearDown();
    }

    static DoubleElement* add(int number, pid_t program) {
        DoubleElement* const element = [DoubleElement numbered:number];
        element->program = program;
        return element;
    }

    [[nodiscard]] AccessibilityElement application() { return client->application(u"com.apple.Safari"_s).value(); }

    template<typename Value>
    Value value(const AccessibilityElement& element, QStringView name) {
        return std::get<Value>(client->attribute(element, name).value());
    }

    [[nodiscard]] Elements menus() {
        return value<Elements>(value<AccessibilityElement>(application(), u"AXMenuBar"), u"AXChildren");
    }

    DoubleElement* safari = nil;
    DoubleElement* menuBar = nil;
    DoubleElement* file = nil;
    DoubleElement* develop = nil;
    DoubleElement* other = nil;
    HandClock clock;
    std::unique_ptr<AccessibilityClient> client;
};

TEST_F(MacAccessibilityClient, SaysWhetherItIsTrusted) {
    EXPECT_TRUE(client->isTrusted());
    world().isTrusted = false;
    EXPECT_FALSE(client->isTrusted());
    EXPECT_FALSE(world().wasPrompted);
}

TEST_F(MacAccessibilityClient, AsksForTrustWithTheSystemsPrompt) {
    world().isTrusted = false;
    EXPECT_FALSE(client->requestTrust());
    EXPECT_TRUE(world().wasPrompted);
    world().isTrustGrantedWhenAsked = true;
    EXPECT_TRUE(client->requestTrust());
}

TEST_F(MacAccessibilityClient, FindsRunningApplicationsAlone) {
    EXPECT_TRUE(client->application(u"com.apple.Safari"_s));
    EXPECT_FALSE(client->application(u"com.example.None"_s));
}

TEST_F(MacAccessibilityClient, ReadsTextsElementsAndLists) {
    const Elements items = menus();
    ASSERT_EQ(items.size(), 2U);
    EXPECT_EQ(value<QString>(items[0], u"AXTitle"), u"File");
    EXPECT_EQ(value<QString>(items[1], u"AXTitle"), u"Développement \U0001F600");
}

TEST_F(MacAccessibilityClient, TellsFlagsFromNumbers) {
    file->attributes["AXEnabled"] = @NO;
    file->attributes["AXValue"] = @2.5;
    const AccessibilityElement item = menus().front();
    EXPECT_FALSE(value<bool>(item, u"AXEnabled"));
    EXPECT_EQ(value<double>(item, u"AXValue"), 2.5);
    file->attributes["AXEnabled"] = @YES;
    EXPECT_TRUE(value<bool>(item, u"AXEnabled"));
}

TEST_F(MacAccessibilityClient, ReadsPositionsAndSizes) {
    file->attributes["AXPosition"] = makePoint(10, 25);
    file->attributes["AXSize"] = makeSize(300, 400);
    const AccessibilityElement item = menus().front();
    EXPECT_EQ(value<Point>(item, u"AXPosition"), (Point{10, 25}));
    EXPECT_EQ(value<Size>(item, u"AXSize"), (Size{300, 400}));
}

TEST_F(MacAccessibilityClient, ReadsNothingOfATypeThatItDoesNotKnow) {
    file->attributes["AXFrame"] = makeRect();
    file->attributes["AXOther"] = [NSData dataWithBytes:"x" length:1];
    file->attributes["AXMixed"] = @[ develop, @"text" ];
    const AccessibilityElement item = menus().front();
    for (const QStringView name : {u"AXFrame", u"AXOther", u"AXMixed", u"AXNothing"})
        EXPECT_FALSE(client->attribute(item, name)) << name.toUtf8().constData();
}

TEST_F(MacAccessibilityClient, ReadsAnEmptyListAsOne) {
    file->attributes["AXChildren"] = @[];
    EXPECT_TRUE(value<Elements>(menus().front(), u"AXChildren").empty());
}

TEST_F(MacAccessibilityClient, ReadsNothingOnFailureAndGivesBackWhatWasHandedOut) {
    const AccessibilityElement item = menus().front();
    file->refused.insert("AXTitle");
    EXPECT_FALSE(client->attribute(item, u"AXTitle"));
    world().isTrusted = false;
    EXPECT_FALSE(client->attribute(item, u"AXTitle"));
}

TEST_F(MacAccessibilityClient, KnowsAnElementByItsIdentity) {
    DoubleElement* const again = add(3, 42);
    menuBar->attributes["AXChildren"] = @[ file, again, develop ];
    const Elements items = menus();
    ASSERT_EQ(items.size(), 3U);
    EXPECT_EQ(items[0], items[1]);
    EXPECT_EQ(items[0].hash(), items[1].hash());
    EXPECT_FALSE(items[0] == items[2]);
    EXPECT_NE(items[0].hash(), items[2].hash());
    EXPECT_EQ(items[0].hash(), CFHash((__bridge CFTypeRef)file));
}

TEST_F(MacAccessibilityClient, PerformsActionsWithMoreTimeThanReads) {
    const AccessibilityElement item = menus().back();
    EXPECT_FLOAT_EQ(world().everyonesLimit, 0.5F);
    EXPECT_TRUE(client->performAction(item, u"AXPress"));
    EXPECT_EQ(develop->actions, std::vector<std::string>{"AXPress"});
    EXPECT_EQ(develop->actionLimits, std::vector<float>{2});
    EXPECT_EQ(develop->limit, 0);
    develop->refused.insert("AXCancel");
    EXPECT_FALSE(client->performAction(item, u"AXCancel"));
    EXPECT_EQ(develop->actions, std::vector<std::string>{"AXPress"});
}

TEST_F(MacAccessibilityClient, WritesEveryTypeOfTheSeam) {
    const Elements items = menus();
    const AccessibilityElement& item = items.front();
    EXPECT_TRUE(client->setAttribute(item, u"AXPosition", Point{8, 25}));
    EXPECT_EQ(pointIn(file->attributes["AXPosition"]).y, 25);
    EXPECT_TRUE(client->setAttribute(item, u"AXSize", Size{356, 875}));
    EXPECT_EQ(sizeIn(file->attributes["AXSize"]).width, 356);
    for (const AccessibilityValue& written :
         {AccessibilityValue(u"text"_s), AccessibilityValue(std::in_place_type<bool>, true), AccessibilityValue(2.5),
          AccessibilityValue(items[1]), AccessibilityValue(Elements{items[1], items[1]})}) {
        EXPECT_TRUE(client->setAttribute(item, u"AXValue", written));
        EXPECT_EQ(client->attribute(item, u"AXValue"), written);
    }
}

TEST_F(MacAccessibilityClient, ReportsARefusedWrite) {
    file->refused.insert("AXPosition");
    EXPECT_FALSE(client->setAttribute(menus().front(), u"AXPosition", Point{1, 2}));
}

TEST_F(MacAccessibilityClient, LeavesAProgramInPeaceThatDidNotAnswer) {
    const AccessibilityElement item = menus().front();
    file->failure = kAXErrorCannotComplete;
    EXPECT_FALSE(client->attribute(item, u"AXTitle"));
    EXPECT_EQ(file->questions, 1);
    file->failure = kAXErrorSuccess;
    EXPECT_FALSE(client->attribute(item, u"AXTitle"));
    EXPECT_FALSE(client->performAction(item, u"AXPress"));
    EXPECT_FALSE(client->setAttribute(item, u"AXPosition", Point{}));
    EXPECT_EQ(file->questions, 1);
    // The others are none the worse for it.
    other->attributes["AXTitle"] = @"Other";
    EXPECT_EQ(value<QString>(client->application(u"com.example.Other"_s).value(), u"AXTitle"), u"Other");
    clock.advance(SilentPrograms::rest);
    EXPECT_EQ(value<QString>(item, u"AXTitle"), u"File");
}

TEST_F(MacAccessibilityClient, GoesOnAskingAfterOtherFailures) {
    const AccessibilityElement item = menus().front();
    file->failure = kAXErrorAttributeUnsupported;
    EXPECT_FALSE(client->attribute(item, u"AXTitle"));
    file->failure = kAXErrorSuccess;
    EXPECT_TRUE(client->attribute(item, u"AXTitle"));
}

TEST_F(MacAccessibilityClient, PutsAFrameWhereTheDesktopMeansIt) {
    const AccessibilityElement item = menus().front();
    constexpr double height = 1000;
    EXPECT_FALSE(AXSupport::frame(*client, item, height));
    EXPECT_TRUE(AXSupport::setFrame(*client, {10, 100, 500, 300}, item, height));
    EXPECT_EQ(file->written, (std::vector<std::string>{"AXPosition", "AXSize"}));
    EXPECT_EQ(pointIn(file->attributes["AXPosition"]).x, 10);
    EXPECT_EQ(pointIn(file->attributes["AXPosition"]).y, 600);
    EXPECT_EQ(AXSupport::frame(*client, item, height), (Rect{10, 100, 500, 300}));
}

TEST_F(MacAccessibilityClient, KeepsElementsAliveByItself) {
    const Elements items = menus();
    menuBar->attributes.clear();
    file = nil;
    EXPECT_EQ(value<QString>(items[0], u"AXTitle"), u"File");
}

} // namespace
} // namespace corvanta
