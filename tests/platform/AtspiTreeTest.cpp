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

TEST(AtspiTree, LinksNoObjectThatIsItsOwnParent) {
    AtspiTree tree;
    tree.insert(item(u"/own"_s, u"/own"_s, 0, 1));
    tree.link();
    EXPECT_TRUE(tree.item(u"/own"_s)->children.isEmpty());
    EXPECT_EQ(tree.withUnknownChildren(), QList<QString>{u"/own"_s});
}

TEST(AtspiTree, LinksNoObjectsWhoseParentsGoRoundInACircle) {
    AtspiTree tree;
    tree.insert(item(u"/a"_s, u"/c"_s, 0, 1));
    tree.insert(item(u"/b"_s, u"/a"_s, 0, 1));
    tree.insert(item(u"/c"_s, u"/b"_s, 0, 1));
    tree.insert(item(u"/top"_s, {}, -1, 1));
    tree.insert(item(u"/good"_s, u"/top"_s, 0, 0));
    tree.link();
    for (const QString& path : {u"/a"_s, u"/b"_s, u"/c"_s})
        EXPECT_TRUE(tree.item(path)->children.isEmpty()) << path.toStdString();
    EXPECT_EQ(tree.withUnknownChildren().size(), 3);
    EXPECT_EQ(tree.item(u"/top"_s)->children, QList<AtspiReference>{reference(u"/good"_s)});
}

TEST(AtspiTree, LinksWhatHangsBelowACircle) {
    AtspiTree tree;
    tree.insert(item(u"/own"_s, u"/own"_s, 0, 1));
    tree.insert(item(u"/a"_s, u"/own"_s, 0, 1));
    tree.insert(item(u"/b"_s, u"/a"_s, 0, 0));
    tree.link();
    EXPECT_EQ(tree.item(u"/own"_s)->children, QList<AtspiReference>{reference(u"/a"_s)});
    EXPECT_EQ(tree.item(u"/a"_s)->children, QList<AtspiReference>{reference(u"/b"_s)});
}

TEST(AtspiTree, LeavesAnObjectAndThoseAboveItOutOfItsChildren) {
    AtspiTree tree;
    tree.insert(item(u"/top"_s, {}, -1, -1));
    tree.insert(item(u"/middle"_s, u"/top"_s, 0, -1));
    tree.insert(item(u"/low"_s, u"/middle"_s, 0, -1));
    const AtspiReference child = reference(u"/child"_s);
    const AtspiReference elsewhere{u":1.2"_s, u"/top"_s};
    tree.setChildren(u"/low"_s,
                     {reference(u"/low"_s), child, reference(u"/top"_s), elsewhere, reference(u"/middle"_s)});
    EXPECT_EQ(tree.item(u"/low"_s)->children, (QList<AtspiReference>{child, elsewhere}));
    EXPECT_FALSE(tree.withUnknownChildren().contains(u"/low"_s));
}

TEST(AtspiTree, EndsAtParentsThatGoRoundInACircleWhenItTakesChildren) {
    AtspiTree tree;
    tree.insert(item(u"/a"_s, u"/b"_s, 0, -1));
    tree.insert(item(u"/b"_s, u"/a"_s, 0, -1));
    tree.setChildren(u"/a"_s, {reference(u"/b"_s), reference(u"/c"_s)});
    EXPECT_EQ(tree.item(u"/a"_s)->children, QList<AtspiReference>{reference(u"/c"_s)});
}

TEST(AtspiTree, FindsTheFirstObjectOfARoleInPreOrder) {
    AtspiTree tree;
    tree.insert(item(u"/top"_s, {}, -1, 2, AtspiRole::frame));
    tree.insert(item(u"/box"_s, u"/top"_s, 0, 1, AtspiRole::invalid));
    tree.insert(item(u"/bar"_s, u"/box"_s, 0, 0, AtspiRole::menuBar));
    tree.insert(item(u"/other"_s, u"/top"_s, 1, 0, AtspiRole::menuBar));
    tree.link();
    const AtspiItem& top = *tree.item(u"/top"_s);
    EXPECT_EQ(tree.firstWithRole(top, AtspiRole::menuBar), tree.item(u"/bar"_s));
    EXPECT_EQ(tree.firstWithRole(top, AtspiRole::frame), &top);
    EXPECT_EQ(tree.firstWithRole(top, AtspiRole::dialog), nullptr);
}

TEST(AtspiTree, FindsNothingByWayOfAnotherProcess) {
    AtspiTree tree;
    tree.insert(item(u"/top"_s, {}, -1, -1));
    tree.insert(item(u"/bar"_s, {}, -1, 0, AtspiRole::menuBar));
    tree.setChildren(u"/top"_s, {{u":1.2"_s, u"/bar"_s}});
    EXPECT_EQ(tree.firstWithRole(*tree.item(u"/top"_s), AtspiRole::menuBar), nullptr);
}

TEST(AtspiTree, LooksAtObjectsThatListEachOtherOnce) {
    AtspiTree tree;
    tree.insert(item(u"/top"_s, {}, -1, -1));
    // Each level lists the next one twice and the top once more: without a memory of where it was, the search would
    // never end.
    constexpr int levels = 60;
    for (int level = 0; level < levels; ++level) {
        for (const auto& side : {u"left"_s, u"right"_s})
            tree.insert(item(u"/%1%2"_s.arg(side).arg(level), {}, -1, -1));
    }
    const auto both = [](int level) {
        return QList<AtspiReference>{reference(u"/left%1"_s.arg(level)), reference(u"/right%1"_s.arg(level)),
                                     reference(u"/top"_s)};
    };
    tree.setChildren(u"/top"_s, both(0));
    for (int level = 0; level + 1 < levels; ++level) {
        tree.setChildren(u"/left%1"_s.arg(level), both(level + 1));
        tree.setChildren(u"/right%1"_s.arg(level), both(level + 1));
    }
    EXPECT_EQ(tree.firstWithRole(*tree.item(u"/top"_s), AtspiRole::menuBar), nullptr);
}

TEST(AtspiTree, SearchesNoDeeperThanProgramsNestTheirObjects) {
    AtspiTree tree;
    constexpr int depth = 20'000;
    tree.insert(item(u"/0"_s, {}, -1, 1));
    for (int level = 1; level < depth; ++level)
        tree.insert(item(u"/%1"_s.arg(level), u"/%1"_s.arg(level - 1), 0, 1));
    tree.insert(item(u"/bar"_s, u"/%1"_s.arg(depth - 1), 0, 0, AtspiRole::menuBar));
    tree.link();
    EXPECT_EQ(tree.firstWithRole(*tree.item(u"/0"_s), AtspiRole::menuBar), nullptr);
    EXPECT_NE(tree.firstWithRole(*tree.item(u"/%1"_s.arg(depth - 50)), AtspiRole::menuBar), nullptr);
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
