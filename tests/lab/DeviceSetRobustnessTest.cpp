// SPDX-License-Identifier: MIT
#include "DeviceCatalogue.h"
#include "DeviceLauncher.h"
#include "DeviceSet.h"
#include "EndedRun.h"
#include "ToolRun.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <ostream>
#include <random>
#include <set>
#include <sys/wait.h>
#include <thread>

namespace corvanta {

namespace {

using namespace Qt::Literals::StringLiterals;
using lab::Device;
using lab::DeviceSet;

/// A device set of its own for each test, and tools that work on it without a session bus.
class DeviceSetRobustness : public ::testing::Test {
protected:
    DeviceSetRobustness() {
        m_environment.insert(u"CORVANTA_LAB_HOME"_s, m_home.path());
        m_environment.insert(u"CORVANTA_DEVICE_SET"_s, path());
        m_environment.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, u"unix:path="_s + m_home.path() + u"/none"_s);
        m_environment.remove(u"DISPLAY"_s);
    }

    [[nodiscard]] QString path() const { return m_home.path() + u"/Devices"_s; }

    [[nodiscard]] ToolRun simctl(const QStringList& arguments) const {
        return runTool(u"simctl"_s, arguments, m_environment);
    }

    [[nodiscard]] std::unique_ptr<QProcess> start(const QStringList& arguments) const {
        auto process = std::make_unique<QProcess>();
        process->setProcessEnvironment(m_environment);
        process->start(QFile::decodeName(CORVANTA_LAB_PROGRAMS) + u"/simctl"_s, arguments);
        return process;
    }

    [[nodiscard]] EndedRun end(const QStringList& arguments, int change, EndPoint point) const {
        QList<QByteArray> variables;
        for (const QString& variable : m_environment.toStringList()) {
            variables.append(variable.toUtf8());
        }
        return runAndEnd(u"simctl"_s, arguments, variables, change, point);
    }

    /// A set with two devices and without those of the first use.
    void layOut() {
        DeviceSet set(path());
        set.createDefaultsOnFirstUse();
        for (const Device& device : set.devices()) {
            set.remove(device);
        }
        first = set.create(u"First"_s, type, runtime);
        second = set.create(u"Second"_s, type, runtime);
        set.changeSettings(first, [](lab::DeviceSettings& settings) { settings.appearance = u"dark"_s; });
        QFile file(set.folderOf(first) + u"/data/note.txt"_s);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("kept");
    }

    [[nodiscard]] std::multiset<QString> names() const {
        std::multiset<QString> result;
        for (const Device& device : DeviceSet(path()).devices()) {
            result.insert(device.name);
        }
        return result;
    }

    /// Whether every file of the set can be read, and nothing half-made is in sight.
    [[nodiscard]] bool isWhole() const {
        for (const QString& folder : QDir(path()).entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
            QFile file(path() + u'/' + folder + u"/device.json"_s);
            if (!file.open(QIODevice::ReadOnly) ||
                QJsonDocument::fromJson(file.readAll()).object()["UDID"_L1].toString() != folder) {
                return false;
            }
        }
        return true;
    }

    [[nodiscard]] QStringList leftovers() const {
        return QDir(path()).entryList({u".new-*"_s, u".old-*"_s}, QDir::Dirs | QDir::Hidden);
    }

    const QString type = lab::deviceTypes().back().identifier;
    const QString runtime = lab::runtimes().back().identifier;
    Device first;
    Device second;

private:
    /// In memory where there is such a folder: waiting for a disk is not what is tested.
    static QString place() {
        const QString memory = u"/dev/shm"_s;
        return (QFileInfo(memory).isWritable() ? memory : QDir::tempPath()) + u"/device-set-XXXXXX"_s;
    }

    QTemporaryDir m_home{place()};
    QProcessEnvironment m_environment = QProcessEnvironment::systemEnvironment();
};

/// A command, and the devices' names before and after it. It begins from the set of `layOut()`.
struct Change {
    const char* name;
    QStringList (*arguments)(const Device& first);
    std::multiset<QString> after;

