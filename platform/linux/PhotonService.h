// SPDX-License-Identifier: MIT
#pragma once

#include "PhotonAnswer.h"
#include "support/Cancellation.h"
#include "support/Clock.h"
#include "support/LocalizedError.h"

#include <QCoroTask>
#include <QNetworkAccessManager>
#include <QString>
#include <QUrl>

#include <chrono>
#include <deque>
#include <memory>
#include <utility>
#include <vector>

namespace corvanta {

/// The place search on the network has not answered.
class PhotonError final : public LocalizedError {
public:
    explicit PhotonError(QString detail)
        : m_detail(std::move(detail)) {}

    [[nodiscard]] QString errorDescription() const override;

private:
    QString m_detail;
};

/// A search service on the network that is asked while people type. Main thread only.
class PhotonService final : public std::enable_shared_from_this<PhotonService> {
public:
    /// How long an answer may take, from the question to its last byte.
    static constexpr auto patience = std::chrono::seconds(5);
    /// How long a service that has failed is left alone.
    static constexpr auto rest = std::chrono::seconds(30);
    /// The bytes that an answer may have, after decompression.
    static constexpr qint64 largestAnswer = 500'000;

    /// `address` is http or https, and answers to the parameters "q", "limit" and "lang". The clock outlives this.
    PhotonService(QUrl address, Clock& clock);

    /// The places for a text, the service's best first. An answer that was given lately is given again without asking.
    ///
    /// Throws PhotonError when the service fails, has failed lately or says what nobody understands; CancelledError
    /// once `token` is cancelled, which also ends the request. Keeps this alive while it lasts.
    [[nodiscard]] QCoro::Task<std::vector<PhotonPlace>> suggest(QString text, CancellationToken token);

    /// Whether `address` is one that a service can have.
    [[nodiscard]] static bool isUsable(const QUrl& address);

private:
    [[nodiscard]] static QCoro::Task<QByteArray> fetch(std::shared_ptr<PhotonService> self, QUrl url,
                                                       CancellationToken token);
    [[nodiscard]] static QCoro::Task<std::vector<PhotonPlace>> ask(std::shared_ptr<PhotonService> self, QString text,
                                                                   CancellationToken token);

    const QUrl m_address;
    Clock& m_clock;
    /// Made with the first question: it costs time that the start has better uses for.
    std::unique_ptr<QNetworkAccessManager> m_session;
    Clock::TimePoint m_restsUntil;
    std::deque<std::pair<QString, std::vector<PhotonPlace>>> m_answers;
};

} // namespace corvanta
