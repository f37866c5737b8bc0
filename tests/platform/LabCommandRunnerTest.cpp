// SPDX-License-Identifier: MIT
#include "LabCommandRunner.h"

#include "FakeCommandRunner.h"
#include "TaskWaiting.h"

#include <gtest/gtest.h>

namespace corvanta {
namespace {

using namespace Qt::Literals::StringLiterals;
using namespace corvanta::testing;

struct Case {
    const char* name;
    QString asked;
    QString run;
};

void PrintTo(const Case& value, std::ostream* stream) {
    *stream << value.name;
}

class LabCommandRunnerPaths : public ::testing::TestWithParam<Case> {};

TEST_P(LabCommandRunnerPaths, RunsTheProgramThatStandsIn) {
    auto owned = std::make_unique<FakeCommandRunner>();
    FakeCommandRunner& inner = *owned;
    inner.reply({3, "output", "error"});
    LabCommandRunner runner(std::move(owned), LabFolder(u"/lab"_s, u"/home"_s));
    WatchedTask<ProcessResult> task(runner.run({GetParam().asked, {u"simctl"_s, u"list"_s}}));
    ASSERT_TRUE(task.isDone());
    EXPECT_EQ(task.result(), (ProcessResult{3, "output", "error"}));
    ASSERT_EQ(inner.commands().size(), 1U);
    EXPECT_EQ(inner.commands().front(), (ProcessCommand{GetParam().run, {u"simctl"_s, u"list"_s}}));
}

INSTANTIATE_TEST_SUITE_P(All, LabCommandRunnerPaths,
                         ::testing::Values(Case{"xcrun", u"/usr/bin/xcrun"_s, u"/lab/xcrun"_s},
                                           Case{"open", u"/usr/bin/open"_s, u"/lab/open"_s},
                                           Case{"xcodebuild", u"/usr/bin/xcodebuild"_s, u"/lab/xcodebuild"_s},
                                           Case{"otherProgram", u"/usr/bin/true"_s, u"/usr/bin/true"_s},
                                           Case{"otherFolder", u"/opt/bin/xcrun"_s, u"/opt/bin/xcrun"_s},
                                           Case{"otherSpelling", u"/usr/bin/../bin/xcrun"_s,
                                                u"/usr/bin/../bin/xcrun"_s},
                                           Case{"relative", u"xcrun"_s, u"xcrun"_s}),
                         [](const ::testing::TestParamInfo<Case>& info) { return std::string(info.param.name); });

} // namespace
} // namespace corvanta
