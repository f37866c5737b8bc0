// SPDX-License-Identifier: MIT
#include "safari/AXSupport.h"

#include "FakeAccessibilityTree.h"
#include "Printing.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr double screenHeight = 1000;

class AXSupportTest : public ::testing::Test {
protected:
    /// `name` below `parent`.
    testing::FakeAccessibilityTree::Element& below(testing::FakeAccessibilityTree::Element& parent,
                                                   const QString& name) {
        auto& child = tree.add(name);
        parent.append(child);
        return child;
    }

    /// An element that many levels below `ancestor`.
    testing::FakeAccessibilityTree::Element& deepBelow(testing::FakeAccessibilityTree::Element& ancestor, int levels,
                                                       const QString& name) {
        auto* parent = &ancestor;
        for (int level = 1; level < levels; ++level) {
            auto& group = tree.addUntitled(u"group"_s);
            parent->append(group);
            parent = &group;
        }
        return below(*parent, name);
    }

    [[nodiscard]] std::optional<AccessibilityElement> find(testing::FakeAccessibilityTree::Element& root, int maxDepth,
                                                           const QString& label) {
        return AXSupport::firstDescendant(tree, root.handle(), maxDepth, [&](const AccessibilityElement& element) {
            return AXSupport::label(tree, element) == label;
        });
    }

    testing::VirtualClock clock;
    testing::FakeAccessibilityTree tree{clock};
};

TEST_F(AXSupportTest, FindsTheApplicationByItsBundleIdentifier) {
    auto& safari = tree.add(u"Safari"_s);
    tree.setApplication(u"com.apple.Safari"_s, safari);
    EXPECT_EQ(AXSupport::application(tree, u"com.apple.Safari"_s), safari.handle());
    EXPECT_EQ(AXSupport::application(tree, u"com.apple.Preview"_s), std::nullopt);
}

TEST_F(AXSupportTest, ReadsAnElementOnlyWhereTheAttributeIsOne) {
    auto& menuBar = tree.addUntitled(u"menu bar"_s);
    auto& application = tree.add(u"Safari"_s).set(u"AXMenuBar"_s, &menuBar);
    EXPECT_EQ(AXSupport::element(tree, application.handle(), u"AXMenuBar"), menuBar.handle());
    EXPECT_EQ(AXSupport::element(tree, application.handle(), u"AXTitle"), std::nullopt);
    EXPECT_EQ(AXSupport::element(tree, application.handle(), u"AXCloseButton"), std::nullopt);
}

TEST_F(AXSupportTest, ReadsATextOnlyWhereTheAttributeIsOne) {
    auto& element = tree.add(u"Develop"_s).enabled(true);
    EXPECT_EQ(AXSupport::string(tree, element.handle(), u"AXTitle"), u"Develop"_s);
    EXPECT_EQ(AXSupport::string(tree, element.handle(), u"AXEnabled"), std::nullopt);
    EXPECT_EQ(AXSupport::string(tree, element.handle(), u"AXDescription"), std::nullopt);
}

TEST_F(AXSupportTest, TakesTheTitleForTheLabel) {
    EXPECT_EQ(AXSupport::label(tree, tree.add(u"Elements"_s).description(u"tab"_s).handle()), u"Elements"_s);
}

TEST_F(AXSupportTest, TakesTheDescriptionForTheLabelWhereTheTitleIsEmpty) {
    EXPECT_EQ(AXSupport::label(tree, tree.add(u""_s).description(u"Console"_s).handle()), u"Console"_s);
}

TEST_F(AXSupportTest, TakesTheDescriptionForTheLabelWhereTheTitleCannotBeRead) {
    EXPECT_EQ(AXSupport::label(tree, tree.addUntitled(u"tab"_s).description(u"Console"_s).handle()), u"Console"_s);
    EXPECT_EQ(AXSupport::label(tree, tree.addUntitled(u"tab"_s).set(u"AXTitle"_s, 3.0).description(u"Tab"_s).handle()),
              u"Tab"_s);
}

TEST_F(AXSupportTest, GivesAnElementWithoutTitleAndDescriptionAnEmptyLabel) {
    EXPECT_EQ(AXSupport::label(tree, tree.addUntitled(u"separator"_s).handle()), u""_s);
}

TEST_F(AXSupportTest, ReadsChildrenInOrder) {
    auto& menu = tree.addUntitled(u"menu"_s);
    auto& first = below(menu, u"First"_s);
    auto& second = below(menu, u"Second"_s);
    EXPECT_THAT(AXSupport::children(tree, menu.handle()), ElementsAre(first.handle(), second.handle()));
}

