// SPDX-License-Identifier: MIT
#include "LinuxPlaceSearchTest.h"

#include <ostream>
#include <string>

namespace corvanta {
namespace {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using testing::WebAnswer;
using testing::WebServer;

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

TEST_F(LinuxPlaceSearchTest, SaysAgainWhyNothingCanBeFound) {
    search.emplace(gazetteerAt(u"/nonexistent/places.gazetteer"_s), QUrl(), clock);
    completer = search->makeCompleter();
    completer->setDelegate(this);
    type(u"p"_s);
    type(u"p"_s);
    EXPECT_THAT(news, SizeIs(2));
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

} // namespace
} // namespace corvanta
