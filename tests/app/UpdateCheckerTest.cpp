// SPDX-License-Identifier: MIT
#include "updates/UpdateChecker.h"

#include "Printing.h"
#include "UpdateTest.h"

#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace corvanta {

void PrintTo(const UpdateAlert& alert, std::ostream* stream) {
    *stream << alert.id().toStdString();
}

namespace {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;
using testing::updateDocument;
using testing::updateManifest;
using testing::WebAnswer;
using testing::WebServer;

const QString path = u"/updates.json"_s;
const QString unavailable = u"The update information is not available yet. Please try again later."_s;

class UpdateCheckerTest : public ::testing::Test {
protected:
    UpdateCheckerTest() {
        server.answer(path, {.body = updateDocument()});
        makeChecker(u"26"_s);
    }

    void makeChecker(const QString& buildNumber) { makeChecker(buildNumber, server.url(path)); }

    void makeChecker(const QString& buildNumber, const QString& url) {
        checker = std::make_unique<UpdateChecker>(URL::parse(url).value_or(URL()), buildNumber,
                                                  UpdateChecker::Services{.session = session, .clock = clock});
        QObject::connect(checker.get(), &UpdateChecker::isCheckingChanged, &context,
                         [this] { events.push_back(checker->isChecking() ? "checking" : "not checking"); });
        QObject::connect(checker.get(), &UpdateChecker::presentedAlertChanged, &context, [this] {
            const auto& alert = checker->presentedAlert();
            events.push_back(alert ? alert->id().toStdString() : "no alert");
        });
    }

    bool waitFor(const testing::WatchedTask<void>& task) {
        return testing::waitUntil([&] {
            clock.settle();
            return task.isDone();
        });
    }

    /// What a whole check publishes.
    std::optional<UpdateAlert> check(bool showAllResults) {
        checker->setPresentedAlert(std::nullopt);
        const testing::WatchedTask task(checker->check(showAllResults));
        EXPECT_TRUE(waitFor(task));
        EXPECT_NO_THROW(task.result());
        EXPECT_FALSE(checker->isChecking());
        return checker->presentedAlert();
    }

    /// The identity of the alert that a requested check publishes.
    QString shownID() {
        const auto alert = check(true);
        return alert ? alert->id() : u"no alert"_s;
    }

    /// A check that waits for its answer.
    testing::WatchedTask<void> startWaitingCheck(bool showAllResults) {
        server.answer(path, {.status = {}, .ending = WebAnswer::Ending::keepOpen});
        const auto before = server.requests().size();
        testing::WatchedTask task(checker->check(showAllResults));
        EXPECT_TRUE(testing::waitUntil([&] { return server.requests().size() == before + 1; }));
        return task;
    }

    /// The answer for which the check waits.
    void sendDocument() {
        const QByteArray document = updateDocument();
        server.send("HTTP/1.1 200 OK\r\nConnection: close\r\nContent-Length: " + QByteArray::number(document.size()) +
                    "\r\n\r\n" + document);
    }

