// SPDX-License-Identifier: MIT
#include "DeviceBus.h"
#include "DeviceCatalogue.h"
#include "DeviceLayout.h"
#include "LabDesktop.h"
#include "LabFolders.h"

#include <QColor>
#include <QDBusConnection>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QRegularExpression>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <xcb/xcb.h>

#include <csignal>
#include <cstdlib>
#include <memory>
#include <set>
#include <string_view>

namespace corvanta {

namespace {

using namespace Qt::Literals::StringLiterals;
using lab::DeviceLayout;
using lab::DeviceType;

/// Asks the window manager to close a window, as its title bar's button does.
void askToClose(std::uint32_t window) {
    xcb_connection_t* connection = xcb_connect(nullptr, nullptr);
    constexpr std::string_view name = "_NET_CLOSE_WINDOW";
    const std::unique_ptr<xcb_intern_atom_reply_t, decltype(&std::free)> atom(
        xcb_intern_atom_reply(connection, xcb_intern_atom(connection, 0, name.size(), name.data()), nullptr),
        std::free);
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = atom->atom;
    xcb_send_event(connection, 0, xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root,
                   XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   reinterpret_cast<const char*>(&message));
    // A connection that closes at once may take its last request with it, so the server is asked for an answer first.
    std::free(xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
    xcb_disconnect(connection);
}

TEST_F(Simulator, BootsOnceAndSaysSoTheSecondTime) {
    const QString udid = create(u"iPhone 16 Pro"_s);
    EXPECT_EQ(stateOf(udid), u"Shutdown");
    EXPECT_EQ(simctl({u"boot"_s, udid}).status, 0);
    const ToolRun wait = simctl({u"bootstatus"_s, udid, u"-b"_s});
    EXPECT_EQ(wait.status, 0);
    EXPECT_TRUE(wait.output.startsWith("Monitoring boot status for iPhone 16 Pro (" + udid.toUtf8() + ").\n"));
    EXPECT_EQ(stateOf(udid), u"Booted");
    const ToolRun again = simctl({u"boot"_s, udid});
    EXPECT_EQ(again.status, 149);
    EXPECT_EQ(again.error, "An error was encountered processing the command "
                           "(domain=com.apple.CoreSimulator.SimError, code=405):\n"
                           "Unable to boot device in current state: Booted\n");
    EXPECT_TRUE(simctl({u"bootstatus"_s, udid, u"-b"_s}).output.endsWith("Device already booted, nothing to do.\n"));
    EXPECT_EQ(simctl({u"shutdown"_s, udid}).status, 0);
    EXPECT_EQ(stateOf(udid), u"Shutdown");
    EXPECT_EQ(labProcesses(), QStringList());
}

TEST_F(Simulator, AcceptsOneOfTwoBootsAtOnce) {
    const QString udid = create(u"iPhone 16"_s);
    QProcess first;
    QProcess second;
    const QString tool = QFile::decodeName(CORVANTA_LAB_PROGRAMS) + u"/simctl"_s;
    first.start(tool, {u"boot"_s, udid});
    second.start(tool, {u"boot"_s, udid});
    ASSERT_TRUE(first.waitForFinished() && second.waitForFinished());
    EXPECT_EQ(std::min(first.exitCode(), second.exitCode()), 0);
    EXPECT_EQ(std::max(first.exitCode(), second.exitCode()), 149);
}

TEST_F(Simulator, ShowsPagesTheDeviceBeforeItHasAWindow) {
    for (const QString& name : {u"iPhone SE (3rd generation)"_s, u"iPhone 16 Pro Max"_s, u"iPad mini (A17 Pro)"_s}) {
        const DeviceType& type = *lab::findDeviceType(name);
        const QString udid = createBooted(name);
        const QString page = QString(name).remove(QRegularExpression(u"[^A-Za-z0-9]"_s));
        EXPECT_EQ(simctl({u"openurl"_s, udid, server.url(page)}).status, 0);
        ASSERT_TRUE(waitFor([&] { return !server.reports(page).isEmpty(); }));
        const QJsonObject report = server.reports(page).first();
        EXPECT_EQ(report[u"width"].toInt(), type.viewport.width());
        EXPECT_EQ(report[u"height"].toInt(), type.viewport.height());
        EXPECT_EQ(report[u"layoutWidth"].toInt(), type.viewport.width());
        EXPECT_TRUE(report[u"media"].toBool());
        EXPECT_EQ(report[u"ratio"].toDouble(), type.scale);
        EXPECT_EQ(report[u"touch"].toInt(), 5);
        EXPECT_EQ(report[u"platform"].toString(), type.platform);
        EXPECT_EQ(report[u"screen"].toString(), u"%1x%2"_s.arg(type.screen.width()).arg(type.screen.height()));
        EXPECT_EQ(report[u"agent"].toString(), lab::userAgent(type, *lab::findRuntime(u"18.2"_s)));
        EXPECT_EQ(report[u"visible"].toString(), u"visible");
    }
}

TEST_F(Simulator, GivesPagesExactlyTheLocationThatIsSet) {
    const QString udid = createBooted(u"iPhone 16"_s);
    EXPECT_EQ(simctl({u"location"_s, udid, u"set"_s, u"37.33490001,-122.00912345"_s}).status, 0);
    EXPECT_EQ(simctl({u"openurl"_s, udid, server.url(u"located"_s)}).status, 0);
    const auto hears = [&](const QString& geo) {
        return waitFor([&] { return server.last(u"located"_s)[u"geo"].toString() == geo; });
    };
    EXPECT_TRUE(hears(u"37.33490001,-122.00912345"_s));
    EXPECT_EQ(simctl({u"location"_s, udid, u"set"_s, u"-33.8568,151.2153"_s}).status, 0);
    EXPECT_TRUE(hears(u"-33.8568,151.2153"_s));
    EXPECT_EQ(simctl({u"location"_s, udid, u"clear"_s}).status, 0);
    EXPECT_TRUE(hears(u"error 2"_s));
    EXPECT_EQ(simctl({u"location"_s, udid, u"set"_s, u"0,0"_s}).status, 0);
    EXPECT_TRUE(hears(u"0,0"_s));
}

TEST_F(Simulator, KeepsTwoDevicesApart) {
    const QString first = createBooted(u"iPhone 16 Pro"_s);
    const QString second = createBooted(u"iPad mini (A17 Pro)"_s);
    simctl({u"openurl"_s, first, server.url(u"first"_s)});
    simctl({u"openurl"_s, second, server.url(u"second"_s)});
    ASSERT_TRUE(waitFor([&] { return !server.last(u"first"_s).isEmpty() && !server.last(u"second"_s).isEmpty(); }));
    EXPECT_EQ(server.last(u"first"_s)[u"width"].toInt(), 402);
    EXPECT_EQ(server.last(u"second"_s)[u"width"].toInt(), 744);
    EXPECT_EQ(simctl({u"shutdown"_s, first}).status, 0);
    EXPECT_EQ(stateOf(second), u"Booted");
    const qsizetype before = server.reports(u"second"_s).size();
    EXPECT_TRUE(waitFor([&] { return server.reports(u"second"_s).size() > before + 2; }));
}

TEST_F(Simulator, OpensAPageForEveryAddressAndForPagesThatOpenPages) {
    const QString udid = createBooted(u"iPhone 16"_s);
    simctl({u"openurl"_s, udid, server.url(u"opener"_s)});
    ASSERT_TRUE(waitFor([&] { return !server.last(u"opened"_s).isEmpty(); }));
    EXPECT_EQ(server.last(u"opened"_s)[u"width"].toInt(), 393);
    EXPECT_EQ(server.last(u"opened"_s)[u"ratio"].toInt(), 3);
    EXPECT_FALSE(server.last(u"opener"_s).isEmpty());
}

TEST_F(Simulator, RefusesAnAddressThatNothingOpens) {
    const QString udid = createBooted(u"iPhone 16"_s);
    const ToolRun run = simctl({u"openurl"_s, udid, u"nonsense:thing"_s});
    EXPECT_EQ(run.status, 194);
    EXPECT_TRUE(run.error.startsWith(
        "An error was encountered processing the command (domain=NSOSStatusErrorDomain, code=-10814):\n"));
}

TEST_F(Simulator, ShowsItsWindowAndGoesOnWithoutIt) {
    const QString title = u"iPhone 16 Pro – iOS 18.2"_s;
    const QString udid = create(u"iPhone 16 Pro"_s);
    const QStringList show{u"-a"_s, u"Simulator"_s, u"--args"_s, u"-CurrentDeviceUDID"_s, udid};
    EXPECT_EQ(runLab(u"open"_s, show).status, 0);
    const QString id = window(title);
    ASSERT_FALSE(id.isEmpty()) << "the window is not mapped when open returns";
    simctl({u"openurl"_s, udid, server.url(u"page"_s)});
    ASSERT_TRUE(waitFor([&] { return !server.last(u"page"_s).isEmpty(); }));
    askToClose(id.toUInt());
    EXPECT_TRUE(waitFor([&] { return window(title).isEmpty(); }));
    EXPECT_EQ(stateOf(udid), u"Booted");
    const qsizetype before = server.reports(u"page"_s).size();
    EXPECT_TRUE(waitFor([&] { return server.reports(u"page"_s).size() > before + 2; }));
    EXPECT_EQ(server.last(u"page"_s)[u"width"].toInt(), 402);
    EXPECT_EQ(runLab(u"open"_s, show).status, 0);
    EXPECT_FALSE(window(title).isEmpty());
}

/// The window's largest icon; null without any.
QImage iconOf(std::uint32_t window) {
    const std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> connection(xcb_connect(nullptr, nullptr),
                                                                                  xcb_disconnect);
    constexpr std::string_view name = "_NET_WM_ICON";
    const std::unique_ptr<xcb_intern_atom_reply_t, decltype(&std::free)> atom(
        xcb_intern_atom_reply(connection.get(), xcb_intern_atom(connection.get(), 0, name.size(), name.data()),
                              nullptr),
        std::free);
    constexpr std::uint32_t longest = 1U << 20U;
    const std::unique_ptr<xcb_get_property_reply_t, decltype(&std::free)> reply(
        xcb_get_property_reply(connection.get(),
                               xcb_get_property(connection.get(), 0, window, atom->atom, XCB_ATOM_CARDINAL, 0, longest),
                               nullptr),
        std::free);
    const auto* words = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
    const auto* const end = words + xcb_get_property_value_length(reply.get()) / 4;
    QImage largest;
    while (end - words > 2) {
        const QSize size(static_cast<int>(words[0]), static_cast<int>(words[1]));
        words += 2;
        if (end - words < qsizetype(size.width()) * size.height()) {
            break;
        }
        if (size.width() > largest.width()) {
            largest = QImage(reinterpret_cast<const uchar*>(words), size.width(), size.height(), QImage::Format_ARGB32)
                          .copy();
        }
        words += qsizetype(size.width()) * size.height();
    }
    return largest;
}

TEST_F(Simulator, GivesItsWindowItsIcon) {
    const QString udid = create(u"iPhone 16 Pro"_s);
    EXPECT_EQ(runLab(u"open"_s, {u"-a"_s, u"Simulator"_s, u"--args"_s, u"-CurrentDeviceUDID"_s, udid}).status, 0);
    const QImage icon = iconOf(window(u"iPhone 16 Pro – iOS 18.2"_s).toUInt());
    ASSERT_GE(icon.width(), 32);
    // Between the screen's cards and in the highest one, as the picture has them.
    const auto at = [&](double x, double y) { return icon.pixelColor(int(x * icon.width()), int(y * icon.height())); };
    EXPECT_GT(at(0.5, 0.72).lightness(), 180);
    EXPECT_EQ(at(0.5, 0.38), QColor(0x5d, 0x6b, 0xd8));
    EXPECT_EQ(at(0.01, 0.01).alpha(), 0);
}

TEST_F(Simulator, DrawsNoLinesAroundTheScreen) {
    const QString name = u"iPad mini (A17 Pro)"_s;
    const QString udid = create(name);
    runLab(u"open"_s, {u"-a"_s, u"Simulator"_s, u"--args"_s, u"-CurrentDeviceUDID"_s, udid});
    const QString id = window(name + u" – iOS 18.2"_s);
    // The screen's edges are between whole pixels at most sizes.
    for (const QSize size : {QSize(470, 950), QSize(471, 950), QSize(500, 800), QSize(333, 640)}) {
        runServing(u"xdotool"_s, {u"windowsize"_s, id, QString::number(size.width()), QString::number(size.height())});
        const QRect screen = DeviceLayout::fit(*lab::findDeviceType(name), size).screen.toAlignedRect();
        std::set<QRgb> colours;
        const auto isPlain = [&] {
            const QImage picture =
                QImage::fromData(runServing(u"import"_s, {u"-window"_s, id, u"png:-"_s}).output, "PNG");
            if (picture.size() != size) {
                return false;
            }
            colours.clear();
            for (int distance = 1; distance <= 4; ++distance) {
                const QRect around = screen.adjusted(-distance, -distance, distance, distance);
                for (const QPoint place : {QPoint(around.left(), screen.top() + screen.height() / 4),
                                           QPoint(around.right(), screen.top() + screen.height() / 4),
                                           QPoint(screen.left() + screen.width() / 4, around.top()),
                                           QPoint(screen.left() + screen.width() / 4, around.bottom())}) {
                    colours.insert(picture.pixel(place));
                }
            }
            return colours.size() == 1;
        };
        EXPECT_TRUE(waitFor(isPlain)) << size.width() << "x" << size.height() << ": " << colours.size() << " colours";
    }
}

TEST_F(Simulator, LeavesTheFocusAloneWhenOpenedInTheBackground) {
    const QString first = create(u"iPhone 16 Pro"_s);
    const QString second = create(u"iPhone 16"_s);
    const auto open = [](const QStringList& options, const QString& udid) {
        return runLab(u"open"_s,
                      options + QStringList{u"-a"_s, u"Simulator"_s, u"--args"_s, u"-CurrentDeviceUDID"_s, udid})
            .status;
    };
    const auto isActive = [](const QString& title) {
        const ToolRun active = runServing(u"xdotool"_s, {u"getactivewindow"_s, u"getwindowname"_s});
        return QString::fromUtf8(active.output).trimmed() == title;
    };
    const QString firstTitle = u"iPhone 16 Pro – iOS 18.2"_s;
    const QString secondTitle = u"iPhone 16 – iOS 18.2"_s;
    ASSERT_EQ(open({}, first), 0);
    ASSERT_TRUE(waitFor([&] { return isActive(firstTitle); }));

    EXPECT_EQ(open({u"-g"_s}, second), 0);
    EXPECT_FALSE(window(secondTitle).isEmpty()) << "the window is shown";
    EXPECT_TRUE(isActive(firstTitle));
    EXPECT_EQ(open({u"-g"_s}, second), 0);
    EXPECT_TRUE(isActive(firstTitle)) << "nor does a second request take the focus";

    EXPECT_EQ(open({}, second), 0);
    EXPECT_TRUE(waitFor([&] { return isActive(secondTitle); }));
}

TEST_F(Simulator, ShutsDownEveryOtherDeviceWhenOneDoesNotObey) {
    // The test's own process has a device's name and no device behind it.
    const QString stubborn = u"FFFFFFFF-0000-4000-8000-000000000000"_s;
    QDBusConnection bus = QDBusConnection::sessionBus();
    ASSERT_TRUE(bus.registerService(lab::deviceBusName(stubborn)));
    const QString first = createBooted(u"iPhone 16 Pro"_s);
    const QString second = createBooted(u"iPhone 16"_s);

    const ToolRun run = simctl({u"shutdown"_s, u"all"_s});

    EXPECT_EQ(run.status, 60);
    EXPECT_TRUE(run.error.startsWith("An error was encountered processing the command "
                                     "(domain=NSPOSIXErrorDomain, code=60):\nUnable to shutdown device.\n"))
        << run.error.constData();
    EXPECT_EQ(stateOf(first), u"Shutdown");
    EXPECT_EQ(stateOf(second), u"Shutdown");
    bus.unregisterService(lab::deviceBusName(stubborn));
    EXPECT_EQ(simctl({u"shutdown"_s, u"all"_s}).status, 0);
}

TEST_F(Simulator, DoesNotBootADeviceWhoseRuntimeIsMissing) {
    const QString udid = create(u"iPhone 16 Pro"_s);
    const QString path = lab::homeFolder() + u"/system.json"_s;
    ASSERT_TRUE(path.startsWith(QFile::decodeName(qgetenv("XDG_DATA_HOME")))) << "the test's own home";
    ASSERT_TRUE(QFile::rename(path, path + u".kept"_s));
    QFile system(path);
    ASSERT_TRUE(system.open(QIODevice::WriteOnly));
    system.write(R"({"runtimes": ["iOS 17.5"]})");
    system.close();
    for (const QStringList& command : {QStringList{u"boot"_s, udid}, QStringList{u"bootstatus"_s, udid, u"-b"_s}}) {
        const ToolRun boot = simctl(command);
        EXPECT_EQ(boot.status, 145);
        EXPECT_EQ(boot.error, "An error was encountered processing the command "
                              "(domain=com.apple.CoreSimulator.SimError, code=401):\n"
                              "The iOS 18.2 simulator runtime is not available.\n");
    }
    const ToolRun open = runLab(u"open"_s, {u"-a"_s, u"Simulator"_s, u"--args"_s, u"-CurrentDeviceUDID"_s, udid});
    EXPECT_EQ(open.status, 1);
    EXPECT_EQ(open.error,
              "Unable to boot iPhone 16 Pro: its runtime com.apple.CoreSimulator.SimRuntime.iOS-18-2 is not "
              "installed.\n");
    EXPECT_EQ(stateOf(udid), u"Shutdown");
    EXPECT_TRUE(QFile::remove(path) && QFile::rename(path + u".kept"_s, path));
    EXPECT_EQ(simctl({u"boot"_s, udid}).status, 0) << "it boots again once the runtime is back";
}

TEST_F(Simulator, SurvivesTheEndOfAPagesProcess) {
    const QString udid = createBooted(u"iPhone 16"_s);
    simctl({u"openurl"_s, udid, server.url(u"page"_s)});
    ASSERT_TRUE(waitFor([&] { return !server.last(u"page"_s).isEmpty(); }));
    for (const QString& process : labProcesses()) {
        if (process.contains(u"WebKitWebProcess")) {
            ::kill(process.section(u' ', 0, 0).toInt(), SIGKILL);
        }
    }
    EXPECT_EQ(simctl({u"openurl"_s, udid, server.url(u"after"_s)}).status, 0);
    EXPECT_TRUE(waitFor([&] { return !server.last(u"after"_s).isEmpty(); }));
    EXPECT_EQ(stateOf(udid), u"Booted");
}

TEST_F(Simulator, KeepsTheViewportAtEveryWindowSize) {
    const QString name = u"iPhone 16 Pro"_s;
    const DeviceType& type = *lab::findDeviceType(name);
    const QString udid = create(name);
    runLab(u"open"_s, {u"-a"_s, u"Simulator"_s, u"--args"_s, u"-CurrentDeviceUDID"_s, udid});
    simctl({u"openurl"_s, udid, server.url(u"page"_s)});
    const QString id = window(u"iPhone 16 Pro – iOS 18.2"_s);
    ASSERT_TRUE(waitFor([&] { return !server.last(u"page"_s).isEmpty(); }));
    for (const QSize size : {QSize(250, 900), QSize(311, 512), QSize(333, 777), QSize(400, 400), QSize(471, 950),
                             QSize(518, 960), QSize(640, 480), QSize(900, 300), QSize(220, 300), QSize(700, 980)}) {
        // Not with --sync, which never comes back from a size that the window has already.
        runServing(u"xdotool"_s, {u"windowsize"_s, id, QString::number(size.width()), QString::number(size.height())});
        // The page is one colour, so its width in the picture is the view's.
        const QRect page = DeviceLayout::fit(type, size).page;
        const auto drawnWidth = [&] {
            const QImage picture =
                QImage::fromData(runServing(u"import"_s, {u"-window"_s, id, u"png:-"_s}).output, "PNG");
            int width = 0;
            for (int x = 0; picture.size() == size && x < picture.width(); ++x) {
                // The engine draws for the device's pixels; brought to the window's, those at the edges mix a little.
                const QColor colour(picture.pixel(x, page.center().y()));
                width += colour.red() > 200 && colour.green() < 100 && colour.blue() > 200 ? 1 : 0;
            }
            return width;
        };
        EXPECT_TRUE(waitFor([&] { return drawnWidth() == page.width(); }))
            << size.width() << "x" << size.height() << ": " << drawnWidth() << " instead of " << page.width();
        const qsizetype before = server.reports(u"page"_s).size();
        ASSERT_TRUE(waitFor([&] { return server.reports(u"page"_s).size() >= before + 2; }));
        const QJsonObject report = server.last(u"page"_s);
        EXPECT_EQ(report[u"width"].toInt(), 402) << size.width() << "x" << size.height();
        EXPECT_EQ(report[u"height"].toInt(), 678) << size.width() << "x" << size.height();
        EXPECT_EQ(report[u"layoutWidth"].toInt(), 402) << size.width() << "x" << size.height();
        EXPECT_TRUE(report[u"media"].toBool()) << size.width() << "x" << size.height();
    }
}

} // namespace

} // namespace corvanta
