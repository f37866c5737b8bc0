// SPDX-License-Identifier: MIT
#include "MapTileStore.h"

#include "MapSetup.h"
#include "MemoryPreferencesStore.h"
#include "TaskWaiting.h"
#include "WebServer.h"

#include <QBuffer>
#include <QImageReader>
#include <QImageWriter>
#include <QPainter>
#include <QTcpServer>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

using testing::WebAnswer;
using testing::WebServer;

QByteArray picture(const QColor& colour, QSize size = {256, 256}, const char* format = "PNG") {
    QImage image(size, QImage::Format_RGB32);
    image.fill(colour);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format);
    return bytes;
}

WebAnswer answerWith(const QByteArray& body, const QByteArray& headers = "Content-Type: image/png\r\n") {
    WebAnswer answer;
    answer.headers = headers;
    answer.body = body;
    return answer;
}

QString pathOf(const MapTile& tile) {
    return u"/%1/%2/%3.png"_s.arg(tile.zoom).arg(tile.column).arg(tile.row);
}

constexpr MapTile first{3, 1, 2};
constexpr MapTile second{3, 2, 2};

class MapTileStoreTest : public ::testing::Test {
protected:
    MapTileStoreTest() {
        options.urlTemplate = server.url(u"/{z}/{x}/{y}.png"_s);
        options.userAgent = u"Corvanta/1.2 (test)"_s;
        options.firstPause = 40ms;
        options.longestPause = 100ms;
    }

    void make() { store = std::make_unique<MapTileStore>(options); }

    [[nodiscard]] bool has(const MapTile& tile) const { return store->picture(tile).image != nullptr; }

    [[nodiscard]] bool arrives(const MapTile& tile) const {
        return testing::waitUntil([&] { return has(tile); });
    }

    [[nodiscard]] bool isAsked(int times) const {
        return testing::waitUntil([&] { return server.requests().size() >= times; });
    }

    WebServer server{WebServer::Scheme::http};
    MapTileOptions options;
    std::unique_ptr<MapTileStore> store;
};

TEST_F(MapTileStoreTest, ShowsTheTilesThatItIsAskedFor) {
    server.answer(pathOf(first), answerWith(picture(Qt::red)));
    server.answer(pathOf(second), answerWith(picture(Qt::green)));
    make();
    store->show({first, second});
    ASSERT_TRUE(arrives(first));
    ASSERT_TRUE(arrives(second));
    EXPECT_EQ(store->picture(first).image->pixelColor(9, 9), QColor(Qt::red));
    EXPECT_EQ(store->picture(second).image->pixelColor(9, 9), QColor(Qt::green));
    EXPECT_EQ(server.requests().size(), 2);
}

TEST_F(MapTileStoreTest, SaysWhoAsks) {
    server.answer(pathOf(first), answerWith(picture(Qt::red)));
    make();
    store->show({first});
    ASSERT_TRUE(arrives(first));
    EXPECT_TRUE(server.requests().front().contains("User-Agent: Corvanta/1.2 (test)\r\n"));
}

TEST_F(MapTileStoreTest, FadesPicturesIn) {
    server.answer(pathOf(first), answerWith(picture(Qt::red)));
    make();
    store->show({first});
    ASSERT_TRUE(arrives(first));
    EXPECT_LT(store->picture(first).opacity, 1);
    EXPECT_TRUE(store->isFading());
    EXPECT_TRUE(testing::waitUntil([&] { return !store->isFading(); }));
    EXPECT_EQ(store->picture(first).opacity, 1);
    store->setFades(false);
    EXPECT_FALSE(store->isFading());
}

TEST_F(MapTileStoreTest, AsksForNoMoreThanTwoAtATime) {
    std::vector<MapTile> tiles;
    for (int column = 0; column < 6; ++column) {
        tiles.push_back({3, column, 0});
        WebAnswer silent;
        silent.status = "";
        silent.ending = WebAnswer::Ending::keepOpen;
        server.answer(pathOf(tiles.back()), silent);
    }
    make();
    store->show(tiles);
    ASSERT_TRUE(isAsked(2));
    EXPECT_FALSE(testing::waitUntil([&] { return server.requests().size() > 2; }, 300ms));
}

