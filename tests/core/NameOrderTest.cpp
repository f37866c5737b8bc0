// SPDX-License-Identifier: MIT
#include "support/NameOrder.h"

#include <gtest/gtest.h>

#include <QLocale>
#include <QStringList>

#include <compare>
#include <random>

namespace corvanta {
namespace {

using namespace Qt::Literals::StringLiterals;

TEST(CompareNames, ComparesDigitRunsByTheirNumber) {
    EXPECT_LT(compareNames(u"iPhone 9", u"iPhone 10"), 0);
    EXPECT_GT(compareNames(u"iPhone 16", u"iPhone 9 Plus"), 0);
}

TEST(CompareNames, DisregardsCase) {
    EXPECT_EQ(compareNames(u"iPhone SE", u"IPHONE se"), 0);
    EXPECT_LT(compareNames(u"apple", u"Banana"), 0);
}

TEST(CompareNames, TellsAccentsApart) {
    EXPECT_NE(compareNames(u"resume", u"résumé"), 0);
}

TEST(CompareNames, PutsTheShorterNameFirst) {
    EXPECT_LT(compareNames(u"iPhone 16", u"iPhone 16 Pro"), 0);
}

std::vector<std::size_t> ranks(const QStringList& names) {
    return nameRanks({names.begin(), names.end()});
}

TEST(NameRanks, GiveEachNameItsPlace) {
    EXPECT_EQ(ranks({u"b"_s, u"a"_s, u"c"_s}), (std::vector<std::size_t>{1, 0, 2}));
    EXPECT_EQ(ranks({}), std::vector<std::size_t>());
}

TEST(NameRanks, AreOneForNamesThatDoNotDiffer) {
    EXPECT_EQ(ranks({u"iPhone"_s, u"iPad"_s, u"IPHONE"_s, u"iPhone"_s, u"iPhone 007"_s, u"iphone 7"_s}),
              (std::vector<std::size_t>{1, 0, 1, 1, 2, 2}));
}

TEST(NameRanks, FollowTheOrderOfNamesWhateverTheyAreMadeOf) {
    std::mt19937 random(2026);
    const QStringList parts{u"iPhone"_s,  u"IPAD"_s, u"x"_s,  u"Xʀ"_s, u"Xs"_s, u"é"_s, u"Å"_s,     u"z"_s, u"007"_s,
                            u"10"_s,      u"9"_s,    u" "_s,  u"-"_s,  u"("_s,  u"@"_s, u"~"_s,     u"_"_s, u"日本"_s,
                            u"e\u0301"_s, u"ß"_s,    u"ss"_s, u"١٢"_s, u"😀"_s, u"I"_s, u"\u200b"_s};
    for (int round = 0; round < 200; ++round) {
        QStringList names;
        for (int number = 0; number < 30; ++number) {
            QString name;
            for (auto left = random() % 4; left > 0; --left)
                name += parts.at(static_cast<qsizetype>(random() % static_cast<unsigned>(parts.size())));
            names.append(name);
        }
        const std::vector<std::size_t> found = ranks(names);
        for (std::size_t left = 0; left < found.size(); ++left) {
            for (std::size_t right = 0; right < found.size(); ++right) {
                const auto compared =
                    compareNames(names[static_cast<qsizetype>(left)], names[static_cast<qsizetype>(right)]) <=> 0;
                ASSERT_TRUE((found[left] <=> found[right]) == compared)
                    << names[static_cast<qsizetype>(left)].toStdString() << " and "
                    << names[static_cast<qsizetype>(right)].toStdString();
            }
        }
    }
}

TEST(ContainsName, DisregardsCase) {
    EXPECT_TRUE(containsName(u"My IPHONE 16 Pro", u"iPhone 16"));
    EXPECT_TRUE(containsName(u"ÉCRAN", u"écran"));
}

TEST(ContainsName, NeedsThePartAsAWhole) {
    EXPECT_FALSE(containsName(u"iPhone 16", u"iPhone 16 Pro"));
    EXPECT_FALSE(containsName(u"", u"iPhone"));
}

TEST(ContainsName, DoesNotContainAnEmptyPart) {
    EXPECT_FALSE(containsName(u"iPhone", u""));
    EXPECT_FALSE(containsName(u"", u""));
}

TEST(ContainsName, TakesBothSpellingsOfAnAccentedLetterAsOne) {
    EXPECT_TRUE(containsName(u"Rene\u0301s iPhone", u"rené"));
}

TEST(ContainsName, FollowsTheUsersLocale) {
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::Turkish));
    EXPECT_TRUE(containsName(u"DIŞ", u"dış"));
    EXPECT_FALSE(containsName(u"IPHONE", u"iphone"));
    QLocale::setDefault(before);
    EXPECT_TRUE(containsName(u"IPHONE", u"iphone"));
}

} // namespace
} // namespace corvanta