    friend void PrintTo(const Change& change, std::ostream* stream) { *stream << change.name; }
};

const Change changes[] = {
    {"Create",
     [](const Device&) { return QStringList{u"create"_s, u"Third"_s, u"iPad Pro 13-inch (M4)"_s}; },
     {u"First"_s, u"Second"_s, u"Third"_s}},
    {"Clone",
     [](const Device& first) { return QStringList{u"clone"_s, first.udid, u"Third"_s}; },
     {u"First"_s, u"Second"_s, u"Third"_s}},
    {"Rename",
     [](const Device& first) { return QStringList{u"rename"_s, first.udid, u"Other"_s}; },
     {u"Other"_s, u"Second"_s}},
    {"Erase", [](const Device& first) { return QStringList{u"erase"_s, first.udid}; }, {u"First"_s, u"Second"_s}},
    {"Delete", [](const Device& first) { return QStringList{u"delete"_s, first.udid}; }, {u"Second"_s}},
};

class DeviceSetEndedWhileChanging : public DeviceSetRobustness, public ::testing::WithParamInterface<Change> {};

TEST_P(DeviceSetEndedWhileChanging, ReadsAsBeforeOrAfterAndTakesTheNextCommand) {
    constexpr int moments = 32;
    // The first command of a home writes more than those after it.
    ASSERT_EQ(simctl({u"list"_s}).status, 0);
    layOut();
    const EndedRun whole = end(GetParam().arguments(first), 0, EndPoint::beforeIt);
    ASSERT_EQ(whole.status, 0);
    ASSERT_EQ(names(), GetParam().after);
    ASSERT_GT(whole.changes, 3) << "the command is traced";
    std::mt19937 random(20261121);
    int ended = 0;
    for (int moment = 0; moment < moments; ++moment) {
        layOut();
        const auto before = names();
        const int change = std::uniform_int_distribution(1, whole.changes)(random);
        const EndPoint point = moment % 2 == 0 ? EndPoint::beforeIt : EndPoint::afterIt;
        SCOPED_TRACE(testing::Message() << "change " << change << (moment % 2 == 0 ? ", before it" : ", after it"));
        ended += end(GetParam().arguments(first), change, point).isEnded ? 1 : 0;
        const auto found = names();
        EXPECT_TRUE(found == before || found == GetParam().after);
        EXPECT_TRUE(isWhole());

        const ToolRun next = simctl({u"rename"_s, second.udid, u"Next"_s});
        EXPECT_EQ(next.status, 0) << next.error.constData();
        EXPECT_EQ(leftovers(), QStringList()) << "the next command clears up";
        EXPECT_EQ(names().count(u"Next"_s), 1U);
    }
    EXPECT_GE(ended, moments - 2) << "most of the moments were met";
}

INSTANTIATE_TEST_SUITE_P(Commands, DeviceSetEndedWhileChanging, ::testing::ValuesIn(changes),
                         [](const auto& given) { return given.param.name; });

TEST_F(DeviceSetRobustness, IsCompletedAfterItsFirstUseWasEnded) {
    constexpr int moments = 40;
    std::size_t expected = 0;
    for (const lab::Runtime& installed : lab::runtimes()) {
        expected += std::size_t(std::ranges::count_if(
            lab::deviceTypes(), [&](const lab::DeviceType& model) { return lab::isSupported(model, installed); }));
    }
    const EndedRun whole = end({u"list"_s, u"devices"_s}, 0, EndPoint::beforeIt);
    ASSERT_EQ(whole.status, 0);
    ASSERT_EQ(names().size(), expected);
    std::mt19937 random(7);
    for (int moment = 0; moment < moments; ++moment) {
        ASSERT_TRUE(QDir(path()).removeRecursively());
        const int change = std::uniform_int_distribution(1, whole.changes)(random);
        SCOPED_TRACE(testing::Message() << "change " << change);
        (void)end({u"list"_s, u"devices"_s}, change, moment % 2 == 0 ? EndPoint::beforeIt : EndPoint::afterIt);
        EXPECT_TRUE(isWhole());
        const ToolRun list = simctl({u"list"_s, u"-j"_s, u"devices"_s});
        EXPECT_EQ(list.status, 0) << list.error.constData();
        EXPECT_TRUE(QJsonDocument::fromJson(list.output).isObject());
        EXPECT_EQ(names().size(), expected) << "every device of the first use, and each once";
        EXPECT_EQ(leftovers(), QStringList());
    }
}

TEST_F(DeviceSetRobustness, LosesNothingWhenEightCommandsCreateAtOnce) {
    std::vector<std::unique_ptr<QProcess>> commands;
    commands.reserve(8);
    for (int index = 0; index < 8; ++index) {
        // Each of them meets a set that does not exist yet.
        commands.push_back(start({u"create"_s, u"New %1"_s.arg(index), u"iPhone 16"_s}));
    }
    std::set<QByteArray> identifiers;
    for (const auto& command : commands) {
        ASSERT_TRUE(command->waitForFinished());
        EXPECT_EQ(command->exitCode(), 0) << command->readAllStandardError().constData();
        identifiers.insert(command->readAllStandardOutput().trimmed());
    }
    EXPECT_EQ(identifiers.size(), 8U);
    for (int index = 0; index < 8; ++index) {
        EXPECT_EQ(names().count(u"New %1"_s.arg(index)), 1U);
    }
    EXPECT_EQ(names().count(u"iPhone SE (3rd generation)"_s), 2U) << "the devices of the first use were made once";
}

TEST_F(DeviceSetRobustness, KeepsTheSetWholeWhenCommandsOfAllKindsMeet) {
    layOut();
    const std::vector<QStringList> kinds = {
        {u"clone"_s, first.udid, u"Copy"_s},     {u"erase"_s, first.udid},  {u"rename"_s, second.udid, u"Renamed"_s},
        {u"create"_s, u"New"_s, u"iPhone 16"_s}, {u"list"_s, u"-j"_s},      {u"erase"_s, u"all"_s},
        {u"clone"_s, second.udid, u"Copy"_s},    {u"list"_s, u"devices"_s},
    };
    for (int round = 0; round < 5; ++round) {
        std::vector<std::unique_ptr<QProcess>> commands;
        std::ranges::transform(kinds, std::back_inserter(commands), [&](const auto& words) { return start(words); });
        for (const auto& command : commands) {
            ASSERT_TRUE(command->waitForFinished());
            EXPECT_EQ(command->exitCode(), 0)
                << command->arguments().join(u' ').toStdString() << ": " << command->readAllStandardError().constData();
        }
    }
    EXPECT_EQ(names().count(u"Copy"_s), 10U);
    EXPECT_EQ(names().count(u"New"_s), 5U);
    EXPECT_EQ(names().count(u"Renamed"_s), 1U);
    EXPECT_TRUE(isWhole());
    EXPECT_EQ(leftovers(), QStringList());
}

TEST_F(DeviceSetRobustness, RemovesADeviceOnceForTwoCommandsAtOnce) {
    layOut();
    const auto one = start({u"delete"_s, first.udid});
    const auto other = start({u"delete"_s, first.udid});
    ASSERT_TRUE(one->waitForFinished() && other->waitForFinished());
    // The slower one either meets no device any more, or finds its work done.
    for (const auto* command : {one.get(), other.get()}) {
        EXPECT_TRUE(command->exitCode() == 0 || command->exitCode() == 148) << command->exitCode();
    }
    EXPECT_EQ(names(), (std::multiset<QString>{u"Second"_s}));
}

TEST_F(DeviceSetRobustness, ATurnGoesOnWithTheProgramThatInheritsIt) {
    layOut();
    const DeviceSet set(path());
    // A process lets go of its files some time before it can be waited for, so what it did last tells, not its end.
    const QString done = path() + u"/done"_s;
    pid_t process = 0;
    {
        // The launcher goes, as if it was ended here; its device is still on its way.
        const lab::FileLock turn = set.takeTurn(first);
        process = lab::startDetached(u"/bin/sh"_s, {u"-c"_s, u"sleep 0.2; : > \"$1\""_s, u"sh"_s, done},
                                     path() + u"/sleep.log"_s, turn.descriptor());
    }
    const lab::FileLock next = set.takeTurn(first);
    EXPECT_TRUE(QFile::exists(done)) << "the turn came only when the program had done all it does";
    EXPECT_EQ(waitpid(process, nullptr, 0), process);
}

TEST_F(DeviceSetRobustness, CountsBothOfTwoChangesOfSettingsAtOnce) {
    layOut();
    std::vector<std::jthread> threads;
    threads.reserve(8);
    for (int index = 0; index < 8; ++index) {
        threads.emplace_back([this, index] {
            DeviceSet(path()).changeSettings(first, [&](lab::DeviceSettings& settings) {
                settings.privacy[u"bundle/%1"_s.arg(index)] = u"granted"_s;
            });
        });
    }
    threads.clear();
    EXPECT_EQ(DeviceSet(path()).settings(first).privacy.size(), 8);
    EXPECT_EQ(DeviceSet(path()).settings(first).appearance, u"dark");
}

} // namespace

} // namespace corvanta
