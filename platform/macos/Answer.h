// SPDX-License-Identifier: MIT
#pragma once

#include <QCoroFuture>
#include <QCoroTask>
#include <QFuture>
#include <QPromise>

#include <memory>
#include <optional>
#include <utility>

namespace corvanta {

/// What a call that answers later through a callback will have answered.
template<typename T>
class Answer {
public:
    Answer()
        : m_promise(std::make_shared<QPromise<T>>()) {
        m_promise->start();
    }

    /// What the callback calls, once.
    void give(T value) const {
        m_promise->addResult(std::move(value));
        m_promise->finish();
    }

    /// Nothing when the callback was thrown away without being called. Takes the answer along, so that only callbacks
    /// keep it alive.
    [[nodiscard]] QCoro::Task<std::optional<T>> wait() && {
        return waitFor(std::exchange(m_promise, nullptr)->future());
    }

private:
    static QCoro::Task<std::optional<T>> waitFor(QFuture<T> future) {
        co_await qCoro(future).waitForFinished();
        if (!future.isResultReadyAt(0))
            co_return std::nullopt;
        co_return future.result();
    }

    std::shared_ptr<QPromise<T>> m_promise;
};

} // namespace corvanta
