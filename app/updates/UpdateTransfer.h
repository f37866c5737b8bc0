// SPDX-License-Identifier: MIT
#pragma once

#include "support/Cancellation.h"
#include "support/Clock.h"

#include <QByteArray>
#include <QCoroTask>
#include <QUrl>

#include <chrono>

class QNetworkAccessManager;

namespace corvanta {

/// How patient and how generous a transfer is.
struct UpdateTransferLimits {
    /// The time that may pass without anything arriving.
    Clock::Duration silence = std::chrono::seconds(12);
    /// The bytes that the body may have, after decompression.
    qint64 size = 1'000'000;
};

/// The body that a GET of `url` gives in the end, with status 200.
///
/// Nothing is taken from a cache or left in one, no cookie is sent or kept, and a redirect is never followed from https
/// to anything else. A body that is too large is given up as soon as that shows. Throws UpdateCheckError for any other
/// status, and for an address that is not http or https; UpdateTransferError when no complete answer arrives in time;
/// CancelledError once `token` is cancelled, which also ends the request. `manager` and `clock` outlive the task.
[[nodiscard]] QCoro::Task<QByteArray> transferUpdateManifest(QNetworkAccessManager* manager, QUrl url,
                                                             UpdateTransferLimits limits, Clock* clock,
                                                             CancellationToken token);

} // namespace corvanta