TEST_F(MapTileStoreTest, LetsGoOfWhatIsNoLongerSeen) {
    WebAnswer silent;
    silent.status = "";
    silent.ending = WebAnswer::Ending::keepOpen;
    server.answer(pathOf(first), silent);
    server.answer(pathOf(second), answerWith(picture(Qt::green)));
    options.mostRequests = 1;
    make();
    store->show({first});
    ASSERT_TRUE(isAsked(1));
    store->show({second});
    EXPECT_TRUE(arrives(second));
}

TEST_F(MapTileStoreTest, WaitsForASlowServerWithoutHoldingAnythingUp) {
    WebAnswer slow = answerWith(picture(Qt::blue));
    const QByteArray body = slow.body;
    slow.promisedLength = body.size();
    slow.body = body.first(20);
    slow.ending = WebAnswer::Ending::keepOpen;
    server.answer(pathOf(first), slow);
    make();
    store->show({first});
    ASSERT_TRUE(isAsked(1));
    EXPECT_FALSE(has(first));
    ASSERT_TRUE(testing::waitUntil([&] { return server.openConnections() == 1; }));
    server.send(body.mid(20));
    EXPECT_TRUE(arrives(first));
}

TEST_F(MapTileStoreTest, GivesUpOnAServerThatNeverAnswersAndTriesAgain) {
    WebAnswer silent;
    silent.status = "";
    silent.ending = WebAnswer::Ending::keepOpen;
    server.answer(pathOf(first), silent);
    options.timeout = 80ms;
    make();
    store->show({first});
    ASSERT_TRUE(isAsked(2));
    server.answer(pathOf(first), answerWith(picture(Qt::red)));
    EXPECT_TRUE(arrives(first));
}

TEST_F(MapTileStoreTest, LivesWithTilesThatAreMissing) {
    server.answer(pathOf(second), answerWith(picture(Qt::green)));
    make();
    store->show({first, second});
    EXPECT_TRUE(arrives(second));
    EXPECT_FALSE(has(first));
}

TEST_F(MapTileStoreTest, LivesWithAServerThatFailsAndComesBack) {
    WebAnswer broken;
    broken.status = "503 Service Unavailable";
    server.answer(pathOf(first), broken);
    make();
    store->show({first});
    ASSERT_TRUE(isAsked(3));
    EXPECT_FALSE(has(first));
    server.answer(pathOf(first), answerWith(picture(Qt::red)));
    EXPECT_TRUE(arrives(first));
}

TEST_F(MapTileStoreTest, WaitsLongerAndLongerBetweenTries) {
    WebAnswer broken;
    broken.status = "500 Internal Server Error";
    server.answer(pathOf(first), broken);
    options.firstPause = 30ms;
    options.longestPause = 10min;
    make();
    QElapsedTimer timer;
    timer.start();
    store->show({first});
    ASSERT_TRUE(isAsked(4));
    // 30, 60 and 120 ms at the least.
    EXPECT_GE(timer.elapsed(), 210);
}

TEST_F(MapTileStoreTest, LivesWithoutAServer) {
    QTcpServer late;
    ASSERT_TRUE(late.listen(QHostAddress::LocalHost));
    const quint16 port = late.serverPort();
    late.close();
    options.urlTemplate = u"http://127.0.0.1:%1/{z}/{x}/{y}.png"_s.arg(port);
    make();
    store->show({first, second});
    EXPECT_FALSE(testing::waitUntil([&] { return has(first); }, 150ms));
    // It goes on trying.
    ASSERT_TRUE(late.listen(QHostAddress::LocalHost, port));
    EXPECT_TRUE(testing::waitUntil([&] { return late.hasPendingConnections(); }));
}

TEST_F(MapTileStoreTest, LivesWithWhatIsNoPicture) {
    server.answer(pathOf(first), answerWith("<html>Please log in</html>", "Content-Type: text/html\r\n"));
    server.answer(pathOf(second), answerWith(picture(Qt::red).first(60)));
    make();
    store->show({first, second});
    ASSERT_TRUE(isAsked(4));
    EXPECT_FALSE(has(first));
    EXPECT_FALSE(has(second));
    server.answer(pathOf(second), answerWith(picture(Qt::green)));
    EXPECT_TRUE(arrives(second));
}

