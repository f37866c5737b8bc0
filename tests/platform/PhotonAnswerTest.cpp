// SPDX-License-Identifier: MIT
#include "PhotonAnswer.h"

#include "support/JsonDecoder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace corvanta {
namespace {

using namespace Qt::Literals::StringLiterals;
using ::testing::IsEmpty;

QByteArray answer(const QByteArray& features) {
    return R"({"type":"FeatureCollection","features":[)" + features + "]}";
}

QByteArray feature(const QByteArray& properties, const QByteArray& coordinates = "[2.5,48.5]") {
    return R"({"type":"Feature","geometry":{"type":"Point","coordinates":)" + coordinates + R"(},"properties":{)" +
           properties + "}}";
}

std::vector<std::string> texts(const QByteArray& features) {
    std::vector<std::string> result;
    for (const PhotonPlace& place : photonPlaces(answer(features)))
        result.push_back((place.found.title + u" | "_s + place.found.subtitle).toStdString());
    return result;
}

TEST(PhotonAnswer, IsReadPlaceByPlace) {
    const auto places = photonPlaces(
        answer(feature(R"("name":"Eiffel Tower","street":"Avenue Gustave Eiffel","housenumber":"5","city":"Paris",)"
                       R"("district":"7th Arrondissement","state":"Ile-de-France","country":"France",)"
                       R"("osm_key":"tourism","osm_value":"attraction")",
                       "[2.2945,48.8583]")));
    ASSERT_EQ(places.size(), 1U);
    EXPECT_EQ(places[0].found,
              (FoundPlace{.title = u"Eiffel Tower"_s,
                          .subtitle = u"Avenue Gustave Eiffel 5, 7th Arrondissement, Paris, Ile-de-France, France"_s,
                          .coordinate = {48.8583, 2.2945}}));
    EXPECT_EQ(places[0].kind, PlaceResultTypes::pointOfInterest);
    EXPECT_FALSE(places[0].isSettlement);
}

TEST(PhotonAnswer, CallsAHouseByItsAddress) {
    EXPECT_EQ(texts(feature(R"("street":"Main Street","housenumber":"12","city":"Springfield")")),
              std::vector<std::string>{"Main Street 12 | Springfield"});
}

TEST(PhotonAnswer, SaysNothingTwice) {
    EXPECT_EQ(texts(feature(R"("name":"Berlin","city":"Berlin","state":"Berlin","country":"Germany")")),
              std::vector<std::string>{"Berlin | Germany"});
}

TEST(PhotonAnswer, TellsTownsFromStreetsAndHouses) {
    const auto places = photonPlaces(answer(feature(R"("name":"A","osm_key":"place","osm_value":"city")") + ',' +
                                            feature(R"("name":"B","osm_key":"place","osm_value":"house")") + ',' +
                                            feature(R"("name":"C","osm_key":"highway","osm_value":"primary")") + ',' +
                                            feature(R"("name":"D","osm_key":"amenity","osm_value":"cafe")")));
    ASSERT_EQ(places.size(), 4U);
    EXPECT_TRUE(places[0].isSettlement);
    for (const std::size_t index : {1U, 2U, 3U})
        EXPECT_FALSE(places[index].isSettlement) << index;
    EXPECT_EQ(places[2].kind, PlaceResultTypes::address);
    EXPECT_EQ(places[3].kind, PlaceResultTypes::pointOfInterest);
}

TEST(PhotonAnswer, LeavesOutWhatMakesNoSense) {
    const QByteArray good = feature(R"("name":"Good")");
    for (const QByteArray& bad :
         {QByteArray("null"), QByteArray("7"), QByteArray("{}"), QByteArray(R"({"properties":{"name":"No point"}})"),
          feature(R"("name":7)"), feature(R"("city":"Nameless")"), feature(R"("name":"")"), feature(R"("name":" ")"),
          feature(R"("name":"Short")", "[2]"), feature(R"("name":"None")", "null"),
          feature(R"("name":"Text")", R"(["a","b"])"), feature(R"("name":"North")", "[0,90.1]"),
          feature(R"("name":"East")", "[180.5,0]"), feature(R"("name":"Far")", "[1e300,1e300]")})
        EXPECT_EQ(texts(bad + ',' + good), std::vector<std::string>{"Good | "}) << bad.toStdString();
}

TEST(PhotonAnswer, IsShownAsPlainTextOfOneLine) {
    EXPECT_EQ(texts(feature(R"("name":"<b>One</b>\n\ttwo\u0000three\u202efour\u200f")")),
              std::vector<std::string>{"<b>One</b> two threefour | "});
    const auto places = photonPlaces(answer(feature(R"("name":")" + QByteArray(100'000, 'x') + '"')));
    ASSERT_EQ(places.size(), 1U);
    EXPECT_LE(places[0].found.title.size(), 120);
}

TEST(PhotonAnswer, IsNotReadWithoutEnd) {
    QByteArray many = feature(R"("name":"x")");
    for (int count = 0; count < 10; ++count)
        many += ',' + many;
    EXPECT_EQ(photonPlaces(answer(many)).size(), 50U);
}

TEST(PhotonAnswer, IsNotReadWithoutEndWhereItMakesNoSense) {
    const QByteArray good = feature(R"("name":"Good")");
    EXPECT_EQ(texts(QByteArray("0,").repeated(49) + good), std::vector<std::string>{"Good | "});
    EXPECT_THAT(texts(QByteArray("0,").repeated(50) + good), IsEmpty());
    EXPECT_THAT(texts(QByteArray("{},").repeated(50) + good), IsEmpty());
}

TEST(PhotonAnswer, MayBeEmpty) {
    EXPECT_THAT(photonPlaces(answer("")), IsEmpty());
}

TEST(PhotonAnswer, IsRefusedWhenItIsSomethingElse) {
    for (const char* const other :
         {"", "{}", "[]", "<html></html>", "{\"features\":7}", "{\"features\":null}", "{\"features\":[", "\xFF\xFE"})
        EXPECT_THROW((void)photonPlaces(other), JsonDecodingError) << other;
}

} // namespace
} // namespace corvanta
