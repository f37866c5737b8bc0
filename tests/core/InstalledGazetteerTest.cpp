// SPDX-License-Identifier: MIT
// Tests on the list of places that is shipped.
#include "places/Gazetteer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QFile>

#include <algorithm>
#include <string>

namespace corvanta {
namespace {

using namespace Qt::Literals::StringLiterals;
using ::testing::Contains;
using ::testing::ElementsAre;

class InstalledGazetteer : public ::testing::Test {
protected:
    static const Gazetteer& gazetteer() {
        static const Gazetteer opened(QStringLiteral(CORVANTA_GAZETTEER));
        return opened;
    }

    /// The first places that are found, as they are shown.
    static std::vector<std::string> found(const QString& text, std::size_t limit = 10) {
        std::vector<std::string> texts;
        for (const PlaceIndex index : gazetteer().search(text, limit)) {
            const GazetteerPlace place = gazetteer().place(index);
            texts.push_back((place.name + u", "_s + place.region + u", "_s + place.country).toStdString());
        }
        return texts;
    }

    static std::string first(const QString& text) {
        const auto texts = found(text, 1);
        return texts.empty() ? "nothing" : texts.front();
    }
};

TEST_F(InstalledGazetteer, HasAtLeast138000PlacesWithAPopulation) {
    PlaceIndex populated = gazetteer().count();
    while (populated > 0 && gazetteer().population(populated - 1) == 0)
        --populated;
    EXPECT_GE(populated, 138'000U);
}

TEST_F(InstalledGazetteer, IsSmall) {
    EXPECT_LT(QFile(QStringLiteral(CORVANTA_GAZETTEER)).size(), 5'000'000);
}

TEST_F(InstalledGazetteer, HasSensePlaceByPlace) {
    std::uint32_t previous = gazetteer().population(0);
    for (PlaceIndex index = 0; index < gazetteer().count(); ++index) {
        const GazetteerPlace place = gazetteer().place(index);
        ASSERT_FALSE(place.name.isEmpty()) << index;
        ASSERT_FALSE(place.country.isEmpty()) << index;
        ASSERT_LE(std::abs(place.coordinate.latitude), 90) << index;
        ASSERT_LE(std::abs(place.coordinate.longitude), 180) << index;
        ASSERT_LE(place.population, previous) << index;
        previous = place.population;
    }
}

TEST_F(InstalledGazetteer, KnowsEachWordOfEachNameInTheOrderThatTheSearchExpects) {
    const GazetteerFile file(QStringLiteral(CORVANTA_GAZETTEER));
    std::string name;
    std::string folded;
    std::string previous;
    std::size_t names = 0;
    for (std::uint32_t index = 0; index < file.wordStartCount(); ++index) {
        const auto start = file.wordStart(index);
        ASSERT_LT(start.place, file.placeCount());
        if (start.ordinal != 0)
            continue;
        ++names;
        file.readName(start.place, name);
        file.folding().fold(name, folded);
        ASSERT_LE(previous, folded) << index;
        previous = folded;
    }
    EXPECT_EQ(names, file.placeCount());
}

TEST_F(InstalledGazetteer, FindsEveryKindOfSpelling) {
    for (const QString& text : {u"munich"_s, u"münchen"_s, u"munchen"_s, u"muenchen"_s, u"MÜNCHEN"_s, u"мюнхен"_s})
        EXPECT_EQ(first(text), "Munich, Bavaria, Germany") << text.toStdString();
    EXPECT_EQ(first(u"köln"_s), "Köln, North Rhine-Westphalia, Germany");
    EXPECT_EQ(first(u"koeln"_s), "Köln, North Rhine-Westphalia, Germany");
    EXPECT_EQ(first(u"cologne"_s), "Köln, North Rhine-Westphalia, Germany");
    EXPECT_EQ(first(u"lodz"_s), "Łódź, Łódź Voivodeship, Poland");
    EXPECT_EQ(first(u"москва"_s), "Moscow, Moscow, Russia");
    EXPECT_EQ(first(u"東京"_s), "Tokyo, Tokyo, Japan");
    EXPECT_EQ(first(u"서울"_s), "Seoul, Seoul, South Korea");
    EXPECT_EQ(first(u"αθήνα"_s), "Athens, Attica, Greece");
    EXPECT_EQ(first(u"القاهرة"_s), "Cairo, Cairo, Egypt");
}

TEST_F(InstalledGazetteer, PutsWhatIsLookedForFirst) {
    EXPECT_EQ(first(u"s"_s), "Shanghai, Shanghai, China");
    EXPECT_EQ(first(u"san fra"_s), "San Francisco, California, United States");
    EXPECT_EQ(first(u"sao paulo"_s), "São Paulo, São Paulo, Brazil");
    EXPECT_EQ(first(u"par"_s), "Paris, Île-de-France, France");
    EXPECT_EQ(first(u"paris tex"_s), "Paris, Texas, United States");
    EXPECT_EQ(first(u"portland or"_s), "Portland, Oregon, United States");
    EXPECT_EQ(first(u"york"_s), "York, England, United Kingdom");
    EXPECT_THAT(found(u"york"_s), Contains("New York City, New York, United States"));
    EXPECT_THAT(found(u"angeles"_s), Contains("Los Angeles, California, United States"));
}

TEST_F(InstalledGazetteer, NamesTheTownsOfARegionForAMap) {
    std::vector<std::string> names;
    gazetteer().visitPlaces({.south = 41, .west = 1.7, .north = 41.6, .east = 2.6}, 200'000, 3,
                            [&](PlaceIndex index, Coordinate) {
                                names.push_back(gazetteer().name(index).toStdString());
                                return true;
                            });
    EXPECT_THAT(names, ElementsAre("Barcelona", "Eixample", "L'Hospitalet de Llobregat"));
}

} // namespace
} // namespace corvanta
