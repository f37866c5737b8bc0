// SPDX-License-Identifier: MIT
#include "CoordinatePlaceSearch.h"

#include "TaskWaiting.h"

#include <gtest/gtest.h>

namespace corvanta {
namespace {

std::vector<MapItem> search(const QString& title) {
    CoordinatePlaceSearch places;
    return testing::WatchedTask(places.search({.title = title, .subtitle = {}, .source = nullptr})).result();
}

TEST(CoordinatePlaceSearch, FindsThePointThatIsWritten) {
    for (const auto& text : {QStringLiteral("41.3874,-2.5"), QStringLiteral(" 41.3874 , -2.5 ")}) {
        const auto found = search(text);
        ASSERT_EQ(found.size(), 1U);
        EXPECT_EQ(found.front().coordinate, (Coordinate{41.3874, -2.5}));
        EXPECT_EQ(found.front().name, std::nullopt);
    }
}

TEST(CoordinatePlaceSearch, FindsNothingInAnyOtherText) {
    for (const auto& text :
         {QStringLiteral("Barcelona"), QString(), QStringLiteral("41"), QStringLiteral("41,"), QStringLiteral("1,2,3"),
          QStringLiteral("91,0"), QStringLiteral("0,181"), QStringLiteral("nan,0"), QStringLiteral("0,inf")})
        EXPECT_TRUE(search(text).empty()) << qPrintable(text);
}

} // namespace
} // namespace corvanta
