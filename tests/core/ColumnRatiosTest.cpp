// SPDX-License-Identifier: MIT
#include "layout/ColumnRatios.h"

#include "layout/ColumnRatiosJson.h"

#include <gtest/gtest.h>

#include <QJsonObject>

namespace corvanta {
namespace {

TEST(ColumnRatios, KeepsItsValuesAsGiven) {
    const ColumnRatios ratios{2, -3, 0};
    EXPECT_EQ(ratios.controls, 2);
    EXPECT_EQ(ratios.simulator, -3);
    EXPECT_EQ(ratios.inspector, 0);
}

TEST(ColumnRatios, NormalizesToASumOfOne) {
    const ColumnRatios ratios = ColumnRatios{2, 3, 5}.normalized();
    EXPECT_DOUBLE_EQ(ratios.controls, 0.2);
    EXPECT_DOUBLE_EQ(ratios.simulator, 0.3);
    EXPECT_DOUBLE_EQ(ratios.inspector, 0.5);
}

TEST(ColumnRatios, RaisesSmallValuesToTheFloor) {
    const ColumnRatios ratios = ColumnRatios{1, 0, 0.05}.normalized();
    EXPECT_DOUBLE_EQ(ratios.controls, 1 / 1.1);
    EXPECT_DOUBLE_EQ(ratios.simulator, 0.05 / 1.1);
    EXPECT_DOUBLE_EQ(ratios.inspector, 0.05 / 1.1);
}

TEST(ColumnRatios, ReadsTheStoredFormThatItWrote) {
    const ColumnRatios ratios{0.25, 0.3, 0.45};
    const QJsonObject object = encodeJson(ratios);
    EXPECT_EQ(decodeColumnRatios(JsonDecoder(object)), ratios);
    for (const QString& key : object.keys()) {
        QJsonObject incomplete = object;
        incomplete.remove(key);
        EXPECT_THROW((void)decodeColumnRatios(JsonDecoder(incomplete)), JsonDecodingError) << key.toStdString();
    }
}

} // namespace
} // namespace corvanta
