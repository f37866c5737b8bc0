// SPDX-License-Identifier: MIT
#pragma once

#include "AccessibilityTree.h"

#include <QDBusMessage>
#include <QObject>
#include <QString>
#include <QStringList>

#include <vector>

namespace corvanta::testing {

/// What a screen reader is told to say, heard on the accessibility bus from the moment at which this is made.
class Announcements final : public QObject {
    Q_OBJECT

public:
    struct Announcement {
        Accessible source;
        QString text;
    };

    Announcements();

    [[nodiscard]] const std::vector<Announcement>& all() const { return m_all; }

    /// Whether the texts were heard in this order, whatever was said between them, since `forget`.
    [[nodiscard]] bool heard(const QStringList& texts) const;

    void forget() { m_all.clear(); }

    [[nodiscard]] std::string text() const;

private Q_SLOTS:
    void hear(const QDBusMessage& message);

private:
    std::vector<Announcement> m_all;
};

} // namespace corvanta::testing
