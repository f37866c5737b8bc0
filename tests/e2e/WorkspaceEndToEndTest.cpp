// SPDX-License-Identifier: MIT
// Corvanta on the device lab, observed from outside: real processes, real pages, real windows, the real Web Inspector.
#include "WorkspaceEndToEnd.h"

#include <QImage>
#include <QProcess>
#include <QSettings>
#include <QTemporaryDir>

#include <cmath>
#include <csignal>

namespace corvanta::testing {

namespace {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

TEST_F(WorkspaceEndToEnd, TilesTheThreeWindowsAndPutsThemBack) {
    launchOnSample();
    startAndWait();
    ASSERT_TRUE(m_corvanta.press(u"Stop"_s));
    ASSERT_TRUE(eventually([this] { return m_corvanta.shows(u"Stopped; external apps were left running"_s); }));

    // A person's own arrangement, with an inspector that is there before the second start.
    const QRect ownControls(40, 60, 420, 700);
    const QRect ownSimulator(500, 90, 380, 640);
    m_windows.place(m_windows.window(u"Corvanta"_s)->id, ownControls);
    m_windows.place(m_windows.window(u"iP"_s)->id, ownSimulator);
    ASSERT_TRUE(eventually([&] { return hasFrame(u"Corvanta"_s, ownControls) && hasFrame(u"iP"_s, ownSimulator); }));

    startAndWait();
    const QRect area = m_windows.workArea();
    const WorkspaceFrames columns = expectedColumns(area);
    EXPECT_TRUE(eventually([&] { return hasFrame(u"Corvanta"_s, onScreen(columns.controls, area)); }));
    EXPECT_TRUE(eventually([&] { return hasFrame(u"iP"_s, onScreen(columns.simulator, area)); }));
    EXPECT_TRUE(eventually([&] { return hasFrame(u"Web Inspector"_s, onScreen(columns.inspector, area)); }));

    ASSERT_TRUE(m_corvanta.press(u"Stop"_s));
    EXPECT_TRUE(eventually([&] { return hasFrame(u"Corvanta"_s, ownControls); }))
        << hasFrame(u"Corvanta"_s, ownControls).message();
    EXPECT_TRUE(eventually([&] { return hasFrame(u"iP"_s, ownSimulator); }))
        << hasFrame(u"iP"_s, ownSimulator).message();
    const auto inspector = m_windows.window(u"Web Inspector"_s);
    ASSERT_TRUE(inspector);
    EXPECT_TRUE(eventually([&] { return !hasFrame(u"Web Inspector"_s, onScreen(columns.inspector, area)); }));
}

TEST_F(WorkspaceEndToEnd, InspectsTheRealPage) {
    launchOnSample();
    startAndWait();
    EXPECT_TRUE(eventually([] { return inspectorShows(u"Corvanta sample page"_s); }));
    EXPECT_TRUE(eventually([] { return inspectorShows(u"Elements"_s); }));
    EXPECT_TRUE(eventually([] { return inspectorShows(u"Console"_s); }));
    // An attribute of the page's own body, as the inspector's document tree shows it.
    EXPECT_TRUE(eventually([] { return inspectorShows(u"data-page"_s); }));
}

TEST_F(WorkspaceEndToEnd, LetsThePageSeeTheDevice) {
    // A stored profile with a location, as an earlier session leaves it.
    const QByteArray profile = R"({"pageURL":"http://localhost:3000","coordinate":{"latitude":41.3874,)"
                               R"("longitude":2.1686},"locationName":"Barcelona","columnRatios":{"controls":0.25,)"
                               R"("simulator":0.3,"inspector":0.45},"lastUsedAt":800000000})";
    QSettings(QSettings::NativeFormat, QSettings::UserScope, u"Corvanta"_s, u"Corvanta"_s)
        .setValue(u"workspaceProfile"_s, profile);
    launchOnSample({u"--device"_s, u"iPhone 16 Pro"_s});
    startAndWait();
    const auto located = [](const QJsonObject& report) {
        return std::abs(report[u"latitude"_s].toDouble() - 41.3874) < 1e-6 &&
               std::abs(report[u"longitude"_s].toDouble() - 2.1686) < 1e-6;
    };
    ASSERT_TRUE(eventually([&] { return m_site.report(located).has_value(); }));
    const QJsonObject report = *m_site.report(located);
    EXPECT_EQ(report[u"innerWidth"_s].toInt(), 402);
    EXPECT_TRUE(report[u"userAgent"_s].toString().contains(u"iPhone; CPU iPhone OS 18_"_s))
        << qPrintable(report[u"userAgent"_s].toString());
}

TEST_F(WorkspaceEndToEnd, GivesThePageThePlaceThatIsPickedOnTheMap) {
    launchOnSample({u"--device"_s, u"iPhone 16 Pro"_s});
    startAndWait();
    ASSERT_TRUE(eventually([this] { return m_corvanta.mapMiddle() == u"41.3874, 2.1686"; }))
        << m_corvanta.mapMiddle().toStdString();
    EXPECT_FALSE(m_corvanta.hasPinAt(u"41.3874, 2.1686"_s));
    ASSERT_TRUE(m_corvanta.pickMapMiddle());
    ASSERT_TRUE(eventually([this] { return m_corvanta.shows(u"41.3874,2.1686"_s); })) << shownTexts();
    EXPECT_TRUE(m_corvanta.shows(u"Dropped Pin"_s));
    EXPECT_TRUE(eventually([this] { return m_corvanta.hasPinAt(u"41.3874, 2.1686"_s); }));
    EXPECT_EQ(m_corvanta.mapMiddle(), u"41.3874, 2.1686");
    ASSERT_TRUE(m_corvanta.press(u"Set Location"_s));
    EXPECT_TRUE(eventually([this] {
        return m_site
            .report([](const QJsonObject& report) {
                return std::abs(report[u"latitude"_s].toDouble() - 41.3874) < 1e-6 &&
                       std::abs(report[u"longitude"_s].toDouble() - 2.1686) < 1e-6;
            })
            .has_value();
    }));
}

TEST_F(WorkspaceEndToEnd, GivesThePageThePlaceThatIsFoundByItsName) {
    launchOnSample({u"--device"_s, u"iPhone 16 Pro"_s});
    startAndWait();
    ASSERT_TRUE(eventually([this] { return m_corvanta.mapMiddle() == u"41.3874, 2.1686"; }));
    ASSERT_TRUE(m_corvanta.typePlace(u"reykjavik"_s));
    // The suggestion's button is named by what it shows.
    ASSERT_TRUE(eventually([this] { return m_corvanta.pressBeginningWith(u"Reykjav"_s); })) << shownTexts();
    const auto isReykjavik = [](double latitude, double longitude) {
        return std::abs(latitude - 64.1) < 0.2 && std::abs(longitude + 21.9) < 0.2;
    };
    const auto middle = [this] {
        const QStringList parts = m_corvanta.mapMiddle().split(u", "_s);
        return parts.size() == 2 ? std::pair(parts[0].toDouble(), parts[1].toDouble()) : std::pair(0.0, 0.0);
    };
    ASSERT_TRUE(eventually([&] { return isReykjavik(middle().first, middle().second); }))
        << m_corvanta.mapMiddle().toStdString();
    EXPECT_TRUE(eventually([this] { return m_corvanta.hasPinAt(m_corvanta.mapMiddle()); }));
    const QString place = m_corvanta.mapMiddle();
    ASSERT_TRUE(m_corvanta.press(u"Set Location"_s));
    ASSERT_TRUE(eventually([&] {
        return m_site
            .report([&](const QJsonObject& report) {
                return isReykjavik(report[u"latitude"_s].toDouble(), report[u"longitude"_s].toDouble());
            })
            .has_value();
    }));
    EXPECT_EQ(m_corvanta.mapMiddle(), place);
}

TEST_F(WorkspaceEndToEnd, StartsAgainAfterStop) {
    launchOnSample();
    startAndWait();
    ASSERT_TRUE(m_corvanta.press(u"Stop"_s));
    ASSERT_TRUE(eventually([this] { return m_corvanta.isEnabled(u"Start Workspace"_s); }));
    startAndWait();
    EXPECT_TRUE(m_corvanta.isEnabled(u"Re-tile"_s));
}

TEST_F(WorkspaceEndToEnd, AttachesToTheNewPageAfterEachStartAndReload) {
    launchOnSample();
    startAndWait();
    ASSERT_TRUE(m_corvanta.press(u"Stop"_s));
    ASSERT_TRUE(m_corvanta.typeAddress(m_site.address(u"two.html"_s)));
    ASSERT_TRUE(eventually([this] { return m_corvanta.isEnabled(u"Start Workspace"_s); }));
    std::uint32_t previous = inspectorWindows().front().id;

    const auto attachedAnew = [&] {
        const auto inspectors = inspectorWindows();
        return inspectors.size() == 1 && inspectors.front().id != previous;
    };
    startAndWait();
    ASSERT_TRUE(eventually(attachedAnew));
    EXPECT_TRUE(eventually([] { return inspectorShows(u"Corvanta second page"_s); }));

    for (const QString& page : {u"index.html?first"_s, u"index.html?second"_s, u"index.html?third"_s}) {
        previous = inspectorWindows().front().id;
        ASSERT_TRUE(m_corvanta.typeAddress(m_site.address(page)));
        ASSERT_TRUE(m_corvanta.press(u"Open / Reload"_s));
        ASSERT_TRUE(eventually(attachedAnew)) << shownTexts();
        waitUntilRunning();
    }
}

TEST_F(WorkspaceEndToEnd, FailsOnAnEmptyAddressWithBothTexts) {
    launchOnSample();
    ASSERT_TRUE(m_corvanta.typeAddress({}));
    ASSERT_TRUE(m_corvanta.press(u"Start Workspace"_s));
    EXPECT_TRUE(eventually([this] { return m_corvanta.shows(u"Enter a webpage URL."_s); })) << shownTexts();
    EXPECT_TRUE(m_corvanta.shows(u"Use an HTTP or HTTPS address, for example http://localhost:3000."_s));
    EXPECT_TRUE(m_corvanta.shows(u"Needs attention"_s));
}

TEST_F(WorkspaceEndToEnd, FailsWhenSafariDiesWhileAttachingAndStartsAgain) {
    // The program itself says when the phase begins; a look at its window could come too late.
    m_corvanta.start({u"--url"_s, m_site.address(), u"--start"_s});
    ASSERT_TRUE(eventually([this] { return m_corvanta.output().contains("Attaching inspector"); }, startLimit));
    const int safari = sessionProcess(u"com.apple.Safari"_s);
    ASSERT_GT(safari, 0);
    ::kill(safari, SIGKILL);
    EXPECT_TRUE(eventually([this] { return m_corvanta.output().contains("Needs attention"); }, 12s)) << shownTexts();
    EXPECT_TRUE(eventually([this] { return m_corvanta.isEnabled(u"Start Workspace"_s); })) << shownTexts();
    startAndWait();
}

TEST_F(WorkspaceEndToEnd, ShowsNoMenuWhilePolling) {
    launchOnSample();
    m_windows.watchPopups();
    startAndWait();
    // The time is what is tested here: nothing may pop up in a minute of polling.
    EXPECT_FALSE(eventually([this] { return m_windows.popupsSeen() > 0; }, 60s));
    EXPECT_TRUE(m_corvanta.shows(u"Workspace running"_s));
    // One that is meant to pop up is seen, so the silence before was not the observer's.
    ASSERT_TRUE(m_corvanta.openDeviceList());
    EXPECT_TRUE(eventually([this] { return m_windows.popupsSeen() > 0; }));
}

TEST_F(WorkspaceEndToEnd, TellsTwoDevicesWithSimilarNamesApart) {
    int status = 0;
    runTool(u"xcrun"_s, {u"simctl"_s, u"boot"_s, u"iPhone 16 Pro"_s}, &status);
    ASSERT_EQ(status, 0);
    runTool(u"xcrun"_s, {u"simctl"_s, u"bootstatus"_s, u"iPhone 16 Pro"_s, u"-b"_s}, &status);
    ASSERT_EQ(status, 0);
    runTool(u"open"_s, {u"-a"_s, u"Simulator"_s}, &status);
    launchOnSample({u"--device"_s, u"iPhone 16"_s});
    startAndWait();
    const QRect area = m_windows.workArea();
    const QRect column = onScreen(expectedColumns(area).simulator, area);
    const auto tiled = frameOf(u"iPhone 16 –"_s);
    ASSERT_TRUE(tiled);
    EXPECT_TRUE(isWithinTwoPixels(*tiled, column));
    const auto other = frameOf(u"iPhone 16 Pro –"_s);
    ASSERT_TRUE(other);
    EXPECT_FALSE(isWithinTwoPixels(*other, column));
    EXPECT_TRUE(eventually([this] {
        return m_site.report([](const QJsonObject& report) { return report[u"innerWidth"_s].toInt() == 393; })
            .has_value();
    }));
}

TEST_F(WorkspaceEndToEnd, RunsUnattendedAndWritesAScreenshot) {
    QTemporaryDir folder;
    const QString picture = folder.filePath(u"desktop.png"_s);
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(QStringLiteral(CORVANTA_PROGRAM),
                  {u"--url"_s, m_site.address(), u"--start"_s, u"--screenshot"_s, picture});
    ASSERT_TRUE(process.waitForFinished(120'000));
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(process.exitCode(), 0);
    const QString output = QString::fromUtf8(process.readAllStandardOutput());
    for (const auto* const phase :
         {"Checking setup", "Booting", "Opening page", "Attaching inspector", "Running", "Idle"})
        EXPECT_TRUE(output.contains(QLatin1StringView(phase))) << phase << " is missing in\n" << qPrintable(output);
    EXPECT_TRUE(output.contains(picture));
    EXPECT_EQ(QImage(picture).size(), QSize(1600, 1000));
}

} // namespace

} // namespace corvanta::testing
