// SPDX-License-Identifier: MIT
#include "PageServer.h"
#include "ToolRun.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QImage>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTimer>

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <functional>
#include <set>

namespace corvanta {

namespace {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

constexpr qint64 limit = 20000;

void serveEvents(std::chrono::milliseconds time) {
    QEventLoop pause;
    QTimer::singleShot(time, &pause, &QEventLoop::quit);
    pause.exec();
}

bool eventually(const std::function<bool()>& condition) {
    QElapsedTimer elapsed;
    elapsed.start();
    while (!condition()) {
        if (elapsed.elapsed() > limit) {
            return false;
        }
        serveEvents(20ms);
    }
    return true;
}

/// What a player finds in a movie.
struct MovieFacts {
    /// What it says of a file that it cannot play.
    QString problem;
    QString container;
    QString codec;
    QSize size;
    std::chrono::milliseconds duration{};
};

MovieFacts discover(const QString& path) {
    QProcess player;
    player.start(u"gst-discoverer-1.0"_s, {u"-v"_s, path});
    if (!player.waitForFinished()) {
        MovieFacts none;
        none.problem = u"gst-discoverer-1.0: "_s + player.errorString();
        return none;
    }
    const QString text = QString::fromUtf8(player.readAllStandardOutput());
    const auto found = [&text](const QString& pattern) { return QRegularExpression(pattern).match(text); };
    const auto number = [&found](const QString& name) { return found(name + u": (\\d+)"_s).captured(1).toInt(); };
    const auto time = found(u"Duration: (\\d+):(\\d+):(\\d+)\\.(\\d{3})"_s);
    return {.problem = found(u"An error was encountered[\\s\\S]*"_s).captured(),
            .container = found(u"container format: (.*)"_s).captured(1),
            .codec = found(u"video codec: (.*)"_s).captured(1),
            .size = {number(u"Width"_s), number(u"Height"_s)},
            .duration = std::chrono::hours(time.captured(1).toInt()) + std::chrono::minutes(time.captured(2).toInt()) +
                        std::chrono::seconds(time.captured(3).toInt()) +
                        std::chrono::milliseconds(time.captured(4).toInt())};
}

/// What pages see of the commands that change a running device. One device for all of the tests.
class DeviceControl : public ::testing::Test {
protected:
    static ToolRun simctl(const QStringList& arguments) {
        QProcess process;
        QEventLoop loop;
        QObject::connect(&process, &QProcess::finished, &loop, &QEventLoop::quit);
        QTimer::singleShot(60s, &loop, &QEventLoop::quit);
        process.start(QFile::decodeName(CORVANTA_LAB_PROGRAMS) + u"/simctl"_s, arguments);
        loop.exec();
        return {process.state() == QProcess::NotRunning ? process.exitCode() : -1, process.readAllStandardOutput(),
                process.readAllStandardError()};
    }

    static void SetUpTestSuite() {
        if (qEnvironmentVariableIsEmpty("CORVANTA_VIRTUAL_DESKTOP")) {
            return;
        }
        udid = QString::fromUtf8(simctl({u"create"_s, u"Controlled"_s, u"iPhone 16 Pro"_s}).output).trimmed();
        ASSERT_EQ(simctl({u"bootstatus"_s, udid, u"-b"_s}).status, 0);
    }

    static void TearDownTestSuite() { simctl({u"delete"_s, udid}); }

    void SetUp() override {
        if (udid.isEmpty()) {
            GTEST_SKIP() << "needs a desktop of its own: run it through tests/support/virtual-desktop";
        }
    }

    /// Opens the page and waits for its first report.
    void open(const QString& page) {
        ASSERT_EQ(simctl({u"openurl"_s, udid, server.url(page)}).status, 0);
        ASSERT_TRUE(eventually([&] { return !server.last(page).isEmpty(); }));
    }

