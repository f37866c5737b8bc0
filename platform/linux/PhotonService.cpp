// SPDX-License-Identifier: MIT
#include "PhotonService.h"

#include "support/CancelledError.h"
#include "support/JsonDecoder.h"

#include <QNetworkReply>
#include <QNetworkRequest>
#include <QPointer>

#include <algorithm>
#include <optional>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int statusOK = 200;
constexpr std::size_t keptAnswers = 32;
/// What Qt takes from the connection before anybody has read it.
constexpr qint64 readAhead = 65'536;

QNetworkRequest requestFor(const QUrl& url) {
    QNetworkRequest request(url);
    request.setHeader(QNetworkRequest::UserAgentHeader, QStringLiteral("Corvanta/" CORVANTA_VERSION));
    request.setRawHeader("Accept", "application/json");
    request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::AuthenticationReuseAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::NoLessSafeRedirectPolicy);
    // Its data is read ahead without a limit.
    request.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
    return request;
}

QUrl questionFor(const QUrl& address, const QString& text) {
    QUrl url(address);
    QByteArray query = url.query(QUrl::FullyEncoded).toLatin1();
    if (!query.isEmpty())
        query += '&';
    // A query class of Qt's would leave a "+" as it is, which means a space to a server.
    query += "q=" + QUrl::toPercentEncoding(text) + "&limit=10&lang=en";
    url.setQuery(QString::fromLatin1(query), QUrl::StrictMode);
    return url;
}

/// One request from its beginning to its end, or to the end of this object, which gives it up.
class Transfer {
public:
    Transfer(QNetworkAccessManager& session, const QUrl& url)
        : m_reply(session.get(requestFor(url))) {
        m_reply->setReadBufferSize(readAhead);
        QObject::connect(m_reply, &QNetworkReply::readyRead, &m_context, [this] { receive(); });
        QObject::connect(m_reply, &QNetworkReply::finished, &m_context, [this] { finish(); });
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

    /// Cancelled when the request has come to its end.
    [[nodiscard]] CancellationToken end() const { return m_end.token(); }

    void giveUp() { m_end.cancel(); }

    [[nodiscard]] QByteArray body() const {
        if (m_problem)
            throw PhotonError(*m_problem);
        return m_body;
    }

private:
    void receive() {
        if (m_problem)
            return;
        m_body += m_reply->read(PhotonService::largestAnswer + 1 - m_body.size());
        if (m_body.size() > PhotonService::largestAnswer) {
            m_problem = u"The answer is too large."_s;
            m_reply->abort();
        }
    }

    void finish() {
        const int status = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
        if (m_reply->isOpen())
            receive();
        if (!m_problem && m_reply->error() != QNetworkReply::NoError)
            m_problem = m_reply->errorString();
        if (!m_problem && status != statusOK)
            m_problem = u"The server answered with status %1."_s.arg(status);
        m_end.cancel();
    }

    CancellationSource m_end;
    QByteArray m_body;
    std::optional<QString> m_problem;
    QObject m_context;
    /// The session's; gone when that is.
    QPointer<QNetworkReply> m_reply;
};

} // namespace

QString PhotonError::errorDescription() const {
    return u"The place search on the network failed: %1"_s.arg(m_detail);
}

PhotonService::PhotonService(QUrl address, Clock& clock)
    : m_address(std::move(address))
    , m_clock(clock) {}

bool PhotonService::isUsable(const QUrl& address) {
    return address.isValid() && (address.scheme() == u"https" || address.scheme() == u"http") &&
           !address.host().isEmpty();
}

QCoro::Task<std::vector<PhotonPlace>> PhotonService::suggest(QString text, CancellationToken token) {
    return ask(shared_from_this(), std::move(text), std::move(token));
}

QCoro::Task<std::vector<PhotonPlace>> PhotonService::ask(std::shared_ptr<PhotonService> self, QString text,
                                                         CancellationToken token) {
    if (token.isCancelled())
        throw CancelledError();
    const auto known = std::ranges::find(self->m_answers, text, &decltype(m_answers)::value_type::first);
    if (known != self->m_answers.end())
        co_return std::vector(known->second);
    if (self->m_clock.now() < self->m_restsUntil)
        throw PhotonError(u"It failed a moment ago."_s);
    std::vector<PhotonPlace> places;
    try {
        places = photonPlaces(co_await fetch(self, questionFor(self->m_address, text), token));
    } catch (const JsonDecodingError& error) {
        self->m_restsUntil = self->m_clock.now() + rest;
        throw PhotonError(error.errorDescription());
    } catch (const PhotonError&) {
        self->m_restsUntil = self->m_clock.now() + rest;
        throw;
    }
    self->m_answers.emplace_front(text, places);
    if (self->m_answers.size() > keptAnswers)
        self->m_answers.pop_back();
    co_return places;
}

QCoro::Task<QByteArray> PhotonService::fetch(std::shared_ptr<PhotonService> self, QUrl url, CancellationToken token) {
    if (!self->m_session)
        self->m_session = std::make_unique<QNetworkAccessManager>();
    Transfer transfer(*self->m_session, url);
    const auto registration = token.onCancel([&transfer] { transfer.giveUp(); });
    const SleepResult end = co_await self->m_clock.sleepFor(patience, transfer.end());
    if (token.isCancelled())
        throw CancelledError();
    if (end == SleepResult::elapsed)
        throw PhotonError(u"The server did not answer in time."_s);
    co_return transfer.body();
}

} // namespace corvanta
