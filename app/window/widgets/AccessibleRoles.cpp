// SPDX-License-Identifier: MIT
#include "window/widgets/AccessibleRoles.h"

#include "window/DisplayText.h"

#include <QAccessibleWidget>
#include <QVariant>
#include <QWidget>

namespace corvanta {

namespace {

constexpr auto roleProperty = "accessibleRole";

QAccessibleInterface* interfaceFor(const QString&, QObject* object) {
    auto* const widget = qobject_cast<QWidget*>(object);
    const QVariant role = widget ? widget->property(roleProperty) : QVariant();
    return role.isValid() ? new QAccessibleWidget(widget, static_cast<QAccessible::Role>(role.toInt())) : nullptr;
}

Announcing announcing = nullptr;

} // namespace

void setAccessibleRole(QWidget& widget, QAccessible::Role role) {
    static const bool isInstalled = [] {
        QAccessible::installFactory(interfaceFor);
        return true;
    }();
    Q_UNUSED(isInstalled)
    widget.setProperty(roleProperty, static_cast<int>(role));
}

void setAnnouncing(Announcing means) {
    announcing = means;
}

void announce(QWidget& widget, const QString& text) {
    const QString shown = displayText(text);
    if (widget.accessibleName() == shown)
        return;
    widget.setAccessibleName(shown);
    if (announcing && QAccessible::isActive() && !shown.isEmpty())
        announcing(widget, shown);
}

} // namespace corvanta
