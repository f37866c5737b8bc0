// SPDX-License-Identifier: MIT
#include "updates/UpdateTransfer.h"

#include "support/CancelledError.h"
#include "updates/UpdateCheckError.h"
#include "updates/UpdateTransferError.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QObject>
#include <QPointer>

#include <utility>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int statusOK = 200;
/// What Qt takes from the connection before anybody has read it.
constexpr qint64 readAhead = 65'536;

QNetworkRequest manifestRequest(const QUrl& url) {
    QNetworkRequest request(url);
    request.setAttribute(QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);
    request.setAttribute(QNetworkRequest::CacheSaveControlAttribute, false);
    request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::AuthenticationReuseAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::NoLessSafeRedirectPolicy);
    // It brings nothing to a single request, and its data is read ahead without a limit.
    request.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
    return request;
}

/// One request from its beginning to its end, or to the end of this object, which gives it up.
class Transfer {
public:
    Transfer(QNetworkAccessManager& manager, const QUrl& url, qint64 sizeLimit, const Clock& clock)
        : m_clock(clock)
        , m_sizeLimit(sizeLimit)
        , m_lastData(clock.now())
        , m_reply(manager.get(manifestRequest(url))) {
        m_reply->setReadBufferSize(readAhead);
        QObject::connect(m_reply, &QNetworkReply::redirected, &m_context, [this] { m_lastData = m_clock.now(); });
        QObject::connect(m_reply, &QNetworkReply::metaDataChanged, &m_context, [this] { judgeHead(); });
        QObject::connect(m_reply, &QNetworkReply::readyRead, &m_context, [this] { receive(); });
        QObject::connect(m_reply, &QNetworkReply::finished, &m_context, [this] { finish(); });
        // It may have failed already, and that is told by a signal all the same.
    }

    Transfer(const Transfer&) = delete;
    Transfer& operator=(const Transfer&) = delete;

    ~Transfer() {
        if (!m_reply)
            return;
        m_reply->disconnect(&m_context);
        m_reply->abort();
        m_reply->deleteLater();
    }

    [[nodiscard]] Clock::TimePoint lastData() const { return m_lastData; }

    /// Cancelled when the request has come to its end.
    [[nodiscard]] CancellationToken end() const { return m_end.token(); }

    void giveUp() {
        if (m_reply)
            m_reply->abort();
        m_end.cancel();
    }

    /// The body of a good answer; throws for any other.
    [[nodiscard]] QByteArray body() const {
        const bool isRedirect = m_status / 100 == 3;
        const bool isUndecided = m_status == 0 || m_status == statusOK || isRedirect;
        if (m_isTooLarge && isUndecided)
            throw UpdateTransferError::tooLarge();
        if (m_error != QNetworkReply::NoError && isUndecided)
            throw UpdateTransferError::failed(m_errorText);
        if (m_status != statusOK)
            throw UpdateCheckError::serverUnavailable();
        return m_body;
    }

private:
    void judgeHead() {
        m_lastData = m_clock.now();
        if (m_reply->header(QNetworkRequest::ContentLengthHeader).toLongLong() > m_sizeLimit)
            refuseSize();
    }

    void receive() {
        m_lastData = m_clock.now();
        m_body += m_reply->read(m_sizeLimit + 1 - m_body.size());
        if (m_body.size() > m_sizeLimit)
            refuseSize();
    }

    void refuseSize() {
        if (!std::exchange(m_isTooLarge, true))
            m_reply->abort();
    }

    void finish() {
        m_status = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
        m_error = m_reply->error();
        m_errorText = m_reply->errorString();
        if (!m_isTooLarge && m_reply->isOpen())
            receive();
        m_end.cancel();
    }

    const Clock& m_clock;
    const qint64 m_sizeLimit;
    Clock::TimePoint m_lastData;
    CancellationSource m_end;
    QByteArray m_body;
    QString m_errorText;
    QNetworkReply::NetworkError m_error = QNetworkReply::NoError;
    int m_status = 0;
    bool m_isTooLarge = false;
    QObject m_context;
    /// The manager's; gone when the manager is.
    QPointer<QNetworkReply> m_reply;
};

} // namespace

QCoro::Task<QByteArray> transferUpdateManifest(QNetworkAccessManager* manager, QUrl url, UpdateTransferLimits limits,
                                               Clock* clock, CancellationToken token) {
    if (token.isCancelled())
        throw CancelledError();
    if (url.scheme() != u"https" && url.scheme() != u"http")
        throw UpdateCheckError::serverUnavailable();

    Transfer transfer(*manager, url, limits.size, *clock);
    const auto registration = token.onCancel([&transfer] { transfer.giveUp(); });
    while (!transfer.end().isCancelled()) {
        const auto deadline = transfer.lastData() + limits.silence;
        if (deadline <= clock->now())
            throw UpdateTransferError::timedOut();
        // The end of the transfer wakes the sleeper; a sleep cut short by anything else ends a program.
        if (co_await clock->sleepFor(deadline - clock->now(), transfer.end()) == SleepResult::cancelled &&
            !transfer.end().isCancelled())
            throw CancelledError();
    }
    if (token.isCancelled())
        throw CancelledError();
    co_return transfer.body();
}

} // namespace corvanta
