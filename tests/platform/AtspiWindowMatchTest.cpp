// SPDX-License-Identifier: MIT
#include "AtspiWindowMatch.h"

#include <gtest/gtest.h>

#include <limits>
#include <map>

namespace corvanta {
namespace {

using namespace Qt::Literals::StringLiterals;
using Window = AtspiWindowMatch::Window;

AtspiReference reference(const QString& path, const QString& bus = u":1.1"_s) {
    return {bus, path};
}

class AtspiWindowMatchTest : public ::testing::Test {
protected:
    std::optional<Window> behind(const AtspiReference& window, const QString& title, const PixelRect& extents = {}) {
        std::vector<Window> candidates;
        for (const auto& [candidate, about] : known)
            candidates.push_back(candidate);
        const AtspiWindowMatch::Facts facts{
            [this](Window candidate) { return known.at(candidate).title; },
            [this](Window candidate) { return known.at(candidate).frame; },
            [&] {
                ++extentsAsked;
                return extents;
            },
        };
        return match.windowBehind(window, title, candidates, facts);
    }

    struct About {
        QString title;
        PixelRect frame;
    };

    std::map<Window, About> known;
    int extentsAsked = 0;
    AtspiWindowMatch match;
};

TEST_F(AtspiWindowMatchTest, FindsNothingWhereThereIsNoWindow) {
    EXPECT_EQ(behind(reference(u"/a"_s), u"A"_s), std::nullopt);
    EXPECT_EQ(match.size(), 0);
}

TEST_F(AtspiWindowMatchTest, TakesTheOnlyWindowWhateverItsTitle) {
    known = {{7, {u"Else"_s, {}}}};
    EXPECT_EQ(behind(reference(u"/a"_s), u"A"_s), 7U);
    EXPECT_EQ(extentsAsked, 0);
}

TEST_F(AtspiWindowMatchTest, PrefersTheWindowOfThatTitle) {
    known = {{7, {u"Else"_s, {}}}, {8, {u"A"_s, {500, 500, 10, 10}}}};
    EXPECT_EQ(behind(reference(u"/a"_s), u"A"_s), 8U);
    EXPECT_EQ(extentsAsked, 0);
}

TEST_F(AtspiWindowMatchTest, TakesTheNearestOfSeveral) {
    known = {{7, {u"A"_s, {0, 0, 400, 300}}}, {8, {u"A"_s, {600, 400, 400, 300}}}, {9, {u"B"_s, {590, 395, 400, 300}}}};
    EXPECT_EQ(behind(reference(u"/a"_s), u"A"_s, {590, 395, 400, 300}), 8U);
    EXPECT_EQ(behind(reference(u"/b"_s), u"A"_s, {10, 10, 400, 300}), 7U);
    EXPECT_EQ(behind(reference(u"/c"_s), u"C"_s, {590, 395, 400, 300}), 9U);
}

TEST_F(AtspiWindowMatchTest, ComparesExtentsOfAnySize) {
    constexpr int most = std::numeric_limits<int>::max();
    constexpr int least = std::numeric_limits<int>::min();
    known = {{7, {u"A"_s, {least, least, most, most}}}, {8, {u"A"_s, {0, 0, 400, 300}}}};
    EXPECT_EQ(behind(reference(u"/a"_s), u"A"_s, {most, most, most, most}), 8U);
}

TEST_F(AtspiWindowMatchTest, StaysWithTheWindowThroughMovesAndNewTitles) {
    known = {{7, {u"A"_s, {0, 0, 400, 300}}}, {8, {u"A"_s, {600, 400, 400, 300}}}};
    ASSERT_EQ(behind(reference(u"/a"_s), u"A"_s, {0, 0, 400, 300}), 7U);
    known.at(7) = {u"Renamed"_s, {600, 400, 400, 300}};
    EXPECT_EQ(behind(reference(u"/a"_s), u"A"_s, {600, 400, 400, 300}), 7U);
    EXPECT_EQ(extentsAsked, 1);
}

TEST_F(AtspiWindowMatchTest, LooksAgainWhenTheWindowIsGone) {
    known = {{7, {u"A"_s, {}}}};
    ASSERT_EQ(behind(reference(u"/a"_s), u"A"_s), 7U);
    known = {{8, {u"A"_s, {}}}};
    EXPECT_EQ(behind(reference(u"/a"_s), u"A"_s), 8U);
    EXPECT_EQ(match.size(), 1);
}

TEST_F(AtspiWindowMatchTest, LooksAgainWhereItTookAWindowOfAnotherTitle) {
    known = {{7, {u"Else"_s, {}}}};
    ASSERT_EQ(behind(reference(u"/a"_s), u"A"_s), 7U);
    EXPECT_EQ(match.size(), 0);
    known = {{7, {u"Else"_s, {}}}, {8, {u"A"_s, {}}}};
    EXPECT_EQ(behind(reference(u"/a"_s), u"A"_s), 8U);
    EXPECT_EQ(match.size(), 1);
}

TEST_F(AtspiWindowMatchTest, ForgetsTheWindowsOfOneProcess) {
    known = {{7, {u"A"_s, {}}}, {8, {u"B"_s, {}}}};
    ASSERT_EQ(behind(reference(u"/a"_s), u"A"_s), 7U);
    ASSERT_EQ(behind(reference(u"/b"_s), u"B"_s), 8U);
    ASSERT_EQ(behind(reference(u"/a"_s, u":1.2"_s), u"A"_s), 7U);
    match.forget(u":1.1"_s);
    EXPECT_EQ(match.size(), 1);
    known.at(7).title = u"Renamed"_s;
    known.at(8).title = u"A"_s;
    EXPECT_EQ(behind(reference(u"/a"_s), u"A"_s), 8U);
    EXPECT_EQ(behind(reference(u"/a"_s, u":1.2"_s), u"A"_s), 7U);
}

} // namespace
} // namespace corvanta
