// SPDX-License-Identifier: MIT
#include "PageServer.h"

#include <QJsonDocument>
#include <QTcpSocket>
#include <QUrl>

namespace corvanta {

namespace {

using namespace Qt::Literals::StringLiterals;

constexpr char page[] = R"html(<!doctype html><meta charset="utf-8"><meta name="viewport" content="width=device-width">
<title>Report</title><style>html { background: #ff00ff; } body { margin: 0; }</style><script>
let geo = 'none';
let speed = null;
const report = () => fetch('/report?' + encodeURIComponent(JSON.stringify({
    page: location.pathname.slice(1), width: innerWidth, height: innerHeight,
    layoutWidth: document.documentElement.clientWidth, media: matchMedia(`(width: ${innerWidth}px)`).matches,
    ratio: devicePixelRatio, touch: navigator.maxTouchPoints, platform: navigator.platform,
    screen: screen.width + 'x' + screen.height, agent: navigator.userAgent, visible: document.visibilityState, geo, speed,
    dark: matchMedia('(prefers-color-scheme: dark)').matches })));
addEventListener('load', () => {
    if (location.pathname.startsWith('/located')) {
        navigator.geolocation.watchPosition(
            position => {
                geo = position.coords.latitude + ',' + position.coords.longitude;
                speed = position.coords.speed;
            },
            error => { geo = 'error ' + error.code; });
    }
    if (location.pathname === '/opener') {
        window.open('/opened');
    }
    report();
    setInterval(report, 100);
});
</script>)html";

} // namespace

PageServer::PageServer() {
    m_server.listen(QHostAddress::LocalHost);
    QObject::connect(&m_server, &QTcpServer::newConnection, &m_server, [this] { serve(); });
}

QString PageServer::url(const QString& name) const {
    return u"http://127.0.0.1:%1/%2"_s.arg(m_server.serverPort()).arg(name);
}

QJsonObject PageServer::last(const QString& name) const {
    const QList<QJsonObject> all = reports(name);
    return all.isEmpty() ? QJsonObject() : all.last();
}

void PageServer::serve() {
    while (QTcpSocket* socket = m_server.nextPendingConnection()) {
        QObject::connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
        QObject::connect(socket, &QTcpSocket::readyRead, socket, [this, socket] {
            if (!socket->peek(16384).contains("\r\n\r\n")) {
                return;
            }
            const QByteArray body = answer(socket->readAll().split(' ').value(1));
            socket->write("HTTP/1.1 200 OK\r\nContent-Type: text/html\r\nConnection: close\r\nContent-Length: " +
                          QByteArray::number(body.size()) + "\r\n\r\n" + body);
            socket->disconnectFromHost();
        });
    }
}

QByteArray PageServer::answer(const QByteArray& path) {
    if (!path.startsWith("/report?")) {
        return page;
    }
    const QJsonObject report =
        QJsonDocument::fromJson(QByteArray::fromPercentEncoding(path.sliced(qsizetype(sizeof "/report?") - 1)))
            .object();
    m_reports[report[u"page"].toString()].append(report);
    return "ok";
}

} // namespace corvanta
