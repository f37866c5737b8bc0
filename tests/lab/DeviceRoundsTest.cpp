// SPDX-License-Identifier: MIT
// What a device costs and what is left of it. Continuous integration makes a few rounds with a few devices; the whole
// numbers are made by hand, as docs/lab.md tells:
//
//     CORVANTA_ROUNDS=200 CORVANTA_DEVICES=8 tests/support/virtual-desktop --limit 3600 CorvantaLabRoundsTests
#include "AccessibleObject.h"
#include "DesktopTraces.h"
#include "DeviceCatalogue.h"
#include "LabDesktop.h"

#include <QDir>
#include <QElapsedTimer>
#include <QProcess>

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace corvanta {

namespace {

using namespace Qt::Literals::StringLiterals;

constexpr unsigned menuBarRole = 34;
constexpr double mebibyte = 1024.0 * 1024.0;
/// Eight devices have four gigabytes.
constexpr qint64 sizeOfADevice = 4'000'000'000 / 8;

int numberFrom(const char* variable, int otherwise) {
    bool isNumber = false;
    const int number = qEnvironmentVariableIntValue(variable, &isNumber);
    return isNumber && number > 0 ? number : otherwise;
}

/// What a program of the desktop has in memory for itself, or all of them with that name, in bytes.
qint64 sizeOfAll(const QString& program) {
    qint64 size = 0;
    for (const DesktopProcess& process : desktopProcesses()) {
        size += process.program == program ? ownSize(process.identifier) : 0;
    }
    return size;
}

/// Devices beside the lab's Safari, which watches them.
class DeviceRounds : public Simulator {
protected:
    void SetUp() override {
        Simulator::SetUp();
        if (IsSkipped()) {
            return;
        }
        // Temporary files are counted too, so they are made where nobody else makes any.
        const QString temporary = QFile::decodeName(qgetenv("CORVANTA_VIRTUAL_DESKTOP")) + u"/temporary"_s;
        QDir().mkpath(temporary);
        qputenv("TMPDIR", QFile::encodeName(temporary));
        m_safari.start(QFile::decodeName(CORVANTA_LAB_PROGRAMS) + u"/Safari"_s, {u"--background"_s});
        ASSERT_TRUE(waitFor([] { return developMenu().has_value(); })) << "Safari has no Develop menu";
    }

    void TearDown() override {
        m_safari.terminate();
        EXPECT_TRUE(m_safari.waitForFinished());
        simctl({u"shutdown"_s, u"all"_s});
        // Safari's own pages' processes notice that it is gone.
        EXPECT_TRUE(waitFor([] { return labProcesses().isEmpty(); }));
        Simulator::TearDown();
    }

    static std::optional<AccessibleObject> developMenu() {
        for (const AccessibleObject& window : AccessibleObject::windows(u"com.apple.Safari"_s)) {
            const auto bar =
                window.find([](const AccessibleObject& object) { return object.role() == menuBarRole; }, 3);
            for (const AccessibleObject& menu : bar ? bar->children() : QList<AccessibleObject>()) {
                if (menu.name() == u"Develop") {
                    return menu;
                }
            }
        }
        return std::nullopt;
    }

    /// The pages that the Develop menu offers of a device; absent when the device is not listed.
    static std::optional<QStringList> listedPages(const QString& device) {
        const auto menu = developMenu();
        for (const AccessibleObject& entry : menu ? menu->children() : QList<AccessibleObject>()) {
            if (entry.name() == device) {
                QStringList pages;
                for (const AccessibleObject& page : entry.children()) {
                    if (page.name().isEmpty()) {
                        break;
                    }
                    if (page.isEnabled()) {
                        pages.append(page.name());
                    }
                }
                return pages;
            }
        }
        return std::nullopt;
    }

    /// Notes which processes the running devices have.
    void noteProcesses() {
        for (const DesktopProcess& process : desktopProcesses()) {
            if (process.program == u"SimulatorDevice") {
                m_sessions.insert(process.identifier);
            }
        }
        for (const DesktopProcess& process : desktopProcesses(m_sessions)) {
            if (m_sessions.contains(process.session)) {
                m_processes.insert(process.identifier);
            }
        }
    }

    /// Boots the device, opens a page in it, waits until the page and Safari know of each other, and shuts it down.
    void makeRound(const QString& udid, const QString& name, const QString& page) {
        EXPECT_EQ(simctl({u"bootstatus"_s, udid, u"-b"_s}).status, 0);
        EXPECT_EQ(simctl({u"openurl"_s, udid, server.url(page)}).status, 0);
        EXPECT_TRUE(waitFor([&] { return !server.last(page).isEmpty(); })) << "the page did not load";
        EXPECT_TRUE(waitFor([&] { return listedPages(name).value_or(QStringList()).size() == 1; }))
            << "Safari does not list the page";
        noteProcesses();
        EXPECT_EQ(simctl({u"shutdown"_s, udid}).status, 0);
        EXPECT_TRUE(waitFor([&] { return !listedPages(name); })) << "Safari still lists the device";
    }

    QProcess m_safari;
    /// The processes that devices have had, and which of them led a session.
    QSet<pid_t> m_processes;
    QSet<pid_t> m_sessions;
};

TEST_F(DeviceRounds, LeaveNothingBehind) {
    const int rounds = numberFrom("CORVANTA_ROUNDS", 2);
    // In these the programs of the desktop do everything for the first time.
    const int warmUpRounds = 1 + rounds / 10;
    const QString udid = create(u"iPhone 16 Pro"_s);
    const QString name = u"iPhone 16 Pro – iOS 18.2"_s;
    const DesktopTraces unused = DesktopTraces::now();
    for (int round = 0; round < warmUpRounds; ++round) {
        makeRound(udid, name, u"first%1"_s.arg(round));
    }
    const auto safari = static_cast<pid_t>(m_safari.processId());
    const QStringList watched{u"Safari"_s, u"Xvfb"_s, u"dbus-daemon"_s, u"at-spi2-registryd"_s};
    const auto sizes = [&] {
        QList<qint64> all;
        for (const QString& program : watched) {
            all.append(sizeOfAll(program));
        }
        return all;
    };
    const DesktopTraces before = DesktopTraces::now(m_sessions, m_processes);
    const qsizetype socketsBefore = openSockets(safari);
    const QList<qint64> sizesBefore = sizes();
    QElapsedTimer elapsed;
    elapsed.start();
    for (int round = 1; round <= rounds && !HasFailure(); ++round) {
        makeRound(udid, name, u"round%1"_s.arg(round));
    }
    const double seconds = double(elapsed.elapsed()) / 1000;

    QStringList left;
    // An orphan is taken away by the system's first process, in its own time.
    const bool isClean = waitFor([&] {
        left = DesktopTraces::now(m_sessions, m_processes).since(before);
        return left.isEmpty();
    });
    EXPECT_TRUE(isClean) << left.join(u'\n').toStdString();
    EXPECT_TRUE(waitFor([&] { return openSockets(safari) <= socketsBefore; }))
        << openSockets(safari) << " sockets of Safari are open instead of " << socketsBefore;
    std::printf("%d rounds in %.1f s, %.2f s each; %d processes of devices came and went\n", rounds, seconds,
                seconds / rounds, int(m_processes.size()));
    const QList<qint64> sizesAfter = sizes();
    for (int index = 0; index < watched.size(); ++index) {
        const double growth = double(sizesAfter[index] - sizesBefore[index]);
        std::printf("%-18s %7.1f MiB, %+.2f MiB since the rounds began, %+.1f KiB a round\n",
                    qPrintable(watched[index]), double(sizesAfter[index]) / mebibyte, growth / mebibyte,
                    growth / 1024 / rounds);
    }
    // What stays of a device that was booted and shut down, as docs/lab.md lists it.
    const QString folder = u"/Devices/"_s + udid + u'/';
    std::vector<std::string> kept;
    for (const QString& line : DesktopTraces::now().since(unused)) {
        if (line.contains(folder)) {
            kept.push_back(line.section(folder, 1).toStdString());
        }
    }
    EXPECT_THAT(kept, ::testing::UnorderedElementsAre(".boot-lock", "device.log", "status.json"));
}

TEST_F(DeviceRounds, ManyDevicesFitIntoMemoryAndIntoTheDevelopMenu) {
    const auto count = static_cast<std::size_t>(numberFrom("CORVANTA_DEVICES", 2));
    QStringList names;
    QStringList udids;
    for (std::size_t index = 0; index < count; ++index) {
        const lab::DeviceType& type = lab::deviceTypes()[index % lab::deviceTypes().size()];
        names.append(u"%1 no. %2"_s.arg(type.name).arg(index + 1));
        const ToolRun run = simctl({u"create"_s, names.last(), type.name, u"iOS 18.2"_s});
        ASSERT_EQ(run.status, 0) << run.error.constData();
        udids.append(QString::fromUtf8(run.output).trimmed());
        names.last() += u" – iOS 18.2"_s;
    }
    QElapsedTimer elapsed;
    elapsed.start();
    for (const QString& udid : udids) {
        EXPECT_EQ(simctl({u"boot"_s, udid}).status, 0);
    }
    for (int index = 0; index < udids.size(); ++index) {
        EXPECT_EQ(simctl({u"bootstatus"_s, udids[index], u"-b"_s}).status, 0);
        EXPECT_EQ(
            runLab(u"open"_s, {u"-g"_s, u"-a"_s, u"Simulator"_s, u"--args"_s, u"-CurrentDeviceUDID"_s, udids[index]})
                .status,
            0);
        EXPECT_EQ(simctl({u"openurl"_s, udids[index], server.url(u"page%1"_s.arg(index))}).status, 0);
    }
    for (int index = 0; index < udids.size(); ++index) {
        EXPECT_TRUE(waitFor([&] { return !server.last(u"page%1"_s.arg(index)).isEmpty(); }));
        EXPECT_TRUE(waitFor([&] { return listedPages(names[index]).value_or(QStringList()).size() == 1; }))
            << "Safari does not list the page of " << names[index].toStdString();
    }
    const double seconds = double(elapsed.elapsed()) / 1000;
    noteProcesses();
    qint64 size = 0;
    QMap<QString, std::pair<int, qint64>> parts;
    for (const DesktopProcess& process : desktopProcesses(m_sessions)) {
        if (m_sessions.contains(process.session)) {
            const qint64 own = proportionalSize(process.identifier);
            size += own;
            parts[process.program].first += 1;
            parts[process.program].second += own;
        }
    }
    std::printf("%d devices with a window and a page each: %.0f MiB, %.0f MiB each, after %.1f s\n", int(count),
                double(size) / mebibyte, double(size) / mebibyte / double(count), seconds);
    for (auto part = parts.cbegin(); part != parts.cend(); ++part) {
        std::printf("%3d %-24s %7.1f MiB\n", part->first, qPrintable(part.key()), double(part->second) / mebibyte);
    }
    EXPECT_EQ(m_sessions.size(), static_cast<qsizetype>(count));
    EXPECT_LT(size, sizeOfADevice * static_cast<qint64>(count));
    for (const QString& name : names) {
        EXPECT_TRUE(listedPages(name)) << name.toStdString() << " is not in the Develop menu any more";
    }
}

} // namespace

} // namespace corvanta
