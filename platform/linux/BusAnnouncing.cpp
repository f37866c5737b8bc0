// SPDX-License-Identifier: MIT
#include "Announcing.h"

#include <QAccessible>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QWidget>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

// Qt before 6.8 knows no announcements, and its bridge to the accessibility bus drops alerts (seen in 6.4). So this
// says it over the bridge's connection, in the name that the bridge gives the widget.
void announceOnPlatform(QWidget& source, const QString& text) {
    const QDBusConnection bridge(u"a11y"_s);
    QAccessibleInterface* const object = QAccessible::queryAccessibleInterface(&source);
    if (!bridge.isConnected() || object == nullptr)
        return;
    constexpr int polite = 1;
    auto announcement =
        QDBusMessage::createSignal(u"/org/a11y/atspi/accessible/"_s + QString::number(QAccessible::uniqueId(object)),
                                   u"org.a11y.atspi.Event.Object"_s, u"Announcement"_s);
    announcement.setArguments({QString(), polite, 0, QVariant::fromValue(QDBusVariant(text)), QVariantMap()});
    bridge.send(announcement);
}

} // namespace corvanta
