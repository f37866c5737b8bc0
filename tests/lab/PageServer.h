// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QList>
#include <QMap>
#include <QString>
#include <QTcpServer>

namespace corvanta {

/// Serves small pages on a free loopback port and collects what they report about themselves.
///
/// A page at /NAME reports its window, navigator and position under NAME, again and again. One at /opener opens
/// /opened.
class PageServer {
public:
    PageServer();

    [[nodiscard]] QString url(const QString& name) const;

    /// Reports of that page so far, oldest first.
    [[nodiscard]] QList<QJsonObject> reports(const QString& name) const { return m_reports.value(name); }

    /// The newest report of that page; empty before the first.
    [[nodiscard]] QJsonObject last(const QString& name) const;

private:
    void serve();
    QByteArray answer(const QByteArray& path);

    QTcpServer m_server;
    QMap<QString, QList<QJsonObject>> m_reports;
};

} // namespace corvanta
