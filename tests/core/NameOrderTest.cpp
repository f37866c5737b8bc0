// SPDX-License-Identifier: MIT
#include "support/NameOrder.h"

#include <gtest/gtest.h>

#include <QLocale>

namespace corvanta {
namespace {

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
