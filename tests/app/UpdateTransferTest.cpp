// SPDX-License-Identifier: MIT
#include "updates/UpdateTransfer.h"

#include "support/CancelledError.h"
#include "updates/UpdateCheckError.h"
#include "updates/UpdateTransferError.h"

#include "Printing.h"
#include "UpdateTest.h"

#include <QNetworkCookie>
#include <QNetworkCookieJar>
#include <QNetworkDiskCache>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace corvanta {
namespace {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;
using testing::WebAnswer;
using testing::WebServer;

class UpdateTransfer : public ::testing::Test {
protected:
    static constexpr qint64 sizeLimit = UpdateTransferLimits{}.size;
    /// More than the buffers of two sockets and of Qt, and far less than what the servers offer.
    static constexpr qint64 readAheadLimit = 4'000'000;

    testing::WatchedTask<QByteArray> start(const QString& url) {
        return testing::WatchedTask(transferUpdateManifest(&session, QUrl(url), limits, &clock, source.token()));
    }

    bool waitFor(const testing::WatchedTask<QByteArray>& task) {
        return testing::waitUntil([&] {
            clock.settle();
            return task.isDone();
        });
    }

    QByteArray fetch(const QString& url) {
        const auto task = start(url);
        EXPECT_TRUE(waitFor(task));
        return task.result();
    }

    /// The error with which fetching `url` ends.
    template<typename Error>
    Error failure(const QString& url, Error otherwise) {
        try {
            ADD_FAILURE() << "fetched " << fetch(url).size() << " bytes";
        } catch (const Error& error) {
            return error;
        } catch (const std::exception& error) {
            ADD_FAILURE() << "another error: " << error.what();
        }
        return otherwise;
    }

    UpdateTransferError transferError(const QString& url) { return failure(url, UpdateTransferError::failed(u"-"_s)); }

    QString transferFailure(const QString& url) {
        const auto error = transferError(url);
        const auto* const failed = std::get_if<UpdateTransferError::Failed>(&error.value());
        return failed ? failed->description : u"another case"_s;
    }

    void expectUnavailable(const QString& url) {
        EXPECT_EQ(failure(url, UpdateCheckError::serverUnavailable()), UpdateCheckError::serverUnavailable());
    }

    void expectNoConnection(WebServer& which) {
        EXPECT_TRUE(testing::waitUntil([&] { return which.openConnections() == 0; }));
    }

