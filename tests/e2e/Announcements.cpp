// SPDX-License-Identifier: MIT
#include "Announcements.h"

#include <QDBusConnection>
#include <QDBusVariant>

namespace corvanta::testing {

using namespace Qt::Literals::StringLiterals;

Announcements::Announcements() {
    QDBusConnection bus = accessibilityBus();
    bus.connect(QString(), QString(), u"org.a11y.atspi.Event.Object"_s, u"Announcement"_s, this,
                SLOT(hear(QDBusMessage)));
    // As a screen reader does it: programs may keep to themselves what nobody has asked for.
    auto request = QDBusMessage::createMethodCall(u"org.a11y.atspi.Registry"_s, u"/org/a11y/atspi/registry"_s,
                                                  u"org.a11y.atspi.Registry"_s, u"RegisterEvent"_s);
    request.setArguments({u"object:announcement"_s, QStringList(), QString()});
    bus.call(request);
}

void Announcements::hear(const QDBusMessage& message) {
    // What was said about it, two numbers, the text, and what only some programs add.
    constexpr qsizetype textIndex = 3;
    const QVariantList arguments = message.arguments();
    if (arguments.size() > textIndex)
        m_all.push_back({.source = Accessible(message.service(), message.path()),
                         .text = arguments[textIndex].value<QDBusVariant>().variant().toString()});
}

bool Announcements::heard(const QStringList& texts) const {
    auto next = texts.begin();
    for (const Announcement& announcement : m_all) {
        if (next != texts.end() && announcement.text == *next)
            ++next;
    }
    return next == texts.end();
}

std::string Announcements::text() const {
    QStringList lines;
    for (const Announcement& announcement : m_all)
        lines.append(announcement.text);
    return lines.join(u'\n').toStdString();
}

} // namespace corvanta::testing
