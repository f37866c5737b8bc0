// SPDX-License-Identifier: MIT
#include "CoordinateText.h"

#include <gtest/gtest.h>

namespace corvanta {
namespace {

TEST(CoordinateText, IsThePointThatIsWritten) {
    for (const auto& text : {QStringLiteral("41.3874,-2.5"), QStringLiteral(" 41.3874 , -2.5 ")})
        EXPECT_EQ(coordinateFromText(text), (Coordinate{41.3874, -2.5})) << qPrintable(text);
}

TEST(CoordinateText, IsNoPointInAnyOtherText) {
    for (const auto& text :
         {QStringLiteral("Barcelona"), QString(), QStringLiteral("41"), QStringLiteral("41,"), QStringLiteral("1,2,3"),
          QStringLiteral("91,0"), QStringLiteral("0,181"), QStringLiteral("nan,0"), QStringLiteral("0,inf")})
        EXPECT_EQ(coordinateFromText(text), std::nullopt) << qPrintable(text);
}

} // namespace
} // namespace corvanta