TEST_F(AXSupportTest, ReadsNoChildrenWhereTheAttributeIsAbsentOrOfAnotherType) {
    EXPECT_THAT(AXSupport::children(tree, tree.add(u"Leaf"_s).handle()), IsEmpty());
    EXPECT_THAT(AXSupport::children(tree, tree.add(u"Odd"_s).set(u"AXChildren"_s, u"text"_s).handle()), IsEmpty());
}

TEST_F(AXSupportTest, ReadsTheWindowsOfAnApplication) {
    auto& application = tree.add(u"Simulator"_s);
    EXPECT_THAT(AXSupport::windows(tree, application.handle()), IsEmpty());
    auto& window = tree.add(u"iPhone 16"_s);
    application.append(window, u"AXWindows"_s);
    EXPECT_THAT(AXSupport::windows(tree, application.handle()), ElementsAre(window.handle()));
}

TEST_F(AXSupportTest, ReadsNothingFromAnElementThatHasGone) {
    auto& window = tree.add(u"iPhone 16"_s).place({0, 0, 100, 100});
    const auto handle = window.handle();
    tree.remove(window);
    EXPECT_EQ(AXSupport::label(tree, handle), u""_s);
    EXPECT_EQ(AXSupport::frame(tree, handle, screenHeight), std::nullopt);
    EXPECT_FALSE(AXSupport::setFrame(tree, {0, 0, 100, 100}, handle, screenHeight));
}

TEST_F(AXSupportTest, FlipsAtTheTopOfTheFirstScreen) {
    const Screen primary{{0, 0, 1440, 900}, {0, 0, 1440, 875}};
    const Screen second{{1440, 200, 1920, 1080}, {1440, 200, 1920, 1080}};
    EXPECT_EQ(AXSupport::flipHeight(std::vector{primary, second}), 900);
    EXPECT_EQ(AXSupport::flipHeight(std::vector{second, primary}), 1280);
}

TEST_F(AXSupportTest, FlipsAtZeroWithoutAScreen) {
    EXPECT_EQ(AXSupport::flipHeight({}), 0);
}

TEST_F(AXSupportTest, ReadsAFrameInDesktopCoordinates) {
    auto& window = tree.add(u"window"_s).place({40, 600, 200, 300});
    EXPECT_EQ(AXSupport::frame(tree, window.handle(), screenHeight), (Rect{40, 100, 200, 300}));
}

TEST_F(AXSupportTest, ReadsNoFrameWithoutPositionOrSize) {
    auto& withoutSize = tree.add(u"window"_s).place({40, 600, 200, 300}).unset(u"AXSize"_s);
    auto& withoutPosition = tree.add(u"window"_s).place({40, 600, 200, 300}).unset(u"AXPosition"_s);
    auto& swapped = tree.add(u"window"_s).set(u"AXPosition"_s, Size{1, 2}).set(u"AXSize"_s, Point{3, 4});
    EXPECT_EQ(AXSupport::frame(tree, withoutSize.handle(), screenHeight), std::nullopt);
    EXPECT_EQ(AXSupport::frame(tree, withoutPosition.handle(), screenHeight), std::nullopt);
    EXPECT_EQ(AXSupport::frame(tree, swapped.handle(), screenHeight), std::nullopt);
}

TEST_F(AXSupportTest, SetsThePositionFromTheTopAndThenTheSize) {
    auto& window = tree.add(u"window"_s);
    EXPECT_TRUE(AXSupport::setFrame(tree, {40, 100, 200, 300}, window.handle(), screenHeight));
    EXPECT_THAT(tree.log.calls(), ElementsAre("AXPosition 40,600 window", "AXSize 200,300 window"));
}

TEST_F(AXSupportTest, StillSetsTheSizeWhenThePositionIsRefusedButReportsIt) {
    auto& window = tree.add(u"window"_s).refuse(u"AXPosition"_s);
    EXPECT_FALSE(AXSupport::setFrame(tree, {40, 100, 200, 300}, window.handle(), screenHeight));
    EXPECT_THAT(tree.log.calls(), ElementsAre("AXPosition 40,600 window refused", "AXSize 200,300 window"));
}

TEST_F(AXSupportTest, ReportsARefusedSize) {
    auto& window = tree.add(u"window"_s).refuse(u"AXSize"_s);
    EXPECT_FALSE(AXSupport::setFrame(tree, {40, 100, 200, 300}, window.handle(), screenHeight));
    EXPECT_THAT(tree.log.calls(), ElementsAre("AXPosition 40,600 window", "AXSize 200,300 window refused"));
}

TEST_F(AXSupportTest, FindsTheElementItselfFirst) {
    auto& root = tree.add(u"Page"_s);
    below(root, u"Page"_s);
    EXPECT_EQ(find(root, 5, u"Page"_s), root.handle());
}

