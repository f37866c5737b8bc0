// SPDX-License-Identifier: MIT
#include "Announcing.h"

#include <QAccessible>
#include <QWidget>

namespace corvanta {

void announceOnPlatform(QWidget& source, const QString& text) {
#if QT_VERSION >= QT_VERSION_CHECK(6, 8, 0)
    QAccessibleAnnouncementEvent announcement(&source, text);
    QAccessible::updateAccessibility(&announcement);
#else
    // The name that the widget has got is what an alert reads out.
    Q_UNUSED(text)
    QAccessibleEvent alert(&source, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
#endif
}

} // namespace corvanta
