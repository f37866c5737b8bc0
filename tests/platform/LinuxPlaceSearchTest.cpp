// SPDX-License-Identifier: MIT
#include "LinuxPlaceSearchTest.h"

#include "MemoryPreferencesStore.h"

namespace corvanta {
namespace {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;
using ::testing::ElementsAre;
using testing::GazetteerBuilder;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using testing::WebAnswer;

TEST_F(LinuxPlaceSearchTest, AnswersFromTheGazetteerAtOnce) {
    make(Service::none);
    type(u"pa"_s);
    EXPECT_THAT(titles(), ElementsAre("Paris", "Parma", "Paris"));
    EXPECT_THAT(subtitles(), ElementsAre("Île-de-France, France", "Emilia-Romagna, Italy", "Texas, United States"));
    EXPECT_THAT(news, ElementsAre("3"));
    EXPECT_EQ(clock.sleepers(), 0U);
}

TEST_F(LinuxPlaceSearchTest, ForgetsTheResultsOfTheTextBefore) {
    make(Service::none);
    type(u"pa"_s);
    type(u"par"_s);
    type(u"parm"_s);
    EXPECT_THAT(titles(), ElementsAre("Parma"));
    type(u"parmx"_s);
    EXPECT_THAT(news, ElementsAre("3", "3", "1", "0"));
}

TEST_F(LinuxPlaceSearchTest, SaysNothingOfTheEmptyText) {
    make(Service::loopback);
    type(u"par"_s);
    completer->setQueryFragment({});
    EXPECT_THAT(titles(), IsEmpty());
    clock.settle();
    EXPECT_EQ(clock.sleepers(), 0U) << "the question that waited is given up";
    EXPECT_THAT(clock.requestedSleeps(), ElementsAre(250ms)) << "there is no other";
    EXPECT_THAT(news, ElementsAre("3"));
}

TEST_F(LinuxPlaceSearchTest, DoesNotNameACountryTwice) {
    make(Service::none);
    type(u"sing"_s);
    EXPECT_THAT(subtitles(), ElementsAre(""));
}

TEST_F(LinuxPlaceSearchTest, ResolvesWhatItSuggests) {
    make(Service::none);
    type(u"parma"_s);
    const auto found = testing::runTask(search->search(completer->results().at(0)));
    ASSERT_THAT(found, SizeIs(1));
    EXPECT_EQ(found[0].name, u"Parma"_s);
    EXPECT_EQ(found[0].coordinate, (Coordinate{44.8, 10.33}));
}

TEST_F(LinuxPlaceSearchTest, TakesAWrittenCoordinateForThePoint) {
    make(Service::loopback);
    type(u"41.3874, -2.50"_s);
    EXPECT_THAT(titles(), ElementsAre("41.3874,-2.5"));
    EXPECT_THAT(subtitles(), ElementsAre("Coordinate"));
    const auto found = testing::runTask(search->search(completer->results().at(0)));
    ASSERT_THAT(found, SizeIs(1));
    EXPECT_EQ(found[0].coordinate, (Coordinate{41.3874, -2.5}));
    EXPECT_THAT(clock.requestedSleeps(), IsEmpty()) << "a place that somebody knows exactly is nobody else's business";
}

TEST_F(LinuxPlaceSearchTest, ResolvesACoordinateThatIsNotASuggestionOfItsOwn) {
    make(Service::none);
    const auto found = testing::runTask(search->search({.title = u"1.5,2.5"_s, .subtitle = {}, .source = nullptr}));
    ASSERT_THAT(found, SizeIs(1));
    EXPECT_EQ(found[0].name, std::nullopt);
    EXPECT_EQ(found[0].coordinate, (Coordinate{1.5, 2.5}));
    EXPECT_THAT(testing::runTask(search->search({.title = u"Paris"_s, .subtitle = {}, .source = nullptr})), IsEmpty());
}

TEST_F(LinuxPlaceSearchTest, AsksTheServiceAfterATypingPause) {
    make(Service::loopback);
    answerTo(u"par"_s, {.body = answer({})});
    type(u"pa"_s);
    type(u"par"_s);
    clock.advance(249ms);
    EXPECT_THAT(clock.requestedSleeps(), ElementsAre(250ms)) << "no request waits for its answer yet";
    EXPECT_EQ(clock.sleepers(), 1U);
    clock.advance(1ms);
    EXPECT_THAT(clock.requestedSleeps(), ElementsAre(250ms, 5s));
    ASSERT_TRUE(waitForSilence());
    ASSERT_THAT(server.requests(), SizeIs(1));
    const QByteArray& request = server.requests().first();
    EXPECT_TRUE(request.startsWith("GET /api?q=par&limit=10&lang=en HTTP/1.1\r\n")) << request.toStdString();
    EXPECT_THAT(request.toStdString(), HasSubstr("\r\nUser-Agent: Corvanta/"));
    EXPECT_FALSE(request.toLower().contains("cookie"));
}

TEST_F(LinuxPlaceSearchTest, AsksExactlyWhatWasTyped) {
    make(Service::loopback);
    type(u"a+b & c=%20ü"_s);
    clock.advance(250ms);
    ASSERT_TRUE(waitForSilence());
    ASSERT_THAT(server.requests(), SizeIs(1));
    EXPECT_TRUE(server.requests().first().startsWith("GET /api?q=a%2Bb%20%26%20c%3D%2520%C3%BC&limit=10&lang=en "))
        << server.requests().first().toStdString();
}

TEST_F(LinuxPlaceSearchTest, DoesNotAskForVeryShortTexts) {
    make(Service::loopback);
    type(u"pa"_s);
    EXPECT_THAT(clock.requestedSleeps(), IsEmpty());
    EXPECT_EQ(clock.sleepers(), 0U);
}

TEST_F(LinuxPlaceSearchTest, DoesNotAskForVeryLongTexts) {
    make(Service::loopback, GazetteerBuilder({{QString(201, u'x'), 1, {1, 1}, {}, u"Somewhere"_s}}).file());
    type(QString(200, u'x'));
    EXPECT_THAT(titles(), SizeIs(1));
    EXPECT_EQ(clock.requestedSleeps().size(), 1U);
    type(QString(201, u'x'));
    EXPECT_THAT(titles(), IsEmpty());
    EXPECT_EQ(clock.requestedSleeps().size(), 1U);
    EXPECT_THAT(news, ElementsAre("1", "0"));
}

TEST_F(LinuxPlaceSearchTest, JoinsWhatTheServiceKnowsBelow) {
    make(Service::loopback);
    answerTo(u"paris"_s, {.body = answer({feature("Rue de Paris", "highway", 48.6, 2.5),
                                          feature("Paris", "amenity", 48.85, 2.35)})});
    type(u"paris"_s);
    EXPECT_THAT(titles(), ElementsAre("Paris", "Paris"));
    clock.advance(250ms);
    ASSERT_TRUE(waitForNews(2));
    EXPECT_THAT(titles(), ElementsAre("Paris", "Paris", "Rue de Paris", "Paris"));
    EXPECT_THAT(news, ElementsAre("2", "4"));
    const auto found = testing::runTask(search->search(completer->results().at(2)));
    ASSERT_THAT(found, SizeIs(1));
    EXPECT_EQ(found[0].coordinate, (Coordinate{48.6, 2.5}));
}

TEST_F(LinuxPlaceSearchTest, LeavesOutTownsThatAreThereAlready) {
    make(Service::loopback);
    answerTo(u"paris"_s,
             {.body = answer({feature("paris", "place", 48.86, 2.35), feature("Paris", "boundary", 33.7, -95.5),
                              feature("Paris", "place", 43.2, -80.4), feature("Paris", "place", 10, 10)})});
    type(u"paris"_s);
    clock.advance(250ms);
    ASSERT_TRUE(waitForNews(2));
    // The two that are far away say the same of themselves, so that one is enough.
    EXPECT_THAT(titles(), ElementsAre("Paris", "Paris", "Paris"));
    EXPECT_THAT(subtitles(), ElementsAre("Île-de-France, France", "Texas, United States", "Somewhere"));
}

TEST_F(LinuxPlaceSearchTest, SaysNothingWhenTheServiceKnowsNothingNew) {
    make(Service::loopback);
    answerTo(u"paris"_s, {.body = answer({feature("Paris", "place", 48.85, 2.35)})});
    type(u"paris"_s);
    clock.advance(250ms);
    ASSERT_TRUE(waitForSilence());
    EXPECT_THAT(server.requests(), SizeIs(1));
    EXPECT_THAT(news, ElementsAre("2"));
}

TEST_F(LinuxPlaceSearchTest, DropsTheAnswerToATextThatHasChanged) {
    make(Service::loopback);
    answerTo(u"paris"_s, {.status = {}, .ending = WebAnswer::Ending::keepOpen});
    type(u"paris"_s);
    clock.advance(250ms);
    ASSERT_TRUE(testing::waitUntil([this] { return server.requests().size() == 1; }));
    type(u"parma"_s);
    ASSERT_TRUE(testing::waitUntil([this] {
        clock.settle();
        return server.openConnections() == 0;
    }));
    EXPECT_THAT(titles(), ElementsAre("Parma"));
    EXPECT_THAT(news, ElementsAre("2", "1"));
}

TEST_F(LinuxPlaceSearchTest, GivesAnAnswerAgainWithoutAsking) {
    make(Service::loopback);
    answerTo(u"paris"_s, {.body = answer({feature("Rue de Paris", "highway", 48.6, 2.5)})});
    type(u"paris"_s);
    clock.advance(250ms);
    ASSERT_TRUE(waitForNews(2));
    type(u"p"_s);
    type(u"paris"_s);
    clock.advance(250ms);
    ASSERT_TRUE(waitForNews(5));
    EXPECT_THAT(titles(), ElementsAre("Paris", "Paris", "Rue de Paris"));
    EXPECT_THAT(server.requests(), SizeIs(1));
}

TEST_F(LinuxPlaceSearchTest, SuggestsOnlyTheKindsThatAreAskedFor) {
    make(Service::loopback);
    completer->setResultTypes(PlaceResultTypes::pointOfInterest);
    answerTo(u"paris"_s,
             {.body = answer({feature("Rue de Paris", "highway", 48.6, 2.5), feature("Café Paris", "amenity", 1, 1)})});
    type(u"paris"_s);
    clock.advance(250ms);
    ASSERT_TRUE(waitForNews(2));
    EXPECT_THAT(titles(), ElementsAre("Café Paris"));
}

TEST_F(LinuxPlaceSearchTest, OpensTheGazetteerWithTheFirstText) {
    make(Service::none);
    type({});
    disk.reset();
    type(u"p"_s);
    EXPECT_THAT(news, ElementsAre("The list of places could not be read: No such file or directory"));
}

TEST_F(LinuxPlaceSearchTest, DoesNotAnswerTheSameTextTwice) {
    make(Service::loopback);
    type(u"par"_s);
    type(u"par"_s);
    EXPECT_THAT(news, ElementsAre("3"));
    EXPECT_EQ(clock.requestedSleeps().size(), 1U);
}

TEST_F(LinuxPlaceSearchTest, MayGoWhileItAsks) {
    make(Service::loopback);
    answerTo(u"paris"_s, {.status = {}, .ending = WebAnswer::Ending::keepOpen});
    type(u"paris"_s);
    clock.advance(250ms);
    ASSERT_TRUE(testing::waitUntil([this] { return server.requests().size() == 1; }));
    completer.reset();
    search.reset();
    clock.settle();
    EXPECT_EQ(clock.sleepers(), 0U);
    EXPECT_TRUE(testing::waitUntil([this] { return server.openConnections() == 0; }));
}

class PlaceSearchAddress : public ::testing::Test {
protected:
    PlaceSearchAddress() { qunsetenv("CORVANTA_PLACE_SEARCH_URL"); }