TEST_F(MapTileStoreTest, TakesPicturesOfTheUsualFormatsAlone) {
    for (const char* const format : {"PNG", "JPEG"})
        EXPECT_EQ(MapTileDecoder::decode(picture(Qt::red, {8, 8}, format), 1024, false).size(), QSize(8, 8)) << format;
    if (QImageReader::supportedImageFormats().contains("webp") &&
        QImageWriter::supportedImageFormats().contains("webp")) {
        EXPECT_EQ(MapTileDecoder::decode(picture(Qt::red, {8, 8}, "WEBP"), 1024, false).size(), QSize(8, 8));
    }
    for (const char* const format : {"BMP", "PPM", "XPM"}) {
        const QByteArray bytes = picture(Qt::red, {8, 8}, format);
        ASSERT_FALSE(bytes.isEmpty()) << format;
        EXPECT_TRUE(MapTileDecoder::decode(bytes, 1024, false).isNull()) << format;
    }
    EXPECT_TRUE(MapTileDecoder::decode("<svg xmlns='http://www.w3.org/2000/svg' width='256' height='256'>"
                                       "<rect width='256' height='256' fill='red'/></svg>",
                                       1024, false)
                    .isNull());
}

TEST_F(MapTileStoreTest, TakesNoPictureThatIsTooLarge) {
    server.answer(pathOf(first), answerWith(picture(Qt::red, {2000, 1})));
    server.answer(pathOf(second), answerWith(picture(Qt::green, {1024, 512})));
    make();
    store->show({first});
    // The second time it has seen the first picture.
    ASSERT_TRUE(isAsked(2));
    EXPECT_FALSE(has(first));
    store->show({second});
    EXPECT_TRUE(arrives(second));
}

TEST_F(MapTileStoreTest, TakesNoMoreBytesThanATileHas) {
    WebAnswer endless = answerWith(picture(Qt::red));
    endless.filler = 64 << 20;
    server.answer(pathOf(first), endless);
    options.firstPause = 10min;
    make();
    store->show({first});
    ASSERT_TRUE(testing::waitUntil([&] { return !server.requests().isEmpty() && server.openConnections() == 0; }));
    EXPECT_LT(server.takenBytes(), 16 << 20);
    EXPECT_FALSE(has(first));
}

TEST_F(MapTileStoreTest, GivesUpOnAnAnswerThatTakesTooLongAltogether) {
    WebAnswer slow = answerWith(picture(Qt::blue));
    slow.promisedLength = slow.body.size();
    slow.body = slow.body.first(20);
    slow.ending = WebAnswer::Ending::keepOpen;
    server.answer(pathOf(first), slow);
    options.deadline = 100ms;
    make();
    store->show({first});
    EXPECT_TRUE(testing::waitUntil([&] { return server.requests().size() == 2; }, 5s));
}

TEST_F(MapTileStoreTest, TakesNoCookies) {
    server.answer(pathOf(first),
                  answerWith(picture(Qt::red), "Content-Type: image/png\r\nSet-Cookie: who=you; Path=/\r\n"));
    server.answer(pathOf(second), answerWith(picture(Qt::green)));
    make();
    store->show({first});
    ASSERT_TRUE(arrives(first));
    store->show({second});
    ASSERT_TRUE(arrives(second));
    EXPECT_FALSE(server.requests().back().toLower().contains("\r\ncookie:"));
}

TEST_F(MapTileStoreTest, KeepsAsMuchOutOfSightAsThereIsRoomForAndAllThatIsSeen) {
    std::vector<MapTile> early;
    std::vector<MapTile> late;
    for (int column = 0; column < 4; ++column) {
        early.push_back({3, column, 0});
        late.push_back({3, column, 1});
        server.answer(pathOf(early.back()), answerWith(picture(Qt::red)));
        server.answer(pathOf(late.back()), answerWith(picture(Qt::green)));
    }
    constexpr qint64 one = 256 * 256 * 4;
    options.mostKeptBytes = 3 * one;
    make();
    for (const auto* const shown : {&early, &late}) {
        store->show(*shown);
        for (const MapTile& tile : *shown)
            ASSERT_TRUE(arrives(tile));
        for (const MapTile& tile : *shown)
            EXPECT_TRUE(has(tile));
    }
    for (const MapTile& tile : early)
        EXPECT_FALSE(has(tile));
}

TEST_F(MapTileStoreTest, KeepsAnswersAsLongAsTheServerAllows) {
    const QTemporaryDir folder;
    options.cacheFolder = folder.path();
    server.answer(pathOf(first),
                  answerWith(picture(Qt::red), "Content-Type: image/png\r\nCache-Control: max-age=3600\r\n"));
    make();
    store->show({first});
    ASSERT_TRUE(arrives(first));
    make();
    store->show({first});
    ASSERT_TRUE(arrives(first));
    EXPECT_EQ(server.requests().size(), 1);
}

