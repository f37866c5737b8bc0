// SPDX-License-Identifier: MIT
#include "BusSingleInstance.h"

#include "TaskWaiting.h"

#include <QDBusConnectionInterface>
#include <QProcess>

#include <gtest/gtest.h>

#include <atomic>
#include <optional>
#include <thread>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

namespace {

/// Programs that come one after the other on a bus of the test's own. Each is a connection, as it would be for
/// processes.
class BusSingleInstanceTest : public ::testing::Test {
protected:
    void SetUp() override {
        m_daemon.start(u"dbus-daemon"_s, {u"--session"_s, u"--nofork"_s, u"--print-address"_s});
        ASSERT_TRUE(m_daemon.waitForStarted());
        ASSERT_TRUE(testing::waitUntil([this] { return m_daemon.canReadLine(); }));
        m_address = QString::fromUtf8(m_daemon.readLine()).trimmed();
    }

    void TearDown() override {
        for (const QString& name : m_connections)
            QDBusConnection::disconnectFromBus(name);
        m_daemon.terminate();
        m_daemon.waitForFinished();
    }

    [[nodiscard]] QDBusConnection connection() {
        static int count = 0;
        m_connections.append(u"program-%1"_s.arg(++count));
        return QDBusConnection::connectToBus(m_address, m_connections.constLast());
    }

    /// What another program finds that comes while this one turns its event loop.
    SingleInstance::Standing standingOfAnother(const QStringList& arguments) {
        const QDBusConnection bus = connection();
        std::atomic<bool> isDone = false;
        std::optional<SingleInstance::Standing> standing;
        std::thread other([&] {
            BusSingleInstance instance(bus);
            standing = instance.claim(arguments);
            isDone = true;
        });
        EXPECT_TRUE(testing::waitUntil([&] { return isDone.load(); }));
        other.join();
        return *standing;
    }

private:
    QProcess m_daemon;
    QString m_address;
    QStringList m_connections;
};

TEST_F(BusSingleInstanceTest, GoesOnWhereItIsTheFirst) {
    BusSingleInstance first(connection());
    EXPECT_EQ(first.claim({u"Corvanta"_s}), SingleInstance::Standing::alone);
}

TEST_F(BusSingleInstanceTest, HandsItsArgumentsToTheFirst) {
    BusSingleInstance first(connection());
    ASSERT_EQ(first.claim({u"Corvanta"_s}), SingleInstance::Standing::alone);
    QList<QStringList> handed;
    first.setOpenedHandler([&](const QStringList& arguments) { handed.append(arguments); });
    const QStringList arguments{u"Corvanta"_s, u"--url"_s, u"localhost:3000/ä b"_s, u""_s, u"--start"_s};
    EXPECT_EQ(standingOfAnother(arguments), SingleInstance::Standing::handedOver);
    EXPECT_EQ(handed, QList<QStringList>{arguments});
}

TEST_F(BusSingleInstanceTest, IsTheFirstAgainOnceTheOtherHasLeft) {
    BusSingleInstance first(connection());
    ASSERT_EQ(first.claim({u"Corvanta"_s}), SingleInstance::Standing::alone);
    first.release();
    EXPECT_EQ(standingOfAnother({u"Corvanta"_s}), SingleInstance::Standing::alone);
}

TEST_F(BusSingleInstanceTest, LeavesTheNameWithItsOwner) {
    const QDBusConnection bus = connection();
    {
        BusSingleInstance first(bus);
        ASSERT_EQ(first.claim({u"Corvanta"_s}), SingleInstance::Standing::alone);
        EXPECT_TRUE(bus.interface()->isServiceRegistered(u"dev.corvanta.Corvanta"_s));
        EXPECT_EQ(standingOfAnother({u"Corvanta"_s}), SingleInstance::Standing::handedOver);
        EXPECT_TRUE(bus.interface()->isServiceRegistered(u"dev.corvanta.Corvanta"_s));
    }
    EXPECT_FALSE(bus.interface()->isServiceRegistered(u"dev.corvanta.Corvanta"_s));
}

TEST_F(BusSingleInstanceTest, SaysThatAFirstOneDoesNotAnswer) {
    // Whoever has the name without the object knows nothing of the call.
    QDBusConnection stranger = connection();
    ASSERT_TRUE(stranger.registerService(u"dev.corvanta.Corvanta"_s));
    EXPECT_EQ(standingOfAnother({u"Corvanta"_s}), SingleInstance::Standing::unanswered);
}

TEST(BusSingleInstance, SimplyGoesOnWithoutABus) {
    BusSingleInstance instance{QDBusConnection(u"no such connection"_s)};
    EXPECT_EQ(instance.claim({u"Corvanta"_s}), SingleInstance::Standing::alone);
}

} // namespace

} // namespace corvanta
