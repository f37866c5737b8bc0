// SPDX-License-Identifier: MIT
//
// Prints what one full read of a menu costs through the mirror, beside a walk that asks for each attribute by itself.
#include "AtspiAccessibilityClient.h"
#include "AtspiMessages.h"

#include "FixtureProcess.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QElapsedTimer>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <functional>

namespace corvanta {
namespace {

using namespace Qt::Literals::StringLiterals;
using namespace corvanta::testing;

const QString fixtureName = u"dev.corvanta.TimedFixture"_s;
const QString accessible = u"org.a11y.atspi.Accessible"_s;

double milliseconds(const QElapsedTimer& timer) {
    return static_cast<double>(timer.nsecsElapsed()) / 1e6;
}

/// Reads title, description, enabled state and children below an element; answers how many elements there were.
int walk(AccessibilityClient& client, const AccessibilityElement& element) {
    (void)client.attribute(element, u"AXTitle");
    (void)client.attribute(element, u"AXDescription");
    (void)client.attribute(element, u"AXEnabled");
    int count = 1;
    for (const AccessibilityElement& child : childrenOf(client, element))
        count += walk(client, child);
    return count;
}

/// The same with a call on the bus for each attribute.
class PlainWalk {
public:
    PlainWalk()
        : m_bus(QDBusConnection::connectToBus(address(), u"plain-walk"_s)) {}

    PlainWalk(const PlainWalk&) = delete;
    PlainWalk& operator=(const PlainWalk&) = delete;

    ~PlainWalk() { QDBusConnection::disconnectFromBus(u"plain-walk"_s); }

    /// The objects of the program with the most of them, from the application's root.
    int walkEverything() {
        int most = 0;
        const AtspiReference registry{u"org.a11y.atspi.Registry"_s, u"/org/a11y/atspi/accessible/root"_s};
        for (const AtspiReference& root : children(registry)) {
            // This process cannot answer its own questions.
            if (processId(root) != QCoreApplication::applicationPid() && property(root, u"Name"_s) == fixtureName)
                most = std::max(most, walk(root));
        }
        return most;
    }

private:
    static QString address() {
        const QDBusMessage question =
            QDBusMessage::createMethodCall(u"org.a11y.Bus"_s, u"/org/a11y/bus"_s, u"org.a11y.Bus"_s, u"GetAddress"_s);
        return QDBusConnection::sessionBus().call(question).arguments().value(0).toString();
    }

    QDBusMessage ask(const AtspiReference& object, const QString& interface, const QString& method,
                     const QVariantList& arguments = {}) {
        QDBusMessage question = QDBusMessage::createMethodCall(object.bus, object.path, interface, method);
        question.setArguments(arguments);
        return m_bus.call(question);
    }

    qint64 processId(const AtspiReference& root) {
        const QString daemon = u"org.freedesktop.DBus"_s;
        const AtspiReference object{daemon, u"/org/freedesktop/DBus"_s};
        return ask(object, daemon, u"GetConnectionUnixProcessID"_s, {root.bus}).arguments().value(0).toLongLong();
    }

    QString property(const AtspiReference& object, const QString& name) {
        const QDBusMessage reply = ask(object, u"org.freedesktop.DBus.Properties"_s, u"Get"_s, {accessible, name});
        return reply.arguments().value(0).value<QDBusVariant>().variant().toString();
    }

    QList<AtspiReference> children(const AtspiReference& object) {
        return parseReferences(ask(object, accessible, u"GetChildren"_s)).value_or(QList<AtspiReference>());
    }

    int walk(const AtspiReference& object) {
        (void)property(object, u"Name"_s);
        (void)property(object, u"Description"_s);
        (void)ask(object, accessible, u"GetState"_s);
        int count = 1;
        for (const AtspiReference& child : children(object))
            count += walk(child);
        return count;
    }

    QDBusConnection m_bus;
};

TEST(MenuReadingTime, IsPrintedBesideThatOfAPlainWalkOverTheSameMenu) {
    X11Windows windows;
    AtspiAccessibilityClient client(windows, [] { return Point(); });
    ASSERT_TRUE(waitUntil([&] { return client.requestTrust(); }));
    FixtureProcess fixture(fixtureName);
    ASSERT_TRUE(waitUntil([&] { return menuBarOf(client, fixtureName).has_value(); }));
    for (const int count : {18, 480}) {
        ASSERT_TRUE(fixture.command(u"fill %1"_s.arg(count)));
        pauseAsTheDriver();
        const auto menuBar = menuBarOf(client, fixtureName);
        ASSERT_TRUE(menuBar);
        // What is read in time by a busy machine is what was there before.
        ASSERT_TRUE(waitUntil([&] { return walk(client, *menuBar) > count; }));
        pauseAsTheDriver();
        QElapsedTimer timer;
        timer.start();
        const int elements = walk(client, *menuBar);
        const double mirrored = milliseconds(timer);
        PlainWalk plainWalk;
        timer.restart();
        const int objects = plainWalk.walkEverything();
        const double plain = milliseconds(timer);
        std::printf("%d elements through the mirror: %.2f ms; %d objects by a plain walk: %.2f ms\n", elements,
                    mirrored, objects, plain);
        EXPECT_GT(elements, count);
        EXPECT_GT(objects, count);
    }
}

} // namespace
} // namespace corvanta
