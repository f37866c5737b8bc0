// SPDX-License-Identifier: MIT
#include "AtspiAccessibilityClient.h"

#include "FixtureProcess.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>
#include <QDBusVariant>
#include <QElapsedTimer>

#include <gtest/gtest.h>

#include <csignal>

namespace corvanta {
namespace {

using namespace Qt::Literals::StringLiterals;
using namespace corvanta::testing;

const QString fixtureName = u"dev.corvanta.TrustFixture"_s;

void setEnabled(bool isEnabled) {
    QDBusMessage message = QDBusMessage::createMethodCall(u"org.a11y.Bus"_s, u"/org/a11y/bus"_s,
                                                          u"org.freedesktop.DBus.Properties"_s, u"Set"_s);
    message << u"org.a11y.Status"_s << u"IsEnabled"_s << QVariant::fromValue(QDBusVariant(isEnabled));
    QDBusConnection::sessionBus().call(message);
}

class AccessibilityBus : public ::testing::Test {
protected:
    X11Windows windows;
    AtspiAccessibilityClient client{windows, [] { return Point(); }};
};

TEST_F(AccessibilityBus, ReadsNothingBeforeItIsTrusted) {
    setEnabled(false);
    FixtureProcess fixture(fixtureName);
    ASSERT_TRUE(waitUntil([&] { return client.hasMenuBar(fixtureName); }));
    EXPECT_FALSE(client.isTrusted());
    EXPECT_FALSE(menuBarOf(client, fixtureName));
    EXPECT_TRUE(waitUntil([&] { return client.requestTrust(); }));
    EXPECT_TRUE(client.isTrusted());
    EXPECT_TRUE(waitUntil([&] { return menuBarOf(client, fixtureName).has_value(); }));
}

TEST_F(AccessibilityBus, NoticesThatTrustIsTakenAway) {
    ASSERT_TRUE(waitUntil([&] { return client.requestTrust(); }));
    setEnabled(false);
    EXPECT_TRUE(waitUntil([&] { return !client.isTrusted(); }));
}

TEST_F(AccessibilityBus, IsFoundAgainAfterItWentAway) {
    ASSERT_TRUE(waitUntil([&] { return client.requestTrust(); }));
    const QDBusReply<uint> launcher = QDBusConnection::sessionBus().interface()->servicePid(u"org.a11y.Bus"_s);
    ASSERT_TRUE(launcher.isValid());
    // The launcher takes its bus with it.
    ::kill(static_cast<pid_t>(launcher.value()), SIGTERM);
    bool wasLost = false;
    ASSERT_TRUE(waitUntil([&] {
        QElapsedTimer timer;
        timer.start();
        wasLost = wasLost || !client.isTrusted();
        EXPECT_LT(timer.elapsed(), 500);
        return wasLost;
    }));
    EXPECT_FALSE(menuBarOf(client, fixtureName));
    ASSERT_TRUE(waitUntil([&] { return client.requestTrust(); }));
    FixtureProcess fixture(fixtureName);
    EXPECT_TRUE(waitUntil([&] { return menuBarOf(client, fixtureName).has_value(); }));
}

} // namespace
} // namespace corvanta