    ~PlaceSearchAddress() override {
        if (m_before.isNull())
            qunsetenv("CORVANTA_PLACE_SEARCH_URL");
        else
            qputenv("CORVANTA_PLACE_SEARCH_URL", m_before);
    }

    testing::MemoryPreferencesStore preferences;

private:
    QByteArray m_before = qgetenv("CORVANTA_PLACE_SEARCH_URL");
};

TEST_F(PlaceSearchAddress, IsTheBuildsUnlessSomebodyNamesAnother) {
    EXPECT_EQ(placeSearchAddress(preferences).toString(), QStringLiteral(CORVANTA_TEST_PLACE_SEARCH_URL));
    preferences.setData(u"placeSearchURL"_s, "https://photon.example/api");
    EXPECT_EQ(placeSearchAddress(preferences), QUrl(u"https://photon.example/api"_s));
    qputenv("CORVANTA_PLACE_SEARCH_URL", "http://127.0.0.1:2322/api");
    EXPECT_EQ(placeSearchAddress(preferences), QUrl(u"http://127.0.0.1:2322/api"_s));
}

TEST_F(PlaceSearchAddress, MayBeNone) {
    preferences.setData(u"placeSearchURL"_s, "");
    EXPECT_FALSE(PhotonService::isUsable(placeSearchAddress(preferences)));
    preferences.setData(u"placeSearchURL"_s, "https://photon.example/api");
    qputenv("CORVANTA_PLACE_SEARCH_URL", "");
    EXPECT_FALSE(PhotonService::isUsable(placeSearchAddress(preferences)));
}

TEST_F(PlaceSearchAddress, IsUsableWhenItIsOfTheWeb) {
    EXPECT_TRUE(PhotonService::isUsable(QUrl(u"https://photon.example/api"_s)));
    for (const QString& address : {u"file:///etc/passwd"_s, u"ftp://photon.example/"_s, u"photon"_s, u"https:///api"_s})
        EXPECT_FALSE(PhotonService::isUsable(QUrl(address))) << address.toStdString();
}

} // namespace
} // namespace corvanta