TEST_F(MapTileStoreTest, UsesWhatItHasKeptWhenThereIsNoNetwork) {
    const QTemporaryDir folder;
    options.cacheFolder = folder.path();
    auto other = std::make_unique<WebServer>(WebServer::Scheme::http);
    options.urlTemplate = other->url(u"/{z}/{x}/{y}.png"_s);
    // Old already when it arrives, so that it has to be asked for again.
    other->answer(pathOf(first), answerWith(picture(Qt::red), "Content-Type: image/png\r\nCache-Control: max-age=0\r\n"
                                                              "ETag: \"one\"\r\n"));
    make();
    store->show({first});
    ASSERT_TRUE(arrives(first));
    other.reset();
    make();
    store->show({first});
    EXPECT_TRUE(arrives(first));
}

TEST_F(MapTileStoreTest, ShowsAllThatItHasKeptHoweverManyOthersFailBefore) {
    const QTemporaryDir folder;
    options.cacheFolder = folder.path();
    auto other = std::make_unique<WebServer>(WebServer::Scheme::http);
    options.urlTemplate = other->url(u"/{z}/{x}/{y}.png"_s);
    const std::vector<MapTile> kept{{3, 5, 5}, {3, 6, 5}, {3, 7, 5}};
    for (const MapTile& tile : kept)
        other->answer(pathOf(tile),
                      answerWith(picture(Qt::red), "Content-Type: image/png\r\nCache-Control: max-age=0\r\n"
                                                   "ETag: \"one\"\r\n"));
    make();
    store->show(kept);
    for (const MapTile& tile : kept)
        ASSERT_TRUE(arrives(tile));
    other.reset();
    options.firstPause = 10min;
    options.longestPause = 10min;
    make();
    std::vector<MapTile> wanted{{3, 0, 5}, {3, 1, 5}, {3, 2, 5}, {3, 3, 5}};
    wanted.insert(wanted.end(), kept.begin(), kept.end());
    store->show(wanted);
    for (const MapTile& tile : kept)
        EXPECT_TRUE(testing::waitUntil([&] { return has(tile); }, 2s));
    EXPECT_FALSE(has(wanted.front()));
}

TEST_F(MapTileStoreTest, LeavesAFailingServerAloneWhateverIsStillOnDisk) {
    const QTemporaryDir folder;
    options.cacheFolder = folder.path();
    options.mostRequests = 1;
    options.firstPause = 10min;
    options.longestPause = 10min;
    WebAnswer broken;
    broken.status = "503 Service Unavailable";
    std::vector<MapTile> kept;
    std::vector<MapTile> mixed;
    for (int column = 0; column < 5; ++column) {
        mixed.push_back({3, column, 0});
        server.answer(pathOf(mixed.back()), broken);
        kept.push_back({3, column, 1});
        mixed.push_back(kept.back());
        server.answer(pathOf(kept.back()),
                      answerWith(picture(Qt::red), "Content-Type: image/png\r\nCache-Control: max-age=3600\r\n"));
    }
    make();
    store->show(kept);
    for (const MapTile& tile : kept)
        ASSERT_TRUE(arrives(tile));
    make();
    const auto before = server.requests().size();
    store->show(mixed);
    ASSERT_TRUE(testing::waitUntil([&] { return server.requests().size() == before + 3; }));
    EXPECT_FALSE(testing::waitUntil([&] { return server.requests().size() > before + 3; }, 300ms));
    for (const MapTile& tile : kept)
        EXPECT_TRUE(has(tile));
}

TEST_F(MapTileStoreTest, TurnsTheLightnessOfPicturesRoundInTheDark) {
    const QImage paper = MapTileDecoder::decode(picture(QColor(u"#f2efe9"_s)), 1024, true);
    EXPECT_LT(paper.pixelColor(3, 3).lightness(), 70);
    const QImage ink = MapTileDecoder::decode(picture(QColor(u"#222222"_s)), 1024, true);
    EXPECT_GT(ink.pixelColor(3, 3).lightness(), 170);
    const QImage water = MapTileDecoder::decode(picture(QColor(u"#aad3df"_s)), 1024, true);
    EXPECT_GT(water.pixelColor(3, 3).blue(), water.pixelColor(3, 3).red());
    server.answer(pathOf(first), answerWith(picture(Qt::white)));
    make();
    store->show({first});
    ASSERT_TRUE(arrives(first));
    store->setDark(true);
    EXPECT_FALSE(has(first));
    ASSERT_TRUE(arrives(first));
    EXPECT_LT(store->picture(first).image->pixelColor(3, 3).lightness(), 70);
}

