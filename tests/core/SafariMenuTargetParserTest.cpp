// SPDX-License-Identifier: MIT
#include "safari/SafariMenuTargetParser.h"

#include "Printing.h"

#include <gtest/gtest.h>

namespace corvanta {
namespace {

using namespace Qt::Literals::StringLiterals;
using SafariMenuTargetParser::targets;

using Nodes = std::vector<AccessibilityMenuNode>;

AccessibilityMenuNode node(const QString& title, Nodes children = {}) {
    return {{}, title, true, std::move(children)};
}

AccessibilityMenuNode disabled(AccessibilityMenuNode item) {
    item.isEnabled = false;
    return item;
}

/// Gives every node the identity of its place.
AccessibilityMenuNode identified(AccessibilityMenuNode root, const std::vector<int>& path = {}) {
    root.id = accessibilityMenuNodeID(path, root.title);
    for (std::size_t index = 0; index < root.children.size(); ++index) {
        std::vector<int> childPath = path;
        childPath.push_back(static_cast<int>(index));
        root.children[index] = identified(root.children[index], childPath);
    }
    return root;
}

TEST(AccessibilityMenuNode, IsIdentifiedByPathAndTitle) {
    EXPECT_EQ(accessibilityMenuNodeID({}, u"iPhone 16"_s), u"|iPhone 16");
    EXPECT_EQ(accessibilityMenuNodeID({0}, QString()), u"0|");
    EXPECT_EQ(accessibilityMenuNodeID({0, 2}, u"Apple"_s), u"0.2|Apple");
}

TEST(SafariMenuTargetParser, FindsThePageOfTheFirstLevel) {
    EXPECT_EQ(targets(identified(node(u"iPhone 16"_s, {node(QString(), {node(u"Apple"_s)})})), u"iPhone 16"_s),
              (std::vector<SafariTarget>{{u"0.0|Apple"_s, u"Apple"_s, {0, 0}}}));
}

TEST(SafariMenuTargetParser, LeavesSettingsAndOtherGroupsOut) {
    const auto root = node(
        u"iPhone"_s,
        {node(QString(),
              {node(u"Connect via Network"_s), node(u"Automatically Show Web Inspector for JSContexts"_s),
               node(u"Automatically Pause Connecting to JSContexts"_s), node(u"Service Workers"_s, {node(u"sw.js"_s)}),
               node(u"Home Screen Web Apps"_s, {node(u"App"_s)}), node(u"Extensions"_s, {node(u"Blocker"_s)})})});
    EXPECT_TRUE(targets(root, u"iPhone"_s).empty());
}

TEST(SafariMenuTargetParser, LeavesAPageOutWhoseTitleHoldsAnExcludedPhrase) {
    EXPECT_TRUE(targets(node(u"iPhone"_s, {node(u"My EXTENSIONS page"_s)}), u"iPhone"_s).empty());
}

TEST(SafariMenuTargetParser, LeavesEverythingOutWhenTheDeviceItselfHoldsAnExcludedPhrase) {
    EXPECT_TRUE(targets(node(u"iPhone Extensions"_s, {node(u"Page"_s)}), u"iPhone"_s).empty());
}

TEST(SafariMenuTargetParser, LeavesSeparatorsAndBlankTitlesOut) {
    EXPECT_TRUE(
        targets(node(u"iPhone"_s, {node(QString()), node(u"   "_s), node(u"\n\u00A0"_s)}), u"iPhone"_s).empty());
}

TEST(SafariMenuTargetParser, LeavesADisabledPageOut) {
    EXPECT_TRUE(targets(node(u"iPhone"_s, {disabled(node(u"Page"_s))}), u"iPhone"_s).empty());
}

TEST(SafariMenuTargetParser, ListsAnEnabledPageOfADisabledGroup) {
    const auto root = node(u"iPhone"_s, {disabled(node(u"localhost"_s, {node(u"Page"_s)}))});
    EXPECT_EQ(targets(root, u"iPhone"_s), (std::vector<SafariTarget>{{QString(), u"Page"_s, {0, 0}}}));
}

TEST(SafariMenuTargetParser, TrimsTheTitleAndKeepsTheIdentityUntrimmed) {
    EXPECT_EQ(targets(identified(node(u"iPhone"_s, {node(u"  My Page\n"_s)})), u"iPhone"_s),
              (std::vector<SafariTarget>{{u"0|  My Page\n"_s, u"My Page"_s, {0}}}));
}

TEST(SafariMenuTargetParser, TakesTheFirstDeviceWhoseTitleHoldsTheName) {
    const auto root = identified(
        node(u"Develop"_s, {node(u"iPhone 16"_s, {node(u"A"_s)}), node(u"iPhone 16 Pro"_s, {node(u"B"_s)})}));
    EXPECT_EQ(targets(root, u"iPhone 16"_s), (std::vector<SafariTarget>{{u"0.0|A"_s, u"A"_s, {0}}}));
    EXPECT_EQ(targets(root, u"iphone 16 pro"_s), (std::vector<SafariTarget>{{u"1.0|B"_s, u"B"_s, {0}}}));
}

TEST(SafariMenuTargetParser, TakesTheLongerNameWhenItComesFirst) {
    const auto root =
        node(u"Develop"_s, {node(u"iPhone 16 Pro"_s, {node(u"B"_s)}), node(u"iPhone 16"_s, {node(u"A"_s)})});
    EXPECT_EQ(targets(root, u"iPhone 16"_s).at(0).title, u"B");
}

TEST(SafariMenuTargetParser, SearchesDepthFirst) {
    const auto root = node(u"Develop"_s, {node(u"Group"_s, {node(u"iPhone"_s, {node(u"deep"_s)})}),
                                          node(u"iPhone"_s, {node(u"shallow"_s)})});
    EXPECT_EQ(targets(root, u"iPhone"_s).at(0).title, u"deep");
}

TEST(SafariMenuTargetParser, FindsNothingForAnotherDeviceOrNoName) {
    const auto root = node(u"iPhone"_s, {node(u"Page"_s)});
    EXPECT_TRUE(targets(root, u"iPad"_s).empty());
    EXPECT_TRUE(targets(root, QString()).empty());
}

TEST(SafariMenuTargetParser, ListsPagesInMenuOrder) {
    const auto root =
        node(u"iPhone"_s,
             {node(QString(), {node(u"localhost"_s, {node(u"1"_s), node(u"2"_s)}), node(QString()), node(u"3"_s)})});
    EXPECT_EQ(targets(root, u"iPhone"_s),
              (std::vector<SafariTarget>{
                  {QString(), u"1"_s, {0, 0, 0}}, {QString(), u"2"_s, {0, 0, 1}}, {QString(), u"3"_s, {0, 2}}}));
}

} // namespace
} // namespace corvanta
