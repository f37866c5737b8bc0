// SPDX-License-Identifier: MIT
#include "places/Gazetteer.h"

#include "GazetteerBuilder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ostream>
#include <string>

namespace corvanta {
namespace {

using namespace Qt::Literals::StringLiterals;
using ::testing::ElementsAre;
using testing::GazetteerBuilder;
using ::testing::IsEmpty;
using Names = std::vector<std::string>;

class GazetteerTest : public ::testing::Test {
protected:
    void open(std::vector<GazetteerBuilder::Place> places) {
        m_disk.emplace(GazetteerBuilder(std::move(places)).file());
        m_gazetteer.emplace(m_disk->path());
    }

    [[nodiscard]] const Gazetteer& gazetteer() const { return *m_gazetteer; }

    [[nodiscard]] Names found(const QString& text, std::size_t limit = 10) const {
        Names names;
        for (const PlaceIndex index : m_gazetteer->search(text, limit))
            names.push_back(m_gazetteer->name(index).toStdString());
        return names;
    }

    [[nodiscard]] Names visited(const GeographicBounds& bounds, std::uint32_t minimum = 0,
                                std::size_t maximum = 100) const {
        Names names;
        m_gazetteer->visitPlaces(bounds, minimum, maximum, [&](PlaceIndex index, Coordinate) {
            names.push_back(m_gazetteer->name(index).toStdString());
            return true;
        });
        return names;
    }

private:
    std::optional<testing::GazetteerOnDisk> m_disk;
    std::optional<Gazetteer> m_gazetteer;
};

TEST_F(GazetteerTest, TellsAllThatIsKnownOfAPlace) {
    open({{u"Paris"_s, 2'138'551, {48.85341, 2.3488}, u"Île-de-France"_s, u"France"_s},
          {u"Honolulu"_s, 371'657, {21.30694, -157.85833}, u"Hawaii"_s, u"United States"_s}});
    ASSERT_EQ(gazetteer().count(), 2U);
    EXPECT_EQ(gazetteer().place(0), (GazetteerPlace{.name = u"Paris"_s,
                                                    .region = u"Île-de-France"_s,
                                                    .country = u"France"_s,
                                                    .coordinate = {48.85341, 2.3488},
                                                    .population = 2'138'551}));
    EXPECT_EQ(gazetteer().place(1).coordinate, (Coordinate{21.30694, -157.85833}));
    EXPECT_EQ(gazetteer().place(1).population, 371'657U);
}

TEST_F(GazetteerTest, KnowsEveryPopulationOfManyPlaces) {
    std::vector<GazetteerBuilder::Place> places;
    for (std::uint32_t number = 0; number < 300; ++number)
        places.push_back({u"Place %1"_s.arg(number), 30'000'000 - number * number * 300});
    open(places);
    for (std::uint32_t number = 0; number < 300; ++number) {
        EXPECT_EQ(gazetteer().population(number), 30'000'000 - number * number * 300) << number;
        EXPECT_EQ(gazetteer().name(number), u"Place %1"_s.arg(number));
    }
}

TEST_F(GazetteerTest, FindsNothingForNothing) {
    open({{u"Paris"_s, 1}});
    for (const QString& text : {u""_s, u" "_s, u"!"_s, u"\u0308"_s, u"x"_s, u"pariss"_s})
        EXPECT_THAT(found(text), IsEmpty()) << text.toStdString();
    EXPECT_THAT(found(u"paris"_s, 0), IsEmpty());
}

TEST_F(GazetteerTest, HasNoPlacesWhenThereAreNone) {
    open({});
    EXPECT_EQ(gazetteer().count(), 0U);
    EXPECT_THAT(found(u"paris"_s), IsEmpty());
    EXPECT_THAT(visited({}), IsEmpty());
}

struct SpellingCase {
    const char* name;
    QString typed;
    std::string found;
};

void PrintTo(const SpellingCase& value, std::ostream* stream) {
    *stream << value.name;
}

class GazetteerSpelling : public GazetteerTest, public ::testing::WithParamInterface<SpellingCase> {};

TEST_P(GazetteerSpelling, DoesNotCount) {
    open({{u"Münster"_s, 300'000},
          {u"São Paulo"_s, 12'000'000},
          {u"St. John's"_s, 100'000},
          {u"Weißenfels"_s, 40'000},
          {u"Munich"_s, 1'260'391, {}, {}, {}, {u"munchen"_s, u"мюнхен"_s}},
          {u"Port-au-Prince"_s, 1'200'000}});
    EXPECT_THAT(found(GetParam().typed), ElementsAre(GetParam().found));
}

INSTANTIATE_TEST_SUITE_P(Cases, GazetteerSpelling,
                         ::testing::Values(SpellingCase{"letterCase", u"MÜNSTER"_s, "Münster"},
                                           SpellingCase{"marks", u"munster"_s, "Münster"},
                                           SpellingCase{"composedMarks", u"münst"_s, "Münster"},
                                           SpellingCase{"separateMarks", u"mu\u0308nst"_s, "Münster"},
                                           SpellingCase{"marksTheNameLacks", u"múnstér"_s, "Münster"},
                                           SpellingCase{"spelledUmlaut", u"muenster"_s, "Münster"},
                                           SpellingCase{"sharpS", u"weissen"_s, "Weißenfels"},
                                           SpellingCase{"capitalSharpS", u"WEIẞEN"_s, "Weißenfels"},
                                           SpellingCase{"tilde", u"sao p"_s, "São Paulo"},
                                           SpellingCase{"typedTilde", u"são p"_s, "São Paulo"},
                                           SpellingCase{"apostropheAndPoint", u"st johns"_s, "St. John's"},
                                           SpellingCase{"typedApostrophe", u"st. john’s"_s, "St. John's"},
                                           SpellingCase{"hyphen", u"port au pr"_s, "Port-au-Prince"},
                                           SpellingCase{"spaces", u"  port \t au"_s, "Port-au-Prince"},
                                           SpellingCase{"laterWord", u"prince"_s, "Port-au-Prince"},
                                           SpellingCase{"otherSpelling", u"münchen"_s, "Munich"},
                                           SpellingCase{"otherSpellingSpelledOut", u"muenchen"_s, "Munich"},
                                           SpellingCase{"otherAlphabet", u"МЮНХ"_s, "Munich"}),
                         [](const auto& info) { return std::string(info.param.name); });

TEST_F(GazetteerTest, OrdersEqualMatchesByPopulation) {
    open({{u"Springdale"_s, 70'000}, {u"Springfield"_s, 160'000}, {u"Spring"_s, 60'000}, {u"Springs"_s, 120'000}});
    EXPECT_THAT(found(u"spri"_s), ElementsAre("Springfield", "Springs", "Springdale", "Spring"));
}

TEST_F(GazetteerTest, PutsAWholeNameBeforeItsContinuations) {
    open({{u"Spring"_s, 60'000}, {u"Springfield"_s, 160'000}, {u"Springs"_s, 120'000}});
    EXPECT_THAT(found(u"spring"_s), ElementsAre("Spring", "Springfield", "Springs"));
}

TEST_F(GazetteerTest, PutsTheBeginningOfANameBeforeALaterWord) {
    open({{u"East Lansing"_s, 48'000}, {u"Lansingburgh"_s, 20'000}});
    EXPECT_THAT(found(u"lan"_s), ElementsAre("Lansingburgh", "East Lansing"));
}

TEST_F(GazetteerTest, PutsANameBeforeAnotherSpelling) {
    open({{u"Wien"_s, 900}, {u"Vienna"_s, 4'000, {}, {}, {}, {u"wien"_s}}});
    EXPECT_THAT(found(u"wien"_s), ElementsAre("Wien", "Vienna"));
}

TEST_F(GazetteerTest, LetsAMetropolisWinOverABetterMatchOfAVillage) {
    open({{u"Par"_s, 5'000},
          {u"Paris"_s, 2'138'551},
          {u"Yorkville"_s, 900},
          {u"New York City"_s, 8'804'190},
          {u"Münchberg"_s, 10'000},
          {u"Munich"_s, 1'260'391, {}, {}, {}, {u"munchen"_s}}});
    EXPECT_THAT(found(u"par"_s), ElementsAre("Paris", "Par"));
    EXPECT_THAT(found(u"york"_s), ElementsAre("New York City", "Yorkville"));
    EXPECT_THAT(found(u"münch"_s), ElementsAre("Munich", "Münchberg"));
}

TEST_F(GazetteerTest, NamesAPlaceOnceHoweverOftenItMatches) {
    open({{u"Baden-Baden"_s, 50'000, {}, u"Baden"_s, {}, {u"baden oos"_s, u"badenia"_s}}});
    EXPECT_THAT(found(u"baden"_s), ElementsAre("Baden-Baden"));
    EXPECT_THAT(found(u"baden baden"_s), ElementsAre("Baden-Baden"));
}

TEST_F(GazetteerTest, FindsWordsInAnyOrder) {
    open({{u"San Francisco"_s, 864'816}, {u"San José"_s, 1'000'000}, {u"Francisco Morato"_s, 150'000}});
    EXPECT_THAT(found(u"fran san"_s), ElementsAre("San Francisco"));
    EXPECT_THAT(found(u"san fra"_s), ElementsAre("San Francisco"));
}

TEST_F(GazetteerTest, TellsPlacesOfOneNameApartByRegionAndCountry) {
    open({{u"Paris"_s, 2'138'551, {}, u"Île-de-France"_s, u"France"_s, {}, {}, u"FR"_s},
          {u"Paris"_s, 24'782, {1, 1}, u"Texas"_s, u"United States"_s, {}, u"TX"_s, u"US"_s}});
    for (const QString& text :
         {u"paris texas"_s, u"paris, tex"_s, u"paris tx"_s, u"Texas Paris"_s, u"paris united st"_s, u"paris us"_s})
        EXPECT_EQ(gazetteer().search(text, 10), std::vector<PlaceIndex>{1}) << text.toStdString();
    EXPECT_EQ(gazetteer().search(u"paris fr"_s, 10), std::vector<PlaceIndex>{0});
    EXPECT_THAT(found(u"texas"_s), IsEmpty());
    EXPECT_THAT(found(u"paris berlin"_s), IsEmpty());
}

TEST_F(GazetteerTest, GivesAsManyAsWereAskedFor) {
    std::vector<GazetteerBuilder::Place> places;
    for (std::uint32_t number = 0; number < 50; ++number)
        places.push_back({u"San %1"_s.arg(number), number + 1});
    open(places);
    EXPECT_THAT(found(u"san"_s, 3), ElementsAre("San 49", "San 48", "San 47"));
    EXPECT_EQ(found(u"san"_s, 50).size(), 50U);
    EXPECT_EQ(found(u"san"_s, 100).size(), 50U);
}

TEST_F(GazetteerTest, BearsWhateverIsTyped) {
    open({{u"Paris"_s, 1}});
    for (const QString& text : {QString(100'000, u'p'), u"p "_s.repeated(10'000), QString(1, QChar(0xD800)),
                                QString(1, QChar(0)), u"\U0001F600"_s, QString(QChar(0xFFFF)), u"%_*\"'();--"_s})
        EXPECT_LE(found(text).size(), 1U);
}

TEST_F(GazetteerTest, VisitsThePlacesOfARegionTheMostPopulousFirst) {
    open({{u"Bonn"_s, 300, {50.7, 7.1}},
          {u"Köln"_s, 900, {50.9, 6.9}},
          {u"Paris"_s, 2000, {48.8, 2.3}},
          {u"Berlin"_s, 3400, {52.5, 13.4}}});
    const GeographicBounds germany{.south = 47, .west = 5, .north = 55, .east = 15};
    EXPECT_THAT(visited(germany), ElementsAre("Berlin", "Köln", "Bonn"));
    EXPECT_THAT(visited(germany, 500), ElementsAre("Berlin", "Köln"));
    EXPECT_THAT(visited(germany, 0, 1), ElementsAre("Berlin"));
    EXPECT_THAT(visited(germany, 0, 0), IsEmpty());
    EXPECT_THAT(visited({.south = 10, .west = 10, .north = 5, .east = 20}), IsEmpty());
    EXPECT_THAT(visited({}).size(), 4U);
}

TEST_F(GazetteerTest, CountsTheEdgesOfARegionIn) {
    open({{u"Corner"_s, 1, {10.12345, 20.54321}}});
    EXPECT_THAT(visited({10.12345, 20.54321, 10.12345, 20.54321}), ElementsAre("Corner"));
    EXPECT_THAT(visited({10.12346, 20, 11, 21}), IsEmpty());
    EXPECT_THAT(visited({10, 20, 11, 20.5432}), IsEmpty());
}

TEST_F(GazetteerTest, VisitsARegionAcrossTheDateLine) {
    open({{u"Suva"_s, 3, {-18.1, 178.4}}, {u"Apia"_s, 2, {-13.8, -171.7}}, {u"Accra"_s, 1, {5.5, -0.2}}});
    EXPECT_THAT(visited({.south = -30, .west = 170, .north = 10, .east = -170}), ElementsAre("Suva", "Apia"));
}

TEST_F(GazetteerTest, StopsVisitingWhenItIsToldTo) {
    open({{u"One"_s, 3}, {u"Two"_s, 2}, {u"Three"_s, 1}});
    int count = 0;
    gazetteer().visitPlaces({}, 0, 100, [&count](PlaceIndex, Coordinate) { return ++count < 2; });
    EXPECT_EQ(count, 2);
}

TEST_F(GazetteerTest, BearsRegionsThatAreNone) {
    open({{u"One"_s, 3}});
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double infinity = std::numeric_limits<double>::infinity();
    EXPECT_THAT(visited({nan, nan, nan, nan}), IsEmpty());
    EXPECT_THAT(visited({-infinity, -infinity, infinity, infinity}), ElementsAre("One"));
}

} // namespace
} // namespace corvanta