TEST_F(MapTileStoreTest, AsksNobodyWithoutAnAddress) {
    const QString wrongScheme = server.url(u"/{z}/{x}/{y}"_s).replace(u"http:"_s, u"ftp:"_s);
    for (const QString& address :
         {u""_s, u"nonsense"_s, u"file:///etc/{z}{x}{y}"_s, u"https:///{z}/{x}/{y}"_s, server.url(u"/tiles"_s),
          server.url(u"/{z}/{x}"_s), server.url(u"/{x}/{y}"_s), wrongScheme}) {
        options.urlTemplate = address;
        EXPECT_FALSE(options.isUsable()) << address.toStdString();
        make();
        store->show({first});
        EXPECT_FALSE(testing::waitUntil([&] { return !server.requests().isEmpty(); }, 50ms)) << address.toStdString();
    }
}

TEST(MapTileOptions, NameWhoseDataIsShown) {
    MapTileOptions options;
    options.urlTemplate = u"https://tile.openstreetmap.org/{z}/{x}/{y}.png"_s;
    EXPECT_EQ(options.attribution(), u"© OpenStreetMap contributors");
    options.urlTemplate = u"https://tiles.example.com/{z}/{x}/{y}.png"_s;
    EXPECT_EQ(options.attribution(), u"© tiles.example.com");
    options.urlTemplate = u"http://127.0.0.1:8080/{z}/{x}/{y}.png"_s;
    EXPECT_EQ(options.attribution(), u"© 127.0.0.1");
    options.attributionText = u"© Somebody"_s;
    EXPECT_EQ(options.attribution(), u"© Somebody");
}

TEST(MapTileOptions, LeadToWhatIsSaidAboutTheData) {
    MapTileOptions options;
    options.urlTemplate = u"https://tile.openstreetmap.org/{z}/{x}/{y}.png"_s;
    EXPECT_EQ(options.attributionUrl(), QUrl(u"https://www.openstreetmap.org/copyright"_s));
    options.urlTemplate = u"https://tiles.example.com/{z}/{x}/{y}.png"_s;
    EXPECT_TRUE(options.attributionUrl().isEmpty());
    options.attributionAddress = u"https://example.com/licence"_s;
    EXPECT_EQ(options.attributionUrl(), QUrl(u"https://example.com/licence"_s));
    for (const QString& address : {u"file:///etc/passwd"_s, u"example.com"_s, u"javascript:alert(1)"_s}) {
        options.attributionAddress = address;
        EXPECT_TRUE(options.attributionUrl().isEmpty()) << address.toStdString();
    }
}

TEST(MapSetup, TakesTilesAndWhoseTheyAreFromOnePlace) {
    testing::MemoryPreferencesStore preferences;
    preferences.setData(u"mapTilesURL"_s, "https://tiles.example.com/{z}/{x}/{y}");
    preferences.setData(u"mapTilesAttribution"_s, "© Example");
    preferences.setData(u"mapTilesAttributionURL"_s, "https://example.com/licence");
    qunsetenv("CORVANTA_MAP_TILES_URL");
    MapTileOptions options = MapSetup::tileOptions(preferences);
    EXPECT_EQ(options.attribution(), u"© Example");
    EXPECT_EQ(options.attributionUrl(), QUrl(u"https://example.com/licence"_s));
    qputenv("CORVANTA_MAP_TILES_URL", "https://other.example.com/{z}/{x}/{y}");
    options = MapSetup::tileOptions(preferences);
    EXPECT_EQ(options.attribution(), u"© other.example.com");
    EXPECT_TRUE(options.attributionUrl().isEmpty());
    qputenv("CORVANTA_MAP_TILES_ATTRIBUTION", "© Other");
    EXPECT_EQ(MapSetup::tileOptions(preferences).attribution(), u"© Other");
    qunsetenv("CORVANTA_MAP_TILES_ATTRIBUTION");
    qunsetenv("CORVANTA_MAP_TILES_URL");
}

} // namespace

} // namespace corvanta
