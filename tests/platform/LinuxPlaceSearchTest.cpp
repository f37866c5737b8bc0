// SPDX-License-Identifier: MIT
#include "LinuxPlaceSearch.h"

#include "GazetteerBuilder.h"
#include "LinuxPlaceCompleter.h"
#include "MemoryPreferencesStore.h"
#include "TaskWaiting.h"
#include "VirtualClock.h"
#include "WebServer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <ostream>

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
using testing::WebServer;
using Texts = std::vector<std::string>;

QByteArray feature(const QByteArray& name, const QByteArray& key, double latitude, double longitude) {
    return R"({"geometry":{"coordinates":[)" + QByteArray::number(longitude) + ',' + QByteArray::number(latitude) +
           R"(]},"properties":{"name":")" + name + R"(","country":"Somewhere","osm_key":")" + key + R"("}})";
}

QByteArray answer(const QByteArrayList& features) {
    return R"({"features":[)" + features.join(',') + "]}";
}

QByteArray gazetteerBytes() {
    return GazetteerBuilder({{u"Paris"_s, 2'138'551, {48.85341, 2.3488}, u"Île-de-France"_s, u"France"_s},
                             {u"Parma"_s, 198'292, {44.8, 10.33}, u"Emilia-Romagna"_s, u"Italy"_s},
                             {u"Paris"_s, 24'782, {33.66, -95.55}, u"Texas"_s, u"United States"_s},
                             {u"Singapore"_s, 5'638'700, {1.28967, 103.85007}, {}, u"Singapore"_s}})
        .file();
}

std::shared_ptr<SharedGazetteer> gazetteerAt(const QString& path) {
    return std::make_shared<SharedGazetteer>(path);
}

/// A completer with its delegate, on a gazetteer of few places and a service on loopback.
class LinuxPlaceSearchTest : public ::testing::Test, protected PlaceCompleterDelegate {
protected:
    ~LinuxPlaceSearchTest() override {
        completer.reset();
        clock.settle();
    }

    enum class Service { none, loopback };

    void make(Service service, const QByteArray& gazetteer = gazetteerBytes()) {
        disk.emplace(gazetteer);
        search.emplace(gazetteerAt(disk->path()), service == Service::loopback ? QUrl(server.url(u"/api"_s)) : QUrl(),
                       clock);
        completer = search->makeCompleter();
        completer->setDelegate(this);
        completer->setResultTypes(PlaceResultTypes::addressAndPointOfInterest);
    }

    void type(const QString& text) { completer->setQueryFragment(text); }

    /// What the server does with the text that will be typed next.
    void answerTo(const QString& text, WebAnswer reply) {
        server.answer(u"/api?q="_s + QString::fromLatin1(QUrl::toPercentEncoding(text)) + u"&limit=10&lang=en"_s,
                      std::move(reply));
    }

    [[nodiscard]] Texts titles() const {
        Texts texts;
        for (const PlaceCompletion& completion : completer->results())
            texts.push_back(completion.title.toStdString());
        return texts;
    }

    [[nodiscard]] Texts subtitles() const {
        Texts texts;
        for (const PlaceCompletion& completion : completer->results())
            texts.push_back(completion.subtitle.toStdString());
        return texts;
    }

    [[nodiscard]] bool waitForNews(int count) {
        return testing::waitUntil([&] {
            clock.settle();
            return static_cast<int>(news.size()) >= count;
        });
    }

    /// Lets the network do whatever is under way; true when nobody waits for it any more.
    [[nodiscard]] bool waitForSilence() {
        return testing::waitUntil([this] {
            clock.settle();
            return clock.sleepers() == 0;
        });
    }

    void completerDidUpdateResults() override { news.push_back(std::to_string(completer->results().size())); }

    void completerDidFailWithError(const QString& description) override { news.push_back(description.toStdString()); }

    testing::VirtualClock clock;
    WebServer server{WebServer::Scheme::http};
    std::optional<testing::GazetteerOnDisk> disk;
    std::optional<LinuxPlaceSearch> search;
    std::unique_ptr<PlaceCompleter> completer;
    /// How many results there were at each update, and the failures.
    Texts news;
};

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

struct FailingService {
    const char* name;
    WebAnswer reply;
};

void PrintTo(const FailingService& value, std::ostream* stream) {
    *stream << value.name;
}

class LinuxPlaceSearchFailure : public LinuxPlaceSearchTest, public ::testing::WithParamInterface<FailingService> {};

TEST_P(LinuxPlaceSearchFailure, LeavesTheOfflineAnswersAlone) {
    make(Service::loopback);
    answerTo(u"paris"_s, GetParam().reply);
    type(u"paris"_s);
    clock.advance(250ms);
    ASSERT_TRUE(waitForSilence());
    EXPECT_FALSE(server.requests().isEmpty());
    EXPECT_THAT(titles(), ElementsAre("Paris", "Paris"));
    EXPECT_THAT(news, ElementsAre("2"));
}

TEST_P(LinuxPlaceSearchFailure, IsToldWhereThereIsNoGazetteerEither) {
    make(Service::loopback, QByteArray(1000, 'x'));
    answerTo(u"paris"_s, GetParam().reply);
    type(u"paris"_s);
    EXPECT_THAT(news, IsEmpty());
    clock.advance(250ms);
    ASSERT_TRUE(waitForNews(1));
    EXPECT_THAT(news, ElementsAre(HasSubstr("The list of places is damaged: it is a file of another kind "
                                            "The place search on the network failed: ")));
}

TEST_P(LinuxPlaceSearchFailure, LetsTheServiceRestForAWhile) {
    make(Service::loopback);
    answerTo(u"paris"_s, GetParam().reply);
    type(u"paris"_s);
    clock.advance(250ms);
    ASSERT_TRUE(waitForSilence());
    // Qt asks a server that says nothing at all once more.
    const qsizetype asked = server.requests().size();
    type(u"parma"_s);
    clock.advance(250ms);
    ASSERT_TRUE(waitForSilence());
    EXPECT_EQ(server.requests().size(), asked);
    clock.advance(30s);
    answerTo(u"parmas"_s, {.body = answer({})});
    type(u"parmas"_s);
    clock.advance(250ms);
    ASSERT_TRUE(waitForSilence());
    EXPECT_EQ(server.requests().size(), asked + 1);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, LinuxPlaceSearchFailure,
    ::testing::Values(FailingService{"notFound", {.status = "404 Not Found"}},
                      FailingService{"tooMany", {.status = "429 Too Many Requests"}},
                      FailingService{"serverError", {.status = "500 Internal Server Error", .body = "{}"}},
                      FailingService{"noContent", {.status = "204 No Content", .promisedLength = -1}},
                      FailingService{"garbage", {.body = "<html>Welcome to this hotel</html>"}},
                      FailingService{"otherDocument", {.body = "{\"results\":[]}"}},
                      FailingService{"cutOff", {.body = "{\"features\":[", .promisedLength = 400}},
                      FailingService{"nothing", {.status = {}}},
                      FailingService{"tooLarge", {.body = "{\"features\":[]}", .filler = 600'000}},
                      FailingService{"hugeWithoutLength",
                                     {.body = "{\"features\":[]}", .filler = 50'000'000, .promisedLength = -1}}),
    [](const auto& info) { return std::string(info.param.name); });

TEST_F(LinuxPlaceSearchTest, WaitsFiveSecondsForTheService) {
    make(Service::loopback);
    answerTo(u"paris"_s, {.status = {}, .ending = WebAnswer::Ending::keepOpen});
    type(u"paris"_s);
    clock.advance(250ms);
    ASSERT_TRUE(testing::waitUntil([this] { return server.requests().size() == 1; }));
    clock.advance(4'999ms);
    EXPECT_EQ(clock.sleepers(), 1U);
    clock.advance(1ms);
    EXPECT_EQ(clock.sleepers(), 0U);
    EXPECT_THAT(news, ElementsAre("2"));
    EXPECT_TRUE(testing::waitUntil([this] { return server.openConnections() == 0; }));
}

TEST_F(LinuxPlaceSearchTest, DoesNotWaitForAServerThatIsNotThere) {
    QUrl gone;
    {
        const WebServer shortLived(WebServer::Scheme::http);
        gone = QUrl(shortLived.url(u"/api"_s));
    }
    disk.emplace(gazetteerBytes());
    search.emplace(gazetteerAt(disk->path()), gone, clock);
    completer = search->makeCompleter();
    completer->setDelegate(this);
    type(u"paris"_s);
    clock.advance(250ms);
    ASSERT_TRUE(waitForSilence());
    EXPECT_THAT(news, ElementsAre("2"));
}

TEST_F(LinuxPlaceSearchTest, SaysAtOnceWhyNothingCanBeFound) {
    search.emplace(gazetteerAt(u"/nonexistent/places.gazetteer"_s), QUrl(), clock);
    completer = search->makeCompleter();
    completer->setDelegate(this);
    type(u"p"_s);
    EXPECT_THAT(news, ElementsAre("The list of places could not be read: No such file or directory"));
    EXPECT_THAT(titles(), IsEmpty());
}

TEST_F(LinuxPlaceSearchTest, OpensTheGazetteerWithTheFirstText) {
    make(Service::none);
    type({});
    disk.reset();
    type(u"p"_s);
    EXPECT_THAT(news, ElementsAre("The list of places could not be read: No such file or directory"));
}

TEST_F(LinuxPlaceSearchTest, SaysAgainWhyNothingCanBeFound) {
    search.emplace(gazetteerAt(u"/nonexistent/places.gazetteer"_s), QUrl(), clock);
    completer = search->makeCompleter();
    completer->setDelegate(this);
    type(u"p"_s);
    type(u"p"_s);
    EXPECT_THAT(news, SizeIs(2));
}

TEST_F(LinuxPlaceSearchTest, DoesNotAnswerTheSameTextTwice) {
    make(Service::loopback);
    type(u"par"_s);
    type(u"par"_s);
    EXPECT_THAT(news, ElementsAre("3"));
    EXPECT_EQ(clock.requestedSleeps().size(), 1U);
}

TEST_F(LinuxPlaceSearchTest, MakesDoWithTheServiceAlone) {
    search.emplace(gazetteerAt(u"/nonexistent/places.gazetteer"_s), QUrl(server.url(u"/api"_s)), clock);
    completer = search->makeCompleter();
    completer->setDelegate(this);
    answerTo(u"paris"_s, {.body = answer({feature("Paris", "place", 48.85, 2.35)})});
    type(u"paris"_s);
    clock.advance(250ms);
    ASSERT_TRUE(waitForNews(1));
    EXPECT_THAT(titles(), ElementsAre("Paris"));
}

TEST_F(LinuxPlaceSearchTest, TakesBackWhatTheServiceKnewOfAnotherText) {
    make(Service::loopback, {});
    answerTo(u"paris"_s, {.body = answer({feature("Paris", "place", 48.85, 2.35)})});
    type(u"paris"_s);
    clock.advance(250ms);
    ASSERT_TRUE(waitForNews(1));
    type(u"parma"_s);
    EXPECT_THAT(titles(), IsEmpty());
    EXPECT_THAT(news, ElementsAre("1", "0"));
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
