// SPDX-License-Identifier: MIT
#include "workspace/WorkspacePhase.h"

#include "Printing.h"

#include <gtest/gtest.h>

#include <string>

namespace corvanta {
namespace {

using namespace Qt::Literals::StringLiterals;

struct Case {
    std::string name;
    WorkspacePhase phase;
    QString displayName;
    bool isWorking;

    friend void PrintTo(const Case& row, std::ostream* stream) { *stream << row.name; }
};

class WorkspacePhaseTable : public ::testing::TestWithParam<Case> {};

TEST_P(WorkspacePhaseTable, HasItsNamesAndItsKind) {
    const Case& row = GetParam();
    EXPECT_EQ(rawValue(row.phase), QString::fromStdString(row.name));
    EXPECT_EQ(workspacePhaseFromRawValue(QString::fromStdString(row.name)), row.phase);
    EXPECT_EQ(displayName(row.phase), row.displayName);
    EXPECT_EQ(isWorking(row.phase), row.isWorking);
}

INSTANTIATE_TEST_SUITE_P(, WorkspacePhaseTable,
                         ::testing::Values(Case{"idle", WorkspacePhase::idle, u"Idle"_s, false},
                                           Case{"preflight", WorkspacePhase::preflight, u"Checking setup"_s, true},
                                           Case{"booting", WorkspacePhase::booting, u"Booting"_s, true},
                                           Case{"openingPage", WorkspacePhase::openingPage, u"Opening page"_s, true},
                                           Case{"attachingInspector", WorkspacePhase::attachingInspector,
                                                u"Attaching inspector"_s, true},
                                           Case{"running", WorkspacePhase::running, u"Running"_s, false},
                                           Case{"failed", WorkspacePhase::failed, u"Needs attention"_s, false}),
                         testing::CaseName());

TEST(WorkspacePhase, ListsEveryCaseInTheOrderOfARun) {
    using enum WorkspacePhase;
    EXPECT_EQ(allWorkspacePhases,
              (std::array{idle, preflight, booting, openingPage, attachingInspector, running, failed}));
}

TEST(WorkspacePhase, DecodesItsRawValue) {
    const auto document = JsonDecoder::parse(R"(["openingPage"])");
    EXPECT_EQ(decodeWorkspacePhase(document.elements().at(0)), WorkspacePhase::openingPage);
}

TEST(WorkspacePhase, RefusesAnUnknownText) {
    EXPECT_EQ(workspacePhaseFromRawValue(u"paused"), std::nullopt);
    EXPECT_EQ(workspacePhaseFromRawValue(u"Idle"), std::nullopt);
    for (const JsonDecoder& value : JsonDecoder::parse(R"(["paused", "Idle", "", 0, null])").elements())
        EXPECT_THROW((void)decodeWorkspacePhase(value), JsonDecodingError);
}

} // namespace
} // namespace corvanta
