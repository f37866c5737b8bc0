// SPDX-License-Identifier: MIT
#include "support/JsonEncoding.h"

#include "Printing.h"
#include "support/JsonDecoder.h"

#include <gtest/gtest.h>

#include <QJsonArray>
#include <QJsonObject>

#include <limits>

namespace corvanta {
namespace {

using namespace Qt::Literals::StringLiterals;

TEST(JsonEncoding, ReadsEveryDoubleAsItWasWritten) {
    for (const double value : {0.1, 1.0 / 3, 37.33182, -122.03118, 800000000.1234567, 5e-324, 1e300, 12.0,
                               9007199254740993.0, std::numeric_limits<double>::max()}) {
        const QByteArray document = jsonDocument(QJsonArray{encodeJson(value)});
        EXPECT_EQ(JsonDecoder::parse(document).elements().at(0).number(), value) << document.toStdString();
    }
}

TEST(JsonEncoding, RefusesNumbersThatAreNotFinite) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    EXPECT_THROW((void)encodeJson(infinity), JsonEncodingError);
    EXPECT_THROW((void)encodeJson(-infinity), JsonEncodingError);
    EXPECT_THROW((void)encodeJson(std::numeric_limits<double>::quiet_NaN()), JsonEncodingError);
    EXPECT_THROW((void)encodeJson(Date{infinity}), JsonEncodingError);
}

TEST(JsonEncoding, SaysWhyItRefuses) {
    EXPECT_EQ(JsonEncodingError().errorDescription(), u"A number that is not finite cannot be stored.");
}

TEST(JsonEncoding, WritesDatesAsSecondsAndIdentitiesInUpperCase) {
    const QJsonObject object{{u"date"_s, encodeJson(Date{800000000.5})},
                             {u"id"_s, encodeJson(QUuid(u"e621e1f8-c36c-495a-93fc-0c247a3e6e5f"_s))}};
    EXPECT_EQ(jsonDocument(object), R"({"date":800000000.5,"id":"E621E1F8-C36C-495A-93FC-0C247A3E6E5F"})");
}

} // namespace
} // namespace corvanta
