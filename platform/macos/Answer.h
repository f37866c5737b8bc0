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
        : m_promise(std::make_shared<QPromise<void>>())
        , m_value(std::make_shared<std::optional<T>>()) {
        m_promise->start();
    }

    /// What the callback calls, once, on the main thread.
    void give(T value) const {
        *m_value = std::move(value);
        m_promise->finish();
    }

    /// Nothing when the callback was thrown away without being called: only callbacks keep the promise alive.
    [[nodiscard]] QCoro::Task<std::optional<T>> wait() && {
        return waitFor(std::exchange(m_promise, nullptr)->future(), m_value);
    }

private:
    static QCoro::Task<std::optional<T>> waitFor(QFuture<void> future, std::shared_ptr<std::optional<T>> value) {
        co_await future;
        co_return std::optional<T>(*value);
    }

    std::shared_ptr<QPromise<void>> m_promise;
    std::shared_ptr<std::optional<T>> m_value;
};

} // namespace corvanta