    testing::VirtualClock clock;
    WebServer server{WebServer::Scheme::https};
    WebServer plainServer{WebServer::Scheme::http};
    testing::UpdateSession session;
    UpdateTransferLimits limits;
    CancellationSource source;
};

TEST_F(UpdateTransfer, FetchesOverHTTPSAndHTTP) {
    for (WebServer* const each : {&server, &plainServer}) {
        each->answer(u"/updates.json"_s, {.body = "{}"});
        EXPECT_EQ(fetch(each->url(u"/updates.json"_s)), "{}");
        ASSERT_EQ(each->requests().size(), 1);
        EXPECT_TRUE(each->requests().first().startsWith("GET /updates.json HTTP/1.1\r\n"));
    }
}

TEST_F(UpdateTransfer, FetchesABodyWithoutALength) {
    server.answer(u"/"_s, {.body = "{}", .promisedLength = -1});
    EXPECT_EQ(fetch(server.url(u"/"_s)), "{}");
}

TEST_F(UpdateTransfer, FetchesWhatComesInPieces) {
    server.answer(u"/"_s, {.body = "one ", .promisedLength = 7, .ending = WebAnswer::Ending::keepOpen});
    const auto task = start(server.url(u"/"_s));
    ASSERT_TRUE(testing::waitUntil([this] { return session.arrivals() == 1; }));
    server.send("two");
    ASSERT_TRUE(waitFor(task));
    EXPECT_EQ(task.result(), "one two");
}

struct StatusCase {
    const char* name;
    QByteArray status;
};

void PrintTo(const StatusCase& value, std::ostream* stream) {
    *stream << value.name;
}

class UpdateTransferStatus : public UpdateTransfer, public ::testing::WithParamInterface<StatusCase> {};

TEST_P(UpdateTransferStatus, IsUnavailableUnlessItIsExactly200) {
    server.answer(u"/"_s, {.status = GetParam().status, .body = testing::updateDocument()});
    expectUnavailable(server.url(u"/"_s));
}

INSTANTIATE_TEST_SUITE_P(
    Cases, UpdateTransferStatus,
    ::testing::Values(StatusCase{"created", "201 Created"}, StatusCase{"accepted", "202 Accepted"},
                      StatusCase{"nonAuthoritative", "203 Non-Authoritative Information"},
                      StatusCase{"partial", "206 Partial Content"},
                      StatusCase{"multipleChoices", "300 Multiple Choices"},
                      StatusCase{"badRequest", "400 Bad Request"}, StatusCase{"unauthorized", "401 Unauthorized"},
                      StatusCase{"forbidden", "403 Forbidden"}, StatusCase{"notFound", "404 Not Found"},
                      StatusCase{"proxyAuthentication", "407 Proxy Authentication Required"},
                      StatusCase{"teapot", "418 I'm a teapot"}, StatusCase{"tooMany", "429 Too Many Requests"},
                      StatusCase{"serverError", "500 Internal Server Error"},
                      StatusCase{"badGateway", "502 Bad Gateway"},
                      StatusCase{"unavailable", "503 Service Unavailable"}),
    testing::CaseName());

TEST_F(UpdateTransfer, TakesNoContentForUnavailable) {
    server.answer(u"/"_s, {.status = "204 No Content", .promisedLength = -1});
    expectUnavailable(server.url(u"/"_s));
}

TEST_F(UpdateTransfer, TakesNotModifiedForUnavailable) {
    server.answer(u"/"_s, {.status = "304 Not Modified", .headers = "ETag: \"a\"\r\n", .promisedLength = -1});
    expectUnavailable(server.url(u"/"_s));
}

TEST_F(UpdateTransfer, FollowsARedirectToA200) {
    for (const QByteArray& status :
         {"301 Moved Permanently", "302 Found", "307 Temporary Redirect", "308 Permanent Redirect"}) {
        server.answer(u"/old"_s, {.status = status, .headers = "Location: /new\r\n", .body = "<html>Moved.</html>"});
        server.answer(u"/new"_s, {.body = "{}"});
        EXPECT_EQ(fetch(server.url(u"/old"_s)), "{}") << status.toStdString();
    }
}

TEST_F(UpdateTransfer, FollowsARedirectFromHTTPToHTTPS) {
    plainServer.answer(u"/"_s, {.status = "301 Moved Permanently",
                                .headers = "Location: " + server.url(u"/new"_s).toLatin1() + "\r\n"});
    server.answer(u"/new"_s, {.body = "{}"});
    EXPECT_EQ(fetch(plainServer.url(u"/"_s)), "{}");
}

TEST_F(UpdateTransfer, NeverFollowsARedirectFromHTTPSToHTTP) {
    server.answer(u"/"_s, {.status = "301 Moved Permanently",
                           .headers = "Location: " + plainServer.url(u"/new"_s).toLatin1() + "\r\n"});
    plainServer.answer(u"/new"_s, {.body = "{}"});
    EXPECT_FALSE(transferFailure(server.url(u"/"_s)).isEmpty());
    EXPECT_EQ(plainServer.requests().size(), 0);
}

TEST_F(UpdateTransfer, NeverFollowsARedirectToAFile) {
    server.answer(u"/"_s, {.status = "302 Found", .headers = "Location: file:///etc/hostname\r\n"});
    EXPECT_FALSE(transferFailure(server.url(u"/"_s)).isEmpty());
}

TEST_F(UpdateTransfer, TakesARedirectToAnotherStatusForUnavailable) {
    server.answer(u"/old"_s, {.status = "301 Moved Permanently", .headers = "Location: /gone\r\n"});
    expectUnavailable(server.url(u"/old"_s));
    EXPECT_EQ(server.requests().size(), 2);
}

TEST_F(UpdateTransfer, LeavesACircleOfRedirects) {
    server.answer(u"/"_s, {.status = "302 Found", .headers = "Location: /\r\n"});
    EXPECT_FALSE(transferFailure(server.url(u"/"_s)).isEmpty());
}

TEST_F(UpdateTransfer, TellsWhyNoServerWasReached) {
    QString url;
    {
        const WebServer gone(WebServer::Scheme::http);
        url = gone.url(u"/"_s);
    }
    EXPECT_EQ(transferFailure(url), u"Connection refused");
}

TEST_F(UpdateTransfer, TellsWhenTheConnectionIsCutInTheBody) {
    server.answer(u"/"_s, {.body = "{\"version\":", .promisedLength = 400});
    EXPECT_EQ(transferFailure(server.url(u"/"_s)), u"Connection closed");
}

TEST_F(UpdateTransfer, TellsWhenTheConnectionIsCutBeforeTheHead) {
    server.answer(u"/"_s, {.status = {}});
    EXPECT_EQ(transferFailure(server.url(u"/"_s)), u"Connection closed");
}

TEST_F(UpdateTransfer, RefusesServersThatItCannotTrust) {
    for (const QString& certificate : {u"self-signed"_s, u"other-host"_s, u"expired"_s}) {
        WebServer impostor(WebServer::Scheme::https, certificate);
        impostor.answer(u"/"_s, {.body = "{}"});
        const QString description = transferFailure(impostor.url(u"/"_s));
        EXPECT_TRUE(description.startsWith(u"SSL handshake failed")) << description.toStdString();
        EXPECT_EQ(impostor.requests().size(), 0) << certificate.toStdString();
    }
}

TEST_F(UpdateTransfer, AsksNothingOfAnAddressThatIsNotHTTP) {
    for (const QString& url : {u""_s, u"file:///etc/hostname"_s, u"ftp://127.0.0.1/updates.json"_s, u"data:,{}"_s,
                               u"updates.json"_s, u"//127.0.0.1/updates.json"_s})
        expectUnavailable(url);
    EXPECT_EQ(session.requests(), 0);
}

TEST_F(UpdateTransfer, FailsForAnAddressWithoutAHost) {
    EXPECT_FALSE(transferFailure(u"https:///updates.json"_s).isEmpty());
}

TEST_F(UpdateTransfer, TimesOutAfterTwelveSecondsOfSilence) {
    server.answer(u"/"_s, {.status = {}, .ending = WebAnswer::Ending::keepOpen});
    const auto task = start(server.url(u"/"_s));
    ASSERT_TRUE(testing::waitUntil([this] { return server.requests().size() == 1; }));
    clock.advance(11'999ms);
    EXPECT_FALSE(task.isDone());
    clock.advance(1ms);
    ASSERT_TRUE(task.isDone());
    try {
        (void)task.result();
        ADD_FAILURE() << "nothing was thrown";
    } catch (const UpdateTransferError& error) {
        EXPECT_EQ(error, UpdateTransferError::timedOut());
    }
    expectNoConnection(server);
}

TEST_F(UpdateTransfer, GrantsEachByteAnotherTwelveSeconds) {
    server.answer(u"/"_s, {.body = "a", .promisedLength = -1, .ending = WebAnswer::Ending::keepOpen});
    const auto task = start(server.url(u"/"_s));
    constexpr int pieces = 5;
    for (int piece = 1; piece <= pieces; ++piece) {
        ASSERT_TRUE(testing::waitUntil([&] { return session.arrivals() == piece; }));
        clock.advance(11'999ms);
        ASSERT_FALSE(task.isDone()) << piece;
        if (piece < pieces)
            server.send("b");
    }
    server.send({});
    ASSERT_TRUE(waitFor(task));
    EXPECT_EQ(task.result(), "abbbb");
}

TEST_F(UpdateTransfer, TimesOutTwelveSecondsBehindTheLastByte) {
    server.answer(u"/"_s, {.body = "a", .promisedLength = 10, .ending = WebAnswer::Ending::keepOpen});
    const auto task = start(server.url(u"/"_s));
    ASSERT_TRUE(testing::waitUntil([this] { return session.arrivals() == 1; }));
    clock.advance(10s);
    server.send("b");
    ASSERT_TRUE(testing::waitUntil([this] { return session.arrivals() == 2; }));
    clock.advance(11'999ms);
    EXPECT_FALSE(task.isDone());
    clock.advance(1ms);
    EXPECT_TRUE(task.isDone());
    EXPECT_THROW((void)task.result(), UpdateTransferError);
}

TEST_F(UpdateTransfer, HasALimitThatCanBeChosen) {
    limits.silence = 50ms;
    server.answer(u"/"_s, {.status = {}, .ending = WebAnswer::Ending::keepOpen});
    const auto task = start(server.url(u"/"_s));
    clock.advance(50ms);
    ASSERT_TRUE(task.isDone());
    EXPECT_THROW((void)task.result(), UpdateTransferError);
}

TEST_F(UpdateTransfer, TakesABodyOfExactlyTheLimit) {
    for (const qint64 promised : {sizeLimit, qint64(-1)}) {
        server.answer(u"/"_s, {.body = "{}", .filler = sizeLimit - 2, .promisedLength = promised});
        EXPECT_EQ(fetch(server.url(u"/"_s)).size(), sizeLimit) << promised;
    }
}

TEST_F(UpdateTransfer, RefusesABodyOfOneByteMore) {
    for (const qint64 promised : {sizeLimit + 1, qint64(-1)}) {
        server.answer(u"/"_s, {.body = "{}", .filler = sizeLimit - 1, .promisedLength = promised});
        EXPECT_EQ(transferError(server.url(u"/"_s)), UpdateTransferError::tooLarge()) << promised;
    }
}

TEST_F(UpdateTransfer, RefusesTooMuchAlreadyWhenItIsPromised) {
    server.answer(u"/"_s, {.body = "{}", .promisedLength = sizeLimit + 1, .ending = WebAnswer::Ending::keepOpen});
    EXPECT_EQ(transferError(server.url(u"/"_s)), UpdateTransferError::tooLarge());
    expectNoConnection(server);
}

TEST_F(UpdateTransfer, GivesAHugeBodyUpEarly) {
    constexpr qint64 size = 100'000'000;
    for (WebServer* const each : {&server, &plainServer}) {
        for (const qint64 promised : {size, qint64(-1)}) {
            const qint64 takenBefore = each->takenBytes();
            each->answer(u"/"_s, {.body = "{}", .filler = size - 2, .promisedLength = promised});
            EXPECT_EQ(transferError(each->url(u"/"_s)), UpdateTransferError::tooLarge());
            expectNoConnection(*each);
            EXPECT_LT(each->takenBytes() - takenBefore, readAheadLimit) << promised;
        }
    }
}

TEST_F(UpdateTransfer, GivesAHugeBodyOfAnErrorUpEarly) {
    server.answer(u"/"_s, {.status = "500 Internal Server Error", .filler = 100'000'000});
    expectUnavailable(server.url(u"/"_s));
    expectNoConnection(server);
    EXPECT_LT(server.takenBytes(), readAheadLimit);
}

TEST_F(UpdateTransfer, RefusesASmallBodyThatUnpacksToAHugeOne) {
    // Qt's own form has the size in front.
    const QByteArray packed = qCompress(QByteArray(50'000'000, ' '), 9).sliced(4);
    ASSERT_LT(packed.size(), sizeLimit);
    server.answer(u"/"_s, {.headers = "Content-Encoding: deflate\r\n", .body = packed});
    EXPECT_THROW((void)fetch(server.url(u"/"_s)), UpdateTransferError);
}

TEST_F(UpdateTransfer, UnpacksACompressedBody) {
    server.answer(u"/"_s, {.headers = "Content-Encoding: deflate\r\n", .body = qCompress(QByteArray("{}")).sliced(4)});
    EXPECT_EQ(fetch(server.url(u"/"_s)), "{}");
}

TEST_F(UpdateTransfer, NeitherReadsNorFillsACache) {
    const QTemporaryDir folder;
    auto* const cache = new QNetworkDiskCache;
    cache->setCacheDirectory(folder.path());
    session.setCache(cache);
    server.answer(u"/"_s, {.headers = "Cache-Control: public, max-age=86400\r\nETag: \"a\"\r\n"
                                      "Last-Modified: Mon, 06 Jan 2025 10:00:00 GMT\r\n",
                           .body = "old"});
    // Somebody else's request leaves an answer in the cache.
    QNetworkReply* const other = session.get(QNetworkRequest(QUrl(server.url(u"/"_s))));
    ASSERT_TRUE(testing::waitUntil([other] { return other->isFinished(); }));
    const qint64 cached = cache->cacheSize();
    EXPECT_GT(cached, 0);

    server.answer(u"/"_s, {.headers = "Cache-Control: public, max-age=86400\r\nETag: \"b\"\r\n", .body = "new"});
    EXPECT_EQ(fetch(server.url(u"/"_s)), "new");
    EXPECT_EQ(fetch(server.url(u"/"_s)), "new");
    ASSERT_EQ(server.requests().size(), 3);
    const QByteArray request = server.requests().last().toLower();
    EXPECT_FALSE(request.contains("if-none-match"));
    EXPECT_FALSE(request.contains("if-modified-since"));
    EXPECT_TRUE(request.contains("cache-control: no-cache"));

    cache->clear();
    EXPECT_EQ(fetch(server.url(u"/"_s)), "new");
    EXPECT_EQ(cache->cacheSize(), 0);
}

TEST_F(UpdateTransfer, NeitherKeepsNorSendsCookies) {
    server.answer(u"/"_s, {.headers = "Set-Cookie: visitor=1; Path=/\r\n", .body = "{}"});
    EXPECT_EQ(fetch(server.url(u"/"_s)), "{}");
    const QUrl url(server.url(u"/"_s));
    EXPECT_TRUE(session.cookieJar()->cookiesForUrl(url).isEmpty());

    session.cookieJar()->setCookiesFromUrl({QNetworkCookie("visitor", "2")}, url);
    ASSERT_FALSE(session.cookieJar()->cookiesForUrl(url).isEmpty());
    EXPECT_EQ(fetch(server.url(u"/"_s)), "{}");
    EXPECT_FALSE(server.requests().last().toLower().contains("cookie"));
}

TEST_F(UpdateTransfer, EndsWhenItIsCancelled) {
    server.answer(u"/"_s, {.status = {}, .ending = WebAnswer::Ending::keepOpen});
    const auto task = start(server.url(u"/"_s));
    ASSERT_TRUE(testing::waitUntil([this] { return server.requests().size() == 1; }));
    source.cancel();
    EXPECT_FALSE(task.isDone()) << "resumed from inside the cancelling call";
    ASSERT_TRUE(waitFor(task));
    EXPECT_THROW((void)task.result(), CancelledError);
    expectNoConnection(server);
}

TEST_F(UpdateTransfer, AsksNothingOnceItIsCancelled) {
    source.cancel();
    EXPECT_THROW((void)fetch(server.url(u"/"_s)), CancelledError);
    EXPECT_EQ(session.requests(), 0);
}

TEST_F(UpdateTransfer, LeavesNoReplyBehind) {
    server.answer(u"/"_s, {.body = "{}"});
    EXPECT_EQ(fetch(server.url(u"/"_s)), "{}");
    EXPECT_TRUE(testing::waitUntil([this] {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        return session.lastReply() == nullptr;
    }));
}

TEST_F(UpdateTransfer, EndsWithItsClock) {
    server.answer(u"/"_s, {.status = {}, .ending = WebAnswer::Ending::keepOpen});
    auto otherClock = std::make_unique<testing::VirtualClock>();
    const testing::WatchedTask task(
        transferUpdateManifest(&session, QUrl(server.url(u"/"_s)), limits, otherClock.get(), source.token()));
    otherClock.reset();
    ASSERT_TRUE(task.isDone());
    EXPECT_THROW((void)task.result(), CancelledError);
}

} // namespace
} // namespace corvanta
