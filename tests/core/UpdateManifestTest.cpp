// SPDX-License-Identifier: MIT
#include "updates/UpdateManifest.h"

#include "support/JsonEncoding.h"

#include "Printing.h"

#include <QJsonArray>

#include <gtest/gtest.h>

#include <limits>
#include <optional>

namespace corvanta {
namespace {

using namespace Qt::Literals::StringLiterals;

URL url(QStringView text) {
    return URL::parse(text).value_or(URL());
}

const QString digest = u"0123456789abcdef"_s.repeated(4);

QJsonObject fullObject() {
    return {
        {u"version"_s, u"1.4.0"_s},
        {u"build"_s, 27},
        {u"downloadURL"_s, u"https://downloads.example/Corvanta.dmg"_s},
        {u"releaseNotes"_s, u"Faster.\n<b>Bolder.</b>"_s},
        {u"sha256"_s, digest},
    };
}

UpdateManifest decoded(const QByteArray& document) {
    return decodeUpdateManifest(JsonDecoder::parse(document));
}

UpdateManifest decoded(const QJsonObject& object) {
    return decodeUpdateManifest(JsonDecoder(object));
}

/// A whole document whose build is spelled `number`.
QByteArray documentWithBuild(const QByteArray& number) {
    QByteArray document = jsonDocument(fullObject());
    EXPECT_TRUE(document.contains("\"build\":27"));
    return document.replace("\"build\":27", "\"build\":" + number);
}

TEST(UpdateManifest, ReadsEveryField) {
    const UpdateManifest expected{
        .version = u"1.4.0"_s,
        .build = 27,
        .downloadURL = url(u"https://downloads.example/Corvanta.dmg"),
        .releaseNotes = u"Faster.\n<b>Bolder.</b>"_s,
        .sha256 = digest,
    };
    EXPECT_EQ(decoded(jsonDocument(fullObject())), expected);
}

TEST(UpdateManifest, WritesExactlyItsFiveKeys) {
    EXPECT_EQ(encodeJson(decoded(fullObject())), fullObject());
}

TEST(UpdateManifest, SurvivesWritingAndReading) {
    UpdateManifest manifest = decoded(fullObject());
    manifest.build = 9'007'199'254'740'993;
    manifest.downloadURL = url(u"HTTPS://user@b\u00FCcher.example:8443/a b?q=%2F#Top");
    EXPECT_EQ(decoded(jsonDocument(encodeJson(manifest))), manifest);
}

TEST(UpdateManifest, IgnoresKeysThatItDoesNotKnow) {
    QJsonObject object = fullObject();
    object.insert(u"minimumSystemVersion"_s, u"15.0"_s);
    EXPECT_EQ(decoded(object), decoded(fullObject()));
}

TEST(UpdateManifest, DiffersInEachField) {
    const UpdateManifest manifest = decoded(fullObject());
    for (const QString& key : {u"version"_s, u"downloadURL"_s, u"releaseNotes"_s, u"sha256"_s}) {
        QJsonObject object = fullObject();
        object.insert(key, u"other"_s);
        EXPECT_NE(decoded(object), manifest) << key.toStdString();
    }
    QJsonObject object = fullObject();
    object.insert(u"build"_s, 28);
    EXPECT_NE(decoded(object), manifest);
}

TEST(UpdateManifest, NamesTheKeyThatIsMissing) {
    for (const QString& key : fullObject().keys()) {
        QJsonObject object = fullObject();
        object.remove(key);
        try {
            (void)decoded(object);
            ADD_FAILURE() << key.toStdString();
        } catch (const JsonDecodingError& error) {
            EXPECT_EQ(error, JsonDecodingError::keyNotFound(key));
        }
    }
}

TEST(UpdateManifest, RefusesAValueOfAnotherType) {
    for (const QString& key : fullObject().keys()) {
        const QJsonValue wrong = key == u"build" ? QJsonValue(u"27"_s) : QJsonValue(27);
        for (const QJsonValue& value : {wrong, QJsonValue(QJsonValue::Null), QJsonValue(true), QJsonValue(QJsonArray()),
                                        QJsonValue(QJsonObject())}) {
            QJsonObject object = fullObject();
            object.insert(key, value);
            EXPECT_THROW((void)decoded(object), JsonDecodingError) << key.toStdString();
        }
    }
}

TEST(UpdateManifest, RefusesWhatIsNoObject) {
    EXPECT_THROW((void)decoded("[]"), JsonDecodingError);
    EXPECT_THROW((void)decoded("27"), JsonDecodingError);
    EXPECT_THROW((void)decoded("<html>"), JsonDecodingError);
    EXPECT_THROW((void)decoded(QByteArray()), JsonDecodingError);
    EXPECT_THROW((void)decoded("[" + jsonDocument(fullObject()) + "]"), JsonDecodingError);
    EXPECT_THROW((void)decoded(jsonDocument(fullObject()).chopped(1)), JsonDecodingError);
}

TEST(UpdateManifest, RefusesADownloadAddressThatIsNoURL) {
    for (const QString& text : {u""_s, u"https://bad host/"_s, u"https://host:port/"_s, u"https://[::1"_s}) {
        QJsonObject object = fullObject();
        object.insert(u"downloadURL"_s, text);
        try {
            (void)decoded(object);
            ADD_FAILURE() << text.toStdString();
        } catch (const JsonDecodingError& error) {
            EXPECT_EQ(error, JsonDecodingError::typeMismatch(u"downloadURL"_s, u"a URL"_s));
        }
    }
}

TEST(UpdateManifest, ReadsADownloadAddressOfAnyScheme) {
    for (const QString& text : {u"http://a/b"_s, u"relative/path"_s, u"file:///etc/passwd"_s, u"HTTPS://A/"_s}) {
        QJsonObject object = fullObject();
        object.insert(u"downloadURL"_s, text);
        EXPECT_EQ(decoded(object).downloadURL.absoluteString(), text);
    }
}

struct BuildCase {
    const char* name;
    QByteArray spelling;
    std::optional<std::int64_t> build;
};

void PrintTo(const BuildCase& value, std::ostream* stream) {
    *stream << value.name;
}

class UpdateManifestBuild : public ::testing::TestWithParam<BuildCase> {};

TEST_P(UpdateManifestBuild, IsAWholeNumberOfSixtyFourBits) {
    const QByteArray document = documentWithBuild(GetParam().spelling);
    if (GetParam().build)
        EXPECT_EQ(decoded(document).build, GetParam().build);
    else
        EXPECT_THROW((void)decoded(document), JsonDecodingError);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, UpdateManifestBuild,
    ::testing::Values(BuildCase{"zero", "0", 0}, BuildCase{"negative", "-3", -3}, BuildCase{"wholeFraction", "1.0", 1},
                      BuildCase{"exponent", "1e2", 100},
                      BuildCase{"aboveDoublePrecision", "9007199254740993", 9'007'199'254'740'993},
                      BuildCase{"largest", "9223372036854775807", std::numeric_limits<std::int64_t>::max()},
                      BuildCase{"smallest", "-9223372036854775808", std::numeric_limits<std::int64_t>::min()},
                      BuildCase{"fraction", "1.5", std::nullopt}, BuildCase{"smallFraction", "27.000001", std::nullopt},
                      BuildCase{"tooLarge", "9223372036854775808", std::nullopt},
                      BuildCase{"tooSmall", "-9223372036854777856", std::nullopt},
                      BuildCase{"veryLarge", "1e30", std::nullopt}, BuildCase{"beyondDoubles", "1e400", std::nullopt},
                      BuildCase{"text", "\"27\"", std::nullopt}, BuildCase{"boolean", "true", std::nullopt},
                      BuildCase{"null", "null", std::nullopt}),
    testing::CaseName());

} // namespace
} // namespace corvanta
