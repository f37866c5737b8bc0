// SPDX-License-Identifier: MIT
#include "safari/WorkspaceAutomationError.h"

#include "Printing.h"

#include <gtest/gtest.h>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

namespace {

struct Case {
    std::string name;
    WorkspaceAutomationError error;
    QString description;
    QString suggestion;
};

void PrintTo(const Case& value, std::ostream* stream) {
    *stream << value.name;
}

class WorkspaceAutomationErrorTexts : public ::testing::TestWithParam<Case> {};

TEST_P(WorkspaceAutomationErrorTexts, SayWhatHappenedAndWhatToDo) {
    const Case& expected = GetParam();
    EXPECT_EQ(expected.error.errorDescription(), expected.description);
    EXPECT_EQ(expected.error.recoverySuggestion(), expected.suggestion);
    EXPECT_EQ(expected.error.what(), expected.description.toStdString());
}

INSTANTIATE_TEST_SUITE_P(
    Cases, WorkspaceAutomationErrorTexts,
    ::testing::Values(
        Case{"safariCouldNotLaunch", WorkspaceAutomationError::safariCouldNotLaunch(u"The file is damaged."_s),
             u"Safari could not launch. The file is damaged."_s, u"Open Safari manually and retry."_s},
        Case{"simulatorMenuUnavailable", WorkspaceAutomationError::simulatorMenuUnavailable(u"iPhone 16"_s),
             u"iPhone 16 is not listed in Safari's Develop menu yet."_s,
             u"Wait for the simulator to finish booting and for Safari to display the page, then retry."_s},
        Case{"targetUnavailable", WorkspaceAutomationError::targetUnavailable(u"localhost — Start"_s),
             u"The Safari target localhost — Start is no longer available."_s,
             u"Open the page again or choose another inspectable page."_s},
        Case{"simulatorWindowUnavailable", WorkspaceAutomationError::simulatorWindowUnavailable(u"iPad Pro"_s),
             u"The Simulator window for iPad Pro could not be found."_s,
             u"Bring the selected device window forward in Simulator, then click Re-tile."_s},
        Case{"accessibilityPermissionMissing", WorkspaceAutomationError::accessibilityPermissionMissing(),
             u"Accessibility permission is required."_s,
             u"Allow Corvanta in System Settings > Privacy & Security > Accessibility, then retry."_s},
        Case{"safariDeveloperFeaturesMissing", WorkspaceAutomationError::safariDeveloperFeaturesMissing(),
             u"Safari developer features are not enabled."_s,
             u"In Safari > Settings > Advanced, enable \u201cShow features for web developers\u201d, then retry."_s},
        Case{"developMenuUnavailable", WorkspaceAutomationError::developMenuUnavailable(),
             u"Safari's Develop menu is not accessible."_s,
             u"In Safari > Settings > Advanced, enable \u201cShow features for web developers\u201d, then retry."_s},
        Case{"inspectorWindowUnavailable", WorkspaceAutomationError::inspectorWindowUnavailable(),
             u"Safari opened the target, but its Web Inspector window could not be found."_s,
             u"Open Safari's Develop menu once manually, then click Re-tile."_s}),
    testing::CaseName());

TEST(WorkspaceAutomationError, EqualsOnlyTheSameCaseWithTheSamePayload) {
    EXPECT_EQ(WorkspaceAutomationError::targetUnavailable(u"A"_s), WorkspaceAutomationError::targetUnavailable(u"A"_s));
    EXPECT_NE(WorkspaceAutomationError::targetUnavailable(u"A"_s), WorkspaceAutomationError::targetUnavailable(u"B"_s));
    EXPECT_NE(WorkspaceAutomationError::simulatorMenuUnavailable(u"A"_s),
              WorkspaceAutomationError::simulatorWindowUnavailable(u"A"_s));
    EXPECT_NE(WorkspaceAutomationError::developMenuUnavailable(),
              WorkspaceAutomationError::safariDeveloperFeaturesMissing());
}

TEST(WorkspaceAutomationError, KeepsItsCasesInTheirOrder) {
    EXPECT_EQ(WorkspaceAutomationError::safariCouldNotLaunch({}).errorCase().index(), 0U);
    EXPECT_EQ(WorkspaceAutomationError::simulatorMenuUnavailable({}).errorCase().index(), 1U);
    EXPECT_EQ(WorkspaceAutomationError::targetUnavailable({}).errorCase().index(), 2U);
    EXPECT_EQ(WorkspaceAutomationError::simulatorWindowUnavailable({}).errorCase().index(), 3U);
    EXPECT_EQ(WorkspaceAutomationError::accessibilityPermissionMissing().errorCase().index(), 4U);
    EXPECT_EQ(WorkspaceAutomationError::safariDeveloperFeaturesMissing().errorCase().index(), 5U);
    EXPECT_EQ(WorkspaceAutomationError::developMenuUnavailable().errorCase().index(), 6U);
    EXPECT_EQ(WorkspaceAutomationError::inspectorWindowUnavailable().errorCase().index(), 7U);
}

} // namespace

} // namespace corvanta
