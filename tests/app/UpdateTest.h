// SPDX-License-Identifier: MIT
#pragma once

#include "TaskWaiting.h"
#include "VirtualClock.h"
#include "WebServer.h"
#include "support/JsonEncoding.h"
#include "updates/UpdateManifest.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QPointer>
#include <QSslCertificate>
#include <QSslConfiguration>

#include <memory>

namespace corvanta::testing {

/// A session that trusts the tests' own authority and nobody else, and counts what it is asked for.
class UpdateSession final : public QNetworkAccessManager {
public:
    [[nodiscard]] int requests() const { return m_requests; }

    /// How often bytes of a body have arrived and were handed on.
    [[nodiscard]] int arrivals() const { return m_arrivals; }

    [[nodiscard]] QNetworkReply* lastReply() const { return m_lastReply; }

protected:
    QNetworkReply* createRequest(Operation operation, const QNetworkRequest& original, QIODevice* data) override {
        ++m_requests;
        QNetworkRequest request(original);
        QSslConfiguration configuration = request.sslConfiguration();
        configuration.setCaCertificates(QSslCertificate::fromPath(testAuthorityFile()));
        request.setSslConfiguration(configuration);
        m_lastReply = QNetworkAccessManager::createRequest(operation, request, data);
        connect(m_lastReply, &QNetworkReply::readyRead, this, [this] { ++m_arrivals; });
        return m_lastReply;
    }

private:
    int m_requests = 0;
    int m_arrivals = 0;
    QPointer<QNetworkReply> m_lastReply;
};

inline UpdateManifest updateManifest() {
    return {
        .version = QStringLiteral("1.4.0"),
        .build = 27,
        .downloadURL = URL::parse(u"https://downloads.example/Corvanta.dmg").value_or(URL()),
        .releaseNotes = QStringLiteral("Faster.\n<b>Bolder.</b>"),
        .sha256 = QStringLiteral("0123456789abcdef").repeated(4),
    };
}

inline QByteArray updateDocument() {
    return jsonDocument(encodeJson(updateManifest()));
}

} // namespace corvanta::testing
