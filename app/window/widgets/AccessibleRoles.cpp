// SPDX-License-Identifier: MIT
#include "window/widgets/AccessibleRoles.h"

#include <QAccessibleWidget>
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
    QAccessibleEvent alert(&widget, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

} // namespace corvanta