    static inline QString udid;
    PageServer server;
};

TEST_F(DeviceControl, PagesTravelAlongARoute) {
    open(u"located-travelling"_s);
    const auto geo = [&] { return server.last(u"located-travelling"_s)[u"geo"].toString(); };

    // Half a degree, which takes about three seconds.
    EXPECT_EQ(
        simctl({u"location"_s, udid, u"start"_s, u"--speed=20000"_s, u"--interval=0.1"_s, u"10,20"_s, u"10.5,20"_s})
            .status,
        0);

    EXPECT_TRUE(eventually([&] { return geo() == u"10.5,20"; })) << geo().toStdString();
    std::set<QString> places;
    double previous = 10;
    for (const QJsonObject& report : server.reports(u"located-travelling"_s)) {
        const QString place = report[u"geo"].toString();
        if (place.contains(u',') && places.insert(place).second) {
            EXPECT_GE(place.section(u',', 0, 0).toDouble(), previous - 1e-9) << "it goes on to the north";
            previous = place.section(u',', 0, 0).toDouble();
        }
    }
    EXPECT_GE(places.size(), 4U);
    EXPECT_EQ(server.last(u"located-travelling"_s)[u"speed"].toDouble(-1), 0) << "it stands at its end";
}

TEST_F(DeviceControl, ASetLocationEndsARoute) {
    open(u"located-ended"_s);
    const auto geo = [&] { return server.last(u"located-ended"_s)[u"geo"].toString(); };
    EXPECT_EQ(simctl({u"location"_s, udid, u"run"_s, u"Freeway Drive"_s}).status, 0);
    EXPECT_TRUE(eventually([&] { return geo().startsWith(u"37.3"); }));
    EXPECT_EQ(simctl({u"location"_s, udid, u"set"_s, u"1,2"_s}).status, 0);
    EXPECT_TRUE(eventually([&] { return geo() == u"1,2"; }));
    const qsizetype before = server.reports(u"located-ended"_s).size();
    EXPECT_TRUE(eventually([&] { return server.reports(u"located-ended"_s).size() > before + 12; }));
    EXPECT_EQ(geo(), u"1,2") << "more than a second later, when the route would have gone on";
    EXPECT_EQ(simctl({u"location"_s, udid, u"clear"_s}).status, 0);
}

TEST_F(DeviceControl, ItsWindowHasTheNameThatItIsGiven) {
    const auto isShown = [](const QString& title) {
        QProcess search;
        search.start(u"xdotool"_s, {u"search"_s, u"--onlyvisible"_s, u"--name"_s, u"^"_s + title + u"$"_s});
        return search.waitForFinished() && search.exitCode() == 0;
    };
    QProcess open;
    open.start(QFile::decodeName(CORVANTA_LAB_PROGRAMS) + u"/open"_s,
               {u"-g"_s, u"-a"_s, u"Simulator"_s, u"--args"_s, u"-CurrentDeviceUDID"_s, udid});
    ASSERT_TRUE(eventually([&] { return open.state() == QProcess::NotRunning; }));
    EXPECT_TRUE(eventually([&] { return isShown(u"Controlled – iOS 18.2"_s); }));
    EXPECT_EQ(simctl({u"rename"_s, udid, u"Renamed"_s}).status, 0);
    EXPECT_TRUE(eventually([&] { return isShown(u"Renamed – iOS 18.2"_s); }));
    EXPECT_EQ(simctl({u"rename"_s, udid, u"Controlled"_s}).status, 0);
}

TEST_F(DeviceControl, PagesSeeTheAppearance) {
    open(u"appearance"_s);
    const auto isDark = [&] { return server.last(u"appearance"_s)[u"dark"].toBool(); };
    EXPECT_FALSE(isDark());
    EXPECT_EQ(simctl({u"ui"_s, udid, u"appearance"_s, u"dark"_s}).status, 0);
    EXPECT_TRUE(eventually(isDark));
    EXPECT_EQ(simctl({u"ui"_s, udid, u"appearance"_s, u"light"_s}).status, 0);
    EXPECT_TRUE(eventually([&] { return !isDark(); }));
}

TEST_F(DeviceControl, PagesAreToldNoLocationWithoutPermission) {
    EXPECT_EQ(simctl({u"location"_s, udid, u"set"_s, u"5,6"_s}).status, 0);
    EXPECT_EQ(simctl({u"privacy"_s, udid, u"revoke"_s, u"location"_s, u"com.apple.mobilesafari"_s}).status, 0);
    open(u"located-refused"_s);
    EXPECT_TRUE(eventually([&] { return server.last(u"located-refused"_s)[u"geo"].toString() == u"error 1"; }));
    EXPECT_EQ(simctl({u"privacy"_s, udid, u"grant"_s, u"location"_s, u"com.apple.mobilesafari"_s}).status, 0);
    open(u"located-allowed"_s);
    EXPECT_TRUE(eventually([&] { return server.last(u"located-allowed"_s)[u"geo"].toString() == u"5,6"; }));
}

TEST_F(DeviceControl, APictureShowsThePageInTheDevicesPixels) {
    open(u"pictured"_s);
    const auto picture = [] {
        return QImage::fromData(simctl({u"io"_s, udid, u"screenshot"_s, u"-"_s}).output, "PNG");
    };
    EXPECT_EQ(picture().size(), QSize(1206, 2622));
    // The page is one colour between the bars.
    EXPECT_TRUE(eventually([&] { return picture().pixelColor(603, 1000) == QColor(255, 0, 255); }));
    const QImage last = picture();
    EXPECT_EQ(last.pixelColor(1, 1000), QColor(255, 0, 255)) << "up to the edge";
    EXPECT_GT(last.pixelColor(0, 0).lightness(), 200) << "square corners in the colour of the bars";
    const QImage cut =
        QImage::fromData(simctl({u"io"_s, udid, u"screenshot"_s, u"--mask=alpha"_s, u"-"_s}).output, "PNG");
    EXPECT_EQ(cut.pixelColor(0, 0).alpha(), 0);
    EXPECT_EQ(cut.pixelColor(603, 1000), QColor(255, 0, 255));
    const QImage few =
        QImage::fromData(simctl({u"io"_s, udid, u"screenshot"_s, u"--type=gif"_s, u"-"_s}).output, "GIF");
    EXPECT_EQ(few.size(), QSize(1206, 2622));
    EXPECT_EQ(few.pixelColor(1, 1000), QColor(255, 0, 255));
    EXPECT_EQ(few.pixelColor(1200, 1700), QColor(255, 0, 255));
}

TEST_F(DeviceControl, ARecordingEndsWithAMovieWhenInterrupted) {
    open(u"recorded"_s);
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"movie.mov"_s);
    QProcess process;
    process.start(QFile::decodeName(CORVANTA_LAB_PROGRAMS) + u"/simctl"_s, {u"io"_s, udid, u"recordVideo"_s, path});
    QByteArray messages;
    ASSERT_TRUE(eventually([&] {
        messages += process.readAllStandardError();
        return messages.contains("Recording started");
    }));
    QElapsedTimer recorded;
    recorded.start();
    // The page reports ten times a second.
    const qsizetype before = server.reports(u"recorded"_s).size();
    ASSERT_TRUE(eventually([&] { return server.reports(u"recorded"_s).size() >= before + 10; }));
    const qint64 least = recorded.elapsed();
    ASSERT_EQ(kill(static_cast<pid_t>(process.processId()), SIGINT), 0);
    ASSERT_TRUE(eventually([&] { return process.state() == QProcess::NotRunning; }));
    EXPECT_EQ(process.exitCode(), 0);
    EXPECT_EQ(process.readAllStandardOutput(),
              "Recording completed. Writing to disk.\n\nWrote video to: " + path.toUtf8() + '\n');
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray movie = file.readAll();
    EXPECT_EQ(movie.mid(4, 8), "ftypqt  ");
    EXPECT_TRUE(movie.contains("moov"));
    EXPECT_TRUE(movie.contains("JFIF"));

    const MovieFacts facts = discover(path);
    EXPECT_EQ(facts.problem, QString());
    EXPECT_EQ(facts.container, u"Quicktime");
    EXPECT_EQ(facts.codec, u"JPEG still images");
    EXPECT_EQ(facts.size, QSize(402, 874)) << "a pixel for each of the page's";
    EXPECT_GE(facts.duration, std::chrono::milliseconds(least) - 100ms);
    EXPECT_LE(facts.duration, std::chrono::milliseconds(recorded.elapsed()) + 100ms);
}

} // namespace

} // namespace corvanta
