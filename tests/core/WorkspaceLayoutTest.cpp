// SPDX-License-Identifier: MIT
#include "layout/WorkspaceLayout.h"

#include <gtest/gtest.h>

namespace corvanta {
namespace {

using WorkspaceLayout::frames;

TEST(WorkspaceLayout, TilesAScreen) {
    EXPECT_EQ(frames({0, 25, 1440, 875}, {0.25, 0.30, 0.45}, 8),
              (WorkspaceFrames{{0, 25, 356, 875}, {364, 25, 427, 875}, {799, 25, 641, 875}}));
}

TEST(WorkspaceLayout, GivesTheWholeRemainderToTheInspector) {
    const WorkspaceFrames result = frames({0, 0, 101.5, 10}, {1, 1, 1}, 0);
    EXPECT_EQ(result.controls.width, 33);
    EXPECT_EQ(result.simulator.width, 33);
    EXPECT_EQ(result.inspector.width, 35.5);
}

TEST(WorkspaceLayout, TakesNoRatiosAsEqualThirds) {
    EXPECT_EQ(frames({0, 0, 916, 10}, {0, 0, 0}, 8), frames({0, 0, 916, 10}, {1, 1, 1}, 8));
    EXPECT_EQ(frames({0, 0, 916, 10}, {0, 0, 0}, 8).controls.width, 300);
}

TEST(WorkspaceLayout, KeepsAFloorForEveryColumn) {
    const WorkspaceFrames result = frames({0, 0, 1100, 10}, {1, 0, 0}, 0);
    EXPECT_EQ(result.simulator.width, 50);
    EXPECT_NEAR(result.inspector.width, 50, 1);
}

TEST(WorkspaceLayout, GivesZeroWidthsWhereTheGapsDoNotFit) {
    EXPECT_EQ(frames({100, 5, 10, 20}, {0.25, 0.30, 0.45}, 8),
              (WorkspaceFrames{{100, 5, 0, 20}, {108, 5, 0, 20}, {116, 5, 0, 20}}));
}

TEST(WorkspaceLayout, DependsOnlyOnTheProportions) {
    EXPECT_EQ(frames({-50, 25, 1440, 875}, {2, 3, 5}, 8), frames({-50, 25, 1440, 875}, {0.2, 0.3, 0.5}, 8));
}

} // namespace
} // namespace corvanta