    testing::VirtualClock clock;
    WebServer server{WebServer::Scheme::https};
    testing::UpdateSession session;
    std::vector<std::string> events;
    std::unique_ptr<UpdateChecker> checker;
    QObject context;
};

TEST_F(UpdateCheckerTest, IsIdleAtFirst) {
    EXPECT_FALSE(checker->isChecking());
    EXPECT_EQ(checker->presentedAlert(), std::nullopt);
    EXPECT_EQ(session.requests(), 0);
}

TEST_F(UpdateCheckerTest, AnnouncesANewerBuildSilentOrNot) {
    for (const bool showAllResults : {false, true})
        EXPECT_EQ(check(showAllResults), UpdateAlert::available(updateManifest()));
}

TEST_F(UpdateCheckerTest, PublishesTheAlertBeforeItIsIdleAgain) {
    EXPECT_NE(check(true), std::nullopt);
    EXPECT_EQ(events, (std::vector<std::string>{"checking", "available-27", "not checking"}));
}

TEST_F(UpdateCheckerTest, AnswersWithTheSameBuildOnlyWhenAsked) {
    makeChecker(u"27"_s);
    EXPECT_EQ(check(false), std::nullopt);
    EXPECT_EQ(check(true), UpdateAlert::upToDate());
}

struct BuildNumberCase {
    const char* name;
    QString buildNumber;
    bool isOlder;
};

void PrintTo(const BuildNumberCase& value, std::ostream* stream) {
    *stream << value.name;
}

class UpdateCheckerBuildNumber : public UpdateCheckerTest, public ::testing::WithParamInterface<BuildNumberCase> {};

TEST_P(UpdateCheckerBuildNumber, CountsAsZeroUnlessItIsANumber) {
    makeChecker(GetParam().buildNumber);
    EXPECT_EQ(check(true), GetParam().isOlder ? UpdateAlert::available(updateManifest()) : UpdateAlert::upToDate());
}

INSTANTIATE_TEST_SUITE_P(
    Cases, UpdateCheckerBuildNumber,
    ::testing::Values(BuildNumberCase{"older", u"26"_s, true}, BuildNumberCase{"same", u"27"_s, false},
                      BuildNumberCase{"newer", u"28"_s, false}, BuildNumberCase{"signed", u"+27"_s, false},
                      BuildNumberCase{"leadingZero", u"027"_s, false}, BuildNumberCase{"negative", u"-30"_s, true},
                      BuildNumberCase{"empty", u""_s, true}, BuildNumberCase{"local", u"Local"_s, true},
                      BuildNumberCase{"space", u" 28"_s, true}, BuildNumberCase{"fraction", u"28.5"_s, true},
                      BuildNumberCase{"overflow", u"9223372036854775808"_s, true}),
    testing::CaseName());

/// An answer for which a requested check shows a failure, and a silent one nothing.
struct FailureCase {
    const char* name;
    WebAnswer answer;
    /// Nothing where the text is the network's own.
    std::optional<QString> description;
};

void PrintTo(const FailureCase& value, std::ostream* stream) {
    *stream << value.name;
}

WebAnswer changedDocument(const QString& key, const QJsonValue& value) {
    QJsonObject object = encodeJson(updateManifest());
    object.insert(key, value);
    return {.body = jsonDocument(object)};
}

WebAnswer documentWithout(const QString& key) {
    QJsonObject object = encodeJson(updateManifest());
    object.remove(key);
    return {.body = jsonDocument(object)};
}

class UpdateCheckerFailure : public UpdateCheckerTest, public ::testing::WithParamInterface<FailureCase> {
protected:
    void SetUp() override { server.answer(path, GetParam().answer); }
};

TEST_P(UpdateCheckerFailure, IsSwallowedByASilentCheck) {
    EXPECT_EQ(check(false), std::nullopt);
    EXPECT_EQ(events, (std::vector<std::string>{"checking", "not checking"}));
    EXPECT_GE(server.requests().size(), 1);
}

TEST_P(UpdateCheckerFailure, IsShownByARequestedCheck) {
    const QString id = shownID();
    const QString prefix = u"failed-"_s;
    ASSERT_TRUE(id.startsWith(prefix)) << id.toStdString();
    const QString description = id.sliced(prefix.size());
    EXPECT_FALSE(description.isEmpty());
    EXPECT_EQ(description, GetParam().description.value_or(description));
}

INSTANTIATE_TEST_SUITE_P(
    Cases, UpdateCheckerFailure,
    ::testing::Values(
        FailureCase{"noContent", {.status = "204 No Content", .promisedLength = -1}, unavailable},
        FailureCase{"notModified", {.status = "304 Not Modified", .promisedLength = -1}, unavailable},
        FailureCase{"notFound", {.status = "404 Not Found", .body = updateDocument()}, unavailable},
        FailureCase{"serverError", {.status = "500 Internal Server Error", .body = updateDocument()}, unavailable},
        FailureCase{"redirectToNothing", {.status = "301 Moved", .headers = "Location: /gone\r\n"}, unavailable},
        FailureCase{"cut", {.body = updateDocument().first(40), .promisedLength = 400}, u"Connection closed"_s},
        FailureCase{"cutAtOnce", {.status = {}}, u"Connection closed"_s},
        FailureCase{"huge", {.filler = 100'000'000}, u"The update server returned too much data."_s},
        FailureCase{"empty", {}, std::nullopt}, FailureCase{"html", {.body = "<html>Hello</html>"}, std::nullopt},
        FailureCase{"truncated", {.body = updateDocument().chopped(1)}, std::nullopt},
        FailureCase{"invalidUTF8", {.body = "{\"version\": \"\xFF\"}"}, std::nullopt},
        FailureCase{"array", {.body = "[" + updateDocument() + "]"}, std::nullopt},
        FailureCase{"missingVersion", documentWithout(u"version"_s), u"The key “version” is missing from the data."_s},
        FailureCase{"missingBuild", documentWithout(u"build"_s), u"The key “build” is missing from the data."_s},
        FailureCase{"missingDownloadURL", documentWithout(u"downloadURL"_s),
                    u"The key “downloadURL” is missing from the data."_s},
        FailureCase{"missingReleaseNotes", documentWithout(u"releaseNotes"_s),
                    u"The key “releaseNotes” is missing from the data."_s},
        FailureCase{"missingChecksum", documentWithout(u"sha256"_s), u"The key “sha256” is missing from the data."_s},
        FailureCase{"buildAsText", changedDocument(u"build"_s, u"27"_s), u"“build” is not an integer."_s},
        FailureCase{"buildWithAFraction", changedDocument(u"build"_s, 27.5), u"“build” is not an integer."_s},
        FailureCase{"downloadURLThatIsNone", changedDocument(u"downloadURL"_s, u""_s),
                    u"“downloadURL” is not a URL."_s},
        FailureCase{"invalidVersion", changedDocument(u"version"_s, u"1.4"_s),
                    u"The update server returned an invalid version."_s},
        FailureCase{"invalidBuild", changedDocument(u"build"_s, 0),
                    u"The update server returned an invalid build number."_s},
        FailureCase{"insecureDownloadURL", changedDocument(u"downloadURL"_s, u"http://downloads.example/a"_s),
                    u"The update download must use HTTPS."_s},
        FailureCase{"downloadURLOfAFile", changedDocument(u"downloadURL"_s, u"file:///bin/sh"_s),
                    u"The update download must use HTTPS."_s},
        FailureCase{"invalidChecksum", changedDocument(u"sha256"_s, u"abc"_s),
                    u"The update server returned an invalid SHA-256 checksum."_s}),
    testing::CaseName());

TEST_F(UpdateCheckerTest, FollowsARedirect) {
    server.answer(path, {.status = "301 Moved Permanently", .headers = "Location: /new\r\n"});
    server.answer(u"/new"_s, {.body = updateDocument()});
    for (const bool showAllResults : {false, true})
        EXPECT_EQ(check(showAllResults), UpdateAlert::available(updateManifest()));
}

TEST_F(UpdateCheckerTest, ShowsOnlyWhenAskedThatTheServerIsNotTrusted) {
    WebServer impostor(WebServer::Scheme::https, u"self-signed"_s);
    impostor.answer(path, {.body = updateDocument()});
    makeChecker(u"26"_s, impostor.url(path));
    EXPECT_EQ(check(false), std::nullopt);
    const QString id = shownID();
    EXPECT_TRUE(id.startsWith(u"failed-SSL handshake failed")) << id.toStdString();
}

TEST_F(UpdateCheckerTest, ShowsOnlyWhenAskedThatTheServerIsSilent) {
    for (const bool showAllResults : {false, true}) {
        const auto task = startWaitingCheck(showAllResults);
        clock.advance(11'999ms);
        EXPECT_TRUE(checker->isChecking());
        clock.advance(1ms);
        ASSERT_TRUE(task.isDone());
        EXPECT_FALSE(checker->isChecking());
        EXPECT_EQ(checker->presentedAlert(),
                  showAllResults ? std::optional(UpdateAlert::failed(u"The request timed out."_s)) : std::nullopt);
    }
}

TEST_F(UpdateCheckerTest, FailsWithoutARequestForAnAddressThatIsNotHTTP) {
    for (const QString& url : {u"file:///etc/hostname"_s, u"ftp://127.0.0.1/updates.json"_s, u"updates.json"_s}) {
        makeChecker(u"26"_s, url);
        EXPECT_EQ(check(false), std::nullopt);
        EXPECT_EQ(check(true), UpdateAlert::failed(unavailable));
    }
    EXPECT_EQ(session.requests(), 0);
}

TEST_F(UpdateCheckerTest, ValidatesAlsoWhatIsNotNewer) {
    makeChecker(u"1000"_s);
    server.answer(path, changedDocument(u"sha256"_s, u"abc"_s));
    EXPECT_EQ(check(true), UpdateAlert::failed(u"The update server returned an invalid SHA-256 checksum."_s));
}

TEST_F(UpdateCheckerTest, IgnoresASecondCheckWhileTheFirstWaits) {
    makeChecker(u"27"_s);
    const auto first = startWaitingCheck(false);
    EXPECT_TRUE(checker->isChecking());
    const auto before = events;

    const testing::WatchedTask second(checker->check(true));
    EXPECT_TRUE(second.isDone());
    EXPECT_EQ(events, before);
    EXPECT_TRUE(checker->isChecking());
    EXPECT_EQ(session.requests(), 1);

    sendDocument();
    ASSERT_TRUE(waitFor(first));
    // The requested check was ignored, not queued.
    EXPECT_EQ(checker->presentedAlert(), std::nullopt);
    EXPECT_FALSE(checker->isChecking());
    EXPECT_EQ(server.requests().size(), 1);
}

TEST_F(UpdateCheckerTest, ChecksByItselfOnlyOnce) {
    makeChecker(u"26"_s);
    const testing::WatchedTask first(checker->checkAutomatically());
    EXPECT_TRUE(checker->isChecking());
    const testing::WatchedTask second(checker->checkAutomatically());
    EXPECT_TRUE(second.isDone());
    ASSERT_TRUE(waitFor(first));
    EXPECT_EQ(checker->presentedAlert(), UpdateAlert::available(updateManifest()));
    checker->setPresentedAlert(std::nullopt);

    const testing::WatchedTask third(checker->checkAutomatically());
    EXPECT_TRUE(third.isDone());
    EXPECT_EQ(session.requests(), 1);
    EXPECT_EQ(check(true), UpdateAlert::available(updateManifest()));
    EXPECT_EQ(session.requests(), 2);
}

TEST_F(UpdateCheckerTest, ChecksByItselfInSilence) {
    makeChecker(u"27"_s);
    const testing::WatchedTask task(checker->checkAutomatically());
    ASSERT_TRUE(waitFor(task));
    EXPECT_EQ(checker->presentedAlert(), std::nullopt);
}

TEST_F(UpdateCheckerTest, KeepsTheAlertUntilItIsTakenBack) {
    EXPECT_NE(check(true), std::nullopt);
    makeChecker(u"27"_s);
    checker->setPresentedAlert(UpdateAlert::available(updateManifest()));
    const testing::WatchedTask task(checker->check(false));
    ASSERT_TRUE(waitFor(task));
    EXPECT_EQ(checker->presentedAlert(), UpdateAlert::available(updateManifest()));
    events.clear();
    checker->setPresentedAlert(std::nullopt);
    checker->setPresentedAlert(std::nullopt);
    EXPECT_EQ(events, std::vector<std::string>{"no alert"});
}

TEST_F(UpdateCheckerTest, EndsWithoutAResultWhenItIsCancelled) {
    const auto task = startWaitingCheck(true);
    checker->cancel();
    ASSERT_TRUE(waitFor(task));
    EXPECT_FALSE(checker->isChecking());
    EXPECT_EQ(checker->presentedAlert(), std::nullopt);
    EXPECT_TRUE(testing::waitUntil([this] { return server.openConnections() == 0; }));

    server.answer(path, {.body = updateDocument()});
    EXPECT_EQ(check(true), UpdateAlert::available(updateManifest()));
}

TEST_F(UpdateCheckerTest, MayBeDestroyedWhileItWaits) {
    const auto task = startWaitingCheck(true);
    events.clear();
    checker.reset();
    EXPECT_TRUE(testing::waitUntil([this] { return server.openConnections() == 0; }));
    ASSERT_TRUE(waitFor(task));
    EXPECT_NO_THROW(task.result());
    EXPECT_TRUE(events.empty());
}

TEST_F(UpdateCheckerTest, MayBeDestroyedByWhoeverHearsOfAChange) {
    for (const std::string when : {"checking", "available-27"}) {
        makeChecker(u"26"_s);
        events.clear();
        const auto destroy = [&] {
            if (checker && events.back() == when)
                checker.reset();
        };
        QObject::connect(checker.get(), &UpdateChecker::isCheckingChanged, &context, destroy);
        QObject::connect(checker.get(), &UpdateChecker::presentedAlertChanged, &context, destroy);
        const testing::WatchedTask task(checker->check(true));
        ASSERT_TRUE(waitFor(task));
        EXPECT_NO_THROW(task.result());
        EXPECT_EQ(checker, nullptr) << when;
    }
}

} // namespace
} // namespace corvanta
