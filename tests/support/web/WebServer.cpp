// SPDX-License-Identifier: MIT
#include "WebServer.h"

#include <QFile>
#include <QSslCertificate>
#include <QSslConfiguration>
#include <QSslKey>
#include <QSslServer>
#include <QSslSocket>

#include <gtest/gtest.h>

#include <algorithm>

namespace corvanta::testing {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr qint64 fillerPiece = 32'768;

QString certificateFile(const QString& name) {
    return QStringLiteral(CORVANTA_TEST_CERTIFICATES) + u'/' + name;
}

std::unique_ptr<QTcpServer> makeServer(WebServer::Scheme scheme, const QString& certificate) {
    if (scheme == WebServer::Scheme::http)
        return std::make_unique<QTcpServer>();
    QFile keyFile(certificateFile(certificate + u".key"_s));
    EXPECT_TRUE(keyFile.open(QIODevice::ReadOnly));
    const auto chain = QSslCertificate::fromPath(certificateFile(certificate + u".crt"_s));
    EXPECT_EQ(chain.size(), 1);
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.setLocalCertificateChain(chain);
    configuration.setPrivateKey(QSslKey(&keyFile, QSsl::Ec));
    // A server that may ask clients for certificates refuses those that take up an earlier session.
    configuration.setPeerVerifyMode(QSslSocket::VerifyNone);
    auto server = std::make_unique<QSslServer>();
    server->setSslConfiguration(configuration);
    return server;
}

/// What was written and has not left this process yet. An encrypting socket hides most of it behind `bytesToWrite`.
qint64 waitingBytes(const QTcpSocket* socket) {
    const auto* const encrypting = qobject_cast<const QSslSocket*>(socket);
    return socket->bytesToWrite() + (encrypting ? encrypting->encryptedBytesToWrite() : 0);
}

/// Calls `handler` with the number of bytes that have left this process.
template<typename Handler>
void whenBytesLeave(QTcpSocket* socket, QObject* context, Handler handler) {
    if (auto* const encrypting = qobject_cast<QSslSocket*>(socket))
        QObject::connect(encrypting, &QSslSocket::encryptedBytesWritten, context, handler);
    else
        QObject::connect(socket, &QTcpSocket::bytesWritten, context, handler);
}

/// Sends spaces whenever few of those before are still waiting, then ends the connection. Owned by its socket.
class Filler : public QObject {
public:
    Filler(QTcpSocket* socket, qint64 size, WebAnswer::Ending ending)
        : QObject(socket)
        , m_socket(socket)
        , m_rest(size)
        , m_ending(ending) {
        whenBytesLeave(socket, this, [this] { fill(); });
    }

    void fill() {
        if (m_isFilling)
            return;
        m_isFilling = true;
        while (m_rest > 0 && waitingBytes(m_socket) < fillerPiece) {
            const qint64 size = std::min(m_rest, fillerPiece);
            m_rest -= size;
            m_socket->write(QByteArray(size, ' '));
        }
        m_isFilling = false;
        if (m_rest == 0 && m_ending == WebAnswer::Ending::close)
            m_socket->disconnectFromHost();
    }

private:
    QTcpSocket* const m_socket;
    qint64 m_rest;
    const WebAnswer::Ending m_ending;
    bool m_isFilling = false;
};

} // namespace

WebServer::WebServer(Scheme scheme, const QString& certificate)
    : m_scheme(scheme)
    , m_server(makeServer(scheme, certificate)) {
    EXPECT_TRUE(m_server->listen(QHostAddress::LocalHost));
    QObject::connect(m_server.get(), &QTcpServer::pendingConnectionAvailable, m_server.get(), [this] {
        while (QTcpSocket* const socket = m_server->nextPendingConnection())
            serve(socket);
    });
}

QString WebServer::url(const QString& path) const {
    const QString scheme = m_scheme == Scheme::https ? u"https"_s : u"http"_s;
    return u"%1://127.0.0.1:%2%3"_s.arg(scheme).arg(m_server->serverPort()).arg(path);
}

void WebServer::serve(QTcpSocket* socket) {
    ++m_openConnections;
    // So that what was not taken stays here, where it is counted.
    socket->setSocketOption(QAbstractSocket::SendBufferSizeSocketOption, fillerPiece);
    QObject::connect(socket, &QTcpSocket::disconnected, m_server.get(), [this, socket] {
        --m_openConnections;
        socket->deleteLater();
    });
    QObject::connect(socket, &QTcpSocket::bytesWritten, m_server.get(),
                     [this](qint64 count) { m_takenBytes += count; });
    const auto read = [this, socket] {
        if (socket->peek(65'536).contains("\r\n\r\n"))
            respond(socket, socket->readAll());
    };
    QObject::connect(socket, &QTcpSocket::readyRead, m_server.get(), read);
    read();
}

void WebServer::respond(QTcpSocket* socket, const QByteArray& head) {
    m_requests.append(head);
    m_newest = socket;
    const auto known = m_answers.find(QString::fromLatin1(head.split(' ').value(1)));
    const WebAnswer answer = known == m_answers.end() ? WebAnswer{.status = "404 Not Found"} : known->second;
    QByteArray bytes;
    if (!answer.status.isEmpty()) {
        const qint64 length = answer.promisedLength.value_or(answer.body.size() + answer.filler);
        bytes = "HTTP/1.1 " + answer.status + "\r\nConnection: close\r\n" + answer.headers;
        if (length >= 0)
            bytes += "Content-Length: " + QByteArray::number(length) + "\r\n";
        bytes += "\r\n" + answer.body;
    }
    auto* const filler = new Filler(socket, answer.filler, answer.ending);
    socket->write(bytes);
    filler->fill();
}

void WebServer::send(const QByteArray& bytes) {
    ASSERT_TRUE(m_newest);
    if (bytes.isEmpty())
        m_newest->disconnectFromHost();
    else
        m_newest->write(bytes);
}

QString testAuthorityFile() {
    return certificateFile(u"authority.crt"_s);
}

} // namespace corvanta::testing