TEST_F(AXSupportTest, ExaminesTheElementOnlyAtDepthZero) {
    auto& root = tree.add(u"Root"_s);
    below(root, u"Page"_s);
    EXPECT_EQ(find(root, 0, u"Page"_s), std::nullopt);
    EXPECT_EQ(find(root, 0, u"Root"_s), root.handle());
    EXPECT_EQ(find(root, -1, u"Root"_s), root.handle());
    EXPECT_EQ(root.reads(u"AXChildren"_s), 0);
}

TEST_F(AXSupportTest, ExaminesFiveLevelsBelowTheElementAtDepthFive) {
    auto& root = tree.add(u"Root"_s);
    auto& fifth = deepBelow(root, 5, u"Fifth"_s);
    deepBelow(root, 6, u"Sixth"_s);
    EXPECT_EQ(find(root, 5, u"Fifth"_s), fifth.handle());
    EXPECT_EQ(find(root, 5, u"Sixth"_s), std::nullopt);
}

TEST_F(AXSupportTest, FindsTheFirstInPreOrderNotTheNearest) {
    auto& root = tree.add(u"Root"_s);
    auto& deep = deepBelow(root, 3, u"Page"_s);
    below(root, u"Page"_s);
    EXPECT_EQ(find(root, 5, u"Page"_s), deep.handle());
}

TEST_F(AXSupportTest, CountsLabelsDownToTheGivenDepth) {
    auto& window = tree.add(u"window"_s);
    deepBelow(window, 7, u"Elements"_s);
    deepBelow(window, 8, u"Network"_s);
    const QSet<QString> wanted{u"Elements"_s, u"Network"_s};
    EXPECT_EQ(AXSupport::containsLabels(tree, wanted, window.handle(), 7), QSet<QString>{u"Elements"_s});
    EXPECT_EQ(AXSupport::containsLabels(tree, wanted, window.handle(), 8), wanted);
}

TEST_F(AXSupportTest, CountsTheElementsOwnLabelAtDepthZeroAndNothingBelowIt) {
    auto& window = tree.add(u"Console"_s);
    below(window, u"Network"_s);
    const QSet<QString> wanted{u"Console"_s, u"Network"_s};
    EXPECT_EQ(AXSupport::containsLabels(tree, wanted, window.handle(), 0), QSet<QString>{u"Console"_s});
    EXPECT_THAT(AXSupport::containsLabels(tree, wanted, window.handle(), -1), IsEmpty());
}

TEST_F(AXSupportTest, CountsOnlyExactLabels) {
    auto& window = tree.add(u"window"_s);
    below(window, u"console"_s);
    below(window, u"Console "_s);
    EXPECT_THAT(AXSupport::containsLabels(tree, {u"Console"_s}, window.handle(), 7), IsEmpty());
}

TEST_F(AXSupportTest, StopsCountingOnceEverythingIsFound) {
    auto& window = tree.add(u"window"_s);
    below(window, u"Console"_s);
    auto& later = below(window, u"Later"_s);
    EXPECT_EQ(AXSupport::containsLabels(tree, {u"Console"_s}, window.handle(), 7), QSet<QString>{u"Console"_s});
    EXPECT_EQ(later.reads(u"AXTitle"_s), 0);
}

TEST_F(AXSupportTest, TakesAWindowForAWebInspectorByItsLabelWithoutACensus) {
    auto& byTitle = tree.add(u"Web Inspector — localhost — Start"_s);
    auto& byDescription = tree.add(u""_s).description(u"Shop — WEB INSPECTOR"_s);
    EXPECT_TRUE(AXSupport::isWebInspectorWindow(tree, byTitle.handle()));
    EXPECT_TRUE(AXSupport::isWebInspectorWindow(tree, byDescription.handle()));
    EXPECT_EQ(byTitle.reads(u"AXChildren"_s), 0);
}

TEST_F(AXSupportTest, TakesAWindowWithTwoOfTheThreeTabsForAWebInspector) {
    auto& window = tree.add(u"localhost"_s);
    deepBelow(window, 3, u"Elements"_s);
    deepBelow(window, 7, u""_s).description(u"Network"_s);
    EXPECT_TRUE(AXSupport::isWebInspectorWindow(tree, window.handle()));
}

TEST_F(AXSupportTest, DoesNotTakeAWindowWithOneTabForAWebInspector) {
    auto& window = tree.add(u"localhost"_s);
    deepBelow(window, 3, u"Console"_s);
    deepBelow(window, 2, u"Console"_s);
    deepBelow(window, 8, u"Network"_s);
    EXPECT_FALSE(AXSupport::isWebInspectorWindow(tree, window.handle()));
}

} // namespace

} // namespace corvanta
