// SPDX-License-Identifier: MIT
#include "ConformanceRun.h"

#include <gtest/gtest.h>

#include <memory>

namespace corvanta {

namespace {

using namespace Qt::Literals::StringLiterals;

/// One home for all of its transcripts, with {phone} booted before the first; each leaves it as it found it.
class BootedConformance : public ::testing::TestWithParam<Transcript> {
protected:
    static void SetUpTestSuite() {
        if (qEnvironmentVariableIsEmpty("CORVANTA_VIRTUAL_DESKTOP")) {
            return;
        }
        run = std::make_unique<ConformanceRun>(true);
        run->expect({.name = u"Boot"_s,
                     .source = u"own"_s,
                     .steps = {{.given = {},
                                .command = u"simctl bootstatus {phone} -b"_s,
                                .input = {},
                                .output = {u"..."_s},
                                .error = {},
                                .files = {}}}});
    }

    static void TearDownTestSuite() {
        if (run) {
            run->expect({.name = u"ShutDown"_s,
                         .source = u"own"_s,
                         .steps = {{.given = {},
                                    .command = u"simctl shutdown all"_s,
                                    .input = {},
                                    .output = {},
                                    .error = {},
                                    .files = {}}}});
        }
        run.reset();
    }

    void SetUp() override {
        if (!run) {
            GTEST_SKIP() << "needs a desktop of its own: run it through tests/support/virtual-desktop";
        }
    }

    static inline std::unique_ptr<ConformanceRun> run;
};

TEST_P(BootedConformance, AnswersAsWritten) {
    run->expect(GetParam());
}

INSTANTIATE_TEST_SUITE_P(Booted, BootedConformance, ::testing::ValuesIn(transcriptsOf("booted.transcript")),
                         [](const auto& given) { return given.param.name.toStdString(); });

} // namespace

} // namespace corvanta
