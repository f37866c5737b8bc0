// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QList>
#include <QPointer>
#include <QString>
#include <QTcpServer>
#include <QTcpSocket>

#include <map>
#include <memory>
#include <optional>

namespace corvanta::testing {

/// What a WebServer does with a request.
struct WebAnswer {
    enum class Ending {
        /// Closes the connection behind the last byte.
        close,
        /// Leaves the connection open, for `WebServer::send`.
        keepOpen,
    };

    /// Nothing at all is sent, not even a head, while this is empty.
    QByteArray status = "200 OK";
    /// Each with its line break, "\r\n".
    QByteArray headers = "";
    QByteArray body = "";
    /// Spaces that follow the body as fast as the other side takes them.
    qint64 filler = 0;
    /// The length that the head promises: that of body and filler unless told otherwise; none when negative.
    std::optional<qint64> promisedLength = std::nullopt;
    Ending ending = Ending::close;
};

/// Answers HTTP or HTTPS requests on a free loopback port in the test's own process, each path as it was told; 404
/// otherwise. One request a connection.
class WebServer {
public:
    enum class Scheme { http, https };

    /// `certificate` is one of tests/support/web/certificates.
    explicit WebServer(Scheme scheme, const QString& certificate = QStringLiteral("loopback"));

    [[nodiscard]] QString url(const QString& path) const;

    void answer(const QString& path, WebAnswer answer) { m_answers[path] = std::move(answer); }

    /// Sends more on the newest connection; closes it when there is nothing to send.
    void send(const QByteArray& bytes);

    /// The heads of the requests so far.
    [[nodiscard]] const QList<QByteArray>& requests() const { return m_requests; }

    [[nodiscard]] int openConnections() const { return m_openConnections; }

    /// How many bytes of answers the other side, or the system on its behalf, has taken.
    [[nodiscard]] qint64 takenBytes() const { return m_takenBytes; }

private:
    void serve(QTcpSocket* socket);
    void respond(QTcpSocket* socket, const QByteArray& head);

    const Scheme m_scheme;
    std::unique_ptr<QTcpServer> m_server;
    std::map<QString, WebAnswer> m_answers;
    QList<QByteArray> m_requests;
    QPointer<QTcpSocket> m_newest;
    int m_openConnections = 0;
    qint64 m_takenBytes = 0;
};

/// The certificates whose signature the tests trust.
[[nodiscard]] QString testAuthorityFile();

} // namespace corvanta::testing
