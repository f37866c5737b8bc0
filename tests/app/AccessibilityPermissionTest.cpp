// SPDX-License-Identifier: MIT
#include "setup/AccessibilityPermission.h"

#include "FakeAccessibilityTree.h"
#include "FakeDesktop.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace corvanta {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr auto accessibilityPane = "open x-apple.systempreferences:com.apple.preference.security?Privacy_Accessibility";

class AccessibilityPermissionTest : public ::testing::Test {
protected:
    testing::VirtualClock clock;
    testing::CallLog log{clock};
    testing::FakeAccessibilityTree tree{clock};
    testing::FakeDesktop desktop{clock, log};
};

TEST_F(AccessibilityPermissionTest, AsksForNothingWhenThePermissionIsHeld) {
    AccessibilityPermission::requestIfNeeded(tree, desktop);
    EXPECT_EQ(tree.trustRequests, 0);
    EXPECT_THAT(log.calls(), IsEmpty());
}

TEST_F(AccessibilityPermissionTest, OpensNoSettingsWhenAskingWasEnough) {
    tree.trusted = false;
    tree.grantsTrustWhenAsked = true;
    AccessibilityPermission::requestIfNeeded(tree, desktop);
    EXPECT_EQ(tree.trustRequests, 1);
    EXPECT_THAT(log.calls(), IsEmpty());
}

TEST_F(AccessibilityPermissionTest, OpensTheSettingsWhenAskingWasNotEnough) {
    tree.trusted = false;
    AccessibilityPermission::requestIfNeeded(tree, desktop);
    EXPECT_EQ(tree.trustRequests, 1);
    EXPECT_THAT(log.calls(), ElementsAre(accessibilityPane));
}

TEST_F(AccessibilityPermissionTest, OpensTheAccessibilityPaneEvenWhenNothingTakesIt) {
    desktop.takesURLs = false;
    AccessibilityPermission::openSystemSettings(desktop);
    EXPECT_THAT(log.calls(), ElementsAre(accessibilityPane));
}

} // namespace

} // namespace corvanta
