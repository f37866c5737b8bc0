// SPDX-License-Identifier: MIT
#include "ConformanceRun.h"

#include <QUrl>

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

namespace corvanta {

namespace {

using namespace Qt::Literals::StringLiterals;

class Conformance : public ::testing::TestWithParam<Transcript> {};

TEST_P(Conformance, AnswersAsWritten) {
    ConformanceRun(false).expect(GetParam());
}

INSTANTIATE_TEST_SUITE_P(Off, Conformance, ::testing::ValuesIn(transcriptsOf("off.transcript")),
                         [](const auto& given) { return given.param.name.toStdString(); });

std::vector<Transcript> all() {
    std::vector<Transcript> result = transcriptsOf("off.transcript");
    std::ranges::copy(transcriptsOf("booted.transcript"), std::back_inserter(result));
    return result;
}

TEST(Transcripts, AreManyAndSayWhereTheyAreFrom) {
    std::set<QString> names;
    std::size_t cited = 0;
    for (const Transcript& transcript : all()) {
        SCOPED_TRACE(transcript.name.toStdString());
        EXPECT_TRUE(names.insert(transcript.name).second) << "its name is its own";
        EXPECT_FALSE(transcript.steps.empty());
        if (transcript.source != u"own") {
            const QUrl address(transcript.source);
            EXPECT_TRUE(address.isValid() && address.scheme() == u"https" && !address.host().isEmpty());
            ++cited;
        }
    }
    EXPECT_GE(names.size(), 120U);
    EXPECT_GE(cited, 40U);
}

TEST(Transcripts, AreComparedLineByLine) {
    TranscriptValues values;
    EXPECT_EQ(difference({u"a"_s, u"b"_s}, "a\nb\n", values), std::nullopt);
    for (const char* other : {"a\nb", "a\nB\n", "a\n", "a\nb\nc\n", ""}) {
        EXPECT_NE(difference({u"a"_s, u"b"_s}, other, values), std::nullopt) << other;
    }
    EXPECT_EQ(difference({}, "", values), std::nullopt);
    EXPECT_NE(difference({}, "a\n", values), std::nullopt);
    EXPECT_EQ(difference({u"a"_s, u"..."_s, u"d"_s}, "a\nb\nc\nd\n", values), std::nullopt);
    EXPECT_NE(difference({u"a"_s, u"..."_s, u"d"_s}, "a\nb\n", values), std::nullopt);
}

TEST(Transcripts, KeepWhatALineCaptures) {
    TranscriptValues values;
    EXPECT_EQ(difference({u"{new:udid}"_s}, "11111111-2222-4333-8444-000000000001\n", values), std::nullopt);
    EXPECT_EQ(filledIn(u"boot {new}"_s, values), u"boot 11111111-2222-4333-8444-000000000001");
    EXPECT_NE(difference({u"x {new}"_s}, "x 11111111-2222-4333-8444-000000000002\n", values), std::nullopt);
    EXPECT_NE(difference({u"{udid}"_s}, "nothing\n", values), std::nullopt);
}

TEST(Transcripts, SplitCommandsAsAShellDoes) {
    EXPECT_EQ(splitCommand(u"simctl boot \"iPhone 16 Pro\"  --a='b c' ''"_s),
              (QStringList{u"simctl"_s, u"boot"_s, u"iPhone 16 Pro"_s, u"--a=b c"_s, u""_s}));
}

} // namespace

} // namespace corvanta
