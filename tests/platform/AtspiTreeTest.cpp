// SPDX-License-Identifier: MIT
#include "AtspiTree.h"

#include <gtest/gtest.h>

namespace corvanta {
namespace {

using namespace Qt::Literals::StringLiterals;

AtspiReference reference(const QString& path) {
    return {u":1.1"_s, path};
}

AtspiItem item(const QString& path, const QString& parent, int index, int childCount,
               AtspiRole role = AtspiRole::menuItem) {
    AtspiItem made;
    made.reference = reference(path);
    made.parent = reference(parent);
    made.indexInParent = index;
    made.childCount = childCount;
    made.role = role;
    return made;
}

TEST(AtspiTree, OrdersChildrenByTheirIndex) {
    AtspiTree tree;
    tree.insert(item(u"/top"_s, {}, -1, 3));
    tree.insert(item(u"/c"_s, u"/top"_s, 2, 0));
    tree.insert(item(u"/a"_s, u"/top"_s, 0, 0));
    tree.insert(item(u"/b"_s, u"/top"_s, 1, 0));
    tree.link();
    ASSERT_NE(tree.item(u"/top"_s), nullptr);
    EXPECT_EQ(tree.item(u"/top"_s)->children,
              (QList<AtspiReference>{reference(u"/a"_s), reference(u"/b"_s), reference(u"/c"_s)}));
    EXPECT_TRUE(tree.withUnknownChildren().isEmpty());
}

TEST(AtspiTree, NeedsNoIndexForAnOnlyChild) {
    AtspiTree tree;
    tree.insert(item(u"/top"_s, {}, -1, 1));
    tree.insert(item(u"/a"_s, u"/top"_s, -1, 0));
    tree.link();
    EXPECT_EQ(tree.item(u"/top"_s)->children, (QList<AtspiReference>{reference(u"/a"_s)}));
}

TEST(AtspiTree, AsksWhereTheCountIsNotSaid) {
    AtspiTree tree;
    tree.insert(item(u"/menu"_s, {}, -1, -1));
    tree.insert(item(u"/a"_s, u"/menu"_s, 0, 0));
    tree.link();
    EXPECT_EQ(tree.withUnknownChildren(), QList<QString>{u"/menu"_s});
}

TEST(AtspiTree, AsksWhereChildrenAreMissing) {
    AtspiTree tree;
    tree.insert(item(u"/top"_s, {}, -1, 2));
    tree.insert(item(u"/a"_s, u"/top"_s, 0, 0));
    tree.link();
    EXPECT_EQ(tree.withUnknownChildren(), QList<QString>{u"/top"_s});
}

TEST(AtspiTree, AsksWhereTheOrderIsInDoubt) {
    for (const int index : {-1, 0, 2}) {
        AtspiTree tree;
        tree.insert(item(u"/top"_s, {}, -1, 2));
        tree.insert(item(u"/a"_s, u"/top"_s, 0, 0));
        tree.insert(item(u"/b"_s, u"/top"_s, index, 0));
        tree.link();
        EXPECT_EQ(tree.withUnknownChildren(), QList<QString>{u"/top"_s}) << index;
    }
}

TEST(AtspiTree, TakesNoChildrenOfAnotherProcess) {
    AtspiTree tree;
    tree.insert(item(u"/top"_s, {}, -1, 0));
    AtspiItem foreign = item(u"/a"_s, u"/top"_s, 0, 0);
    foreign.parent.bus = u":1.2"_s;
    tree.insert(foreign);
    tree.link();
    EXPECT_TRUE(tree.item(u"/top"_s)->children.isEmpty());
}

TEST(AtspiTree, KeepsTheProgramsOwnListOfChildren) {
    AtspiTree tree;
    tree.insert(item(u"/menu"_s, {}, -1, -1));
    const AtspiReference plug{u":1.9"_s, u"/page"_s};
    tree.setChildren(u"/menu"_s, {plug});
    tree.link();
    EXPECT_EQ(tree.item(u"/menu"_s)->children, QList<AtspiReference>{plug});
    tree.setChildren(u"/unknown"_s, {plug});
    EXPECT_EQ(tree.item(u"/unknown"_s), nullptr);
}

TEST(AtspiTree, FindsSubmenusInMenuBarsAndMenusOnly) {
    AtspiTree tree;
    tree.insert(item(u"/bar"_s, {}, -1, 1, AtspiRole::menuBar));
    tree.insert(item(u"/develop"_s, u"/bar"_s, 0, 1, AtspiRole::menu));
    tree.insert(item(u"/device"_s, u"/develop"_s, 0, 1, AtspiRole::menu));
    tree.insert(item(u"/page"_s, u"/device"_s, 0, 1, AtspiRole::menuItem));
    tree.insert(item(u"/inner"_s, u"/page"_s, 0, 0, AtspiRole::menu));
    tree.insert(item(u"/loose"_s, {}, 0, 0, AtspiRole::menu));
    const auto opens = [&](const QString& path) { return tree.opensSubmenu(*tree.item(path)); };
    EXPECT_FALSE(opens(u"/bar"_s));
    EXPECT_TRUE(opens(u"/develop"_s));
    EXPECT_TRUE(opens(u"/device"_s));
    EXPECT_FALSE(opens(u"/page"_s));
    EXPECT_FALSE(opens(u"/inner"_s));
    EXPECT_FALSE(opens(u"/loose"_s));
}

TEST(AtspiTree, MergesWhatWasFetchedLater) {
    AtspiTree tree;
    tree.insert(item(u"/a"_s, {}, -1, -1));
    AtspiTree later;
    later.insert(item(u"/b"_s, u"/a"_s, 0, 0));
    tree.merge(later);
    EXPECT_EQ(tree.size(), 2);
}

TEST(AtspiItem, ReadsStatesByTheirBit) {
    AtspiItem made;
    made.states = 1ULL << 24U;
    EXPECT_TRUE(made.has(AtspiState::sensitive));
    EXPECT_FALSE(made.has(AtspiState::showing));
}

} // namespace
} // namespace corvanta
