// SPDX-License-Identifier: MIT
#include "window/widgets/AccessibleRoles.h"

#include <QAccessibleWidget>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QVariant>
#include <QWidget>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr auto roleProperty = "accessibleRole";

QAccessibleInterface* interfaceFor(const QString&, QObject* object) {
    auto* const widget = qobject_cast<QWidget*>(object);
    const QVariant role = widget ? widget->property(roleProperty) : QVariant();
    return role.isValid() ? new QAccessibleWidget(widget, static_cast<QAccessible::Role>(role.toInt())) : nullptr;
}

#if QT_VERSION >= QT_VERSION_CHECK(6, 8, 0)

void sayAloud(QWidget& widget, const QString& text) {
    QAccessibleAnnouncementEvent announcement(&widget, text);
    QAccessible::updateAccessibility(&announcement);
}

#else

/// Qt before 6.8 knows no announcements, and its bridge to the accessibility bus drops alerts (seen in 6.4). So this
/// says it over the bridge's connection, in the name that the bridge gives the widget; nothing where there is no such
/// bus.
void sayAloud(QWidget& widget, const QString& text) {
    QAccessibleEvent alert(&widget, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
    const QDBusConnection bridge(u"a11y"_s);
    QAccessibleInterface* const object = QAccessible::queryAccessibleInterface(&widget);
    if (!bridge.isConnected() || object == nullptr)
        return;
    constexpr int polite = 1;
    auto announcement =
        QDBusMessage::createSignal(u"/org/a11y/atspi/accessible/"_s + QString::number(QAccessible::uniqueId(object)),
                                   u"org.a11y.atspi.Event.Object"_s, u"Announcement"_s);
    announcement.setArguments({QString(), polite, 0, QVariant::fromValue(QDBusVariant(text)), QVariantMap()});
    bridge.send(announcement);
}

#endif

} // namespace

void setAccessibleRole(QWidget& widget, QAccessible::Role role) {
    static const bool isInstalled = [] {
        QAccessible::installFactory(interfaceFor);
        return true;
    }();
    Q_UNUSED(isInstalled)
    widget.setProperty(roleProperty, static_cast<int>(role));
}

void announce(QWidget& widget, const QString& text) {
    if (widget.accessibleName() == text)
        return;
    widget.setAccessibleName(text);
    if (QAccessible::isActive() && !text.isEmpty())
        sayAloud(widget, text);
}

} // namespace corvanta
