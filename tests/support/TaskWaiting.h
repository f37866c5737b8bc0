// SPDX-License-Identifier: MIT
#pragma once

#include <QCoroTask>

#include <chrono>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <type_traits>
#include <utility>
#include <variant>

namespace corvanta::testing {

/// Runs the event loop until `condition` holds or the limit has passed, and says whether it holds.
[[nodiscard]] bool waitUntil(const std::function<bool()>& condition,
                             std::chrono::milliseconds limit = std::chrono::seconds(20));

/// What became of a task so far. Watching a task never runs the event loop.
template<typename T>
class WatchedTask {
public:
    explicit WatchedTask(QCoro::Task<T> task) { collect(std::move(task), m_outcome); }

    [[nodiscard]] bool isDone() const { return m_outcome->isDone; }

    /// The task's error; null when it has none.
    [[nodiscard]] std::exception_ptr error() const { return m_outcome->error; }

    /// The task's value, or its error thrown. Throws std::bad_optional_access when it is not done.
    T result() const {
        if (m_outcome->error)
            std::rethrow_exception(m_outcome->error);
        if constexpr (std::is_void_v<T>)
            (void)m_outcome->value.value();
        else
            return m_outcome->value.value();
    }

private:
    struct Outcome {
        std::optional<std::conditional_t<std::is_void_v<T>, std::monostate, T>> value;
        std::exception_ptr error;
        bool isDone = false;
    };

    static QCoro::Task<void> collect(QCoro::Task<T> task, std::shared_ptr<Outcome> outcome) {
        try {
            if constexpr (std::is_void_v<T>) {
                co_await std::move(task);
                outcome->value.emplace();
            } else {
                outcome->value.emplace(co_await std::move(task));
            }
        } catch (...) {
            outcome->error = std::current_exception();
        }
        outcome->isDone = true;
    }

    std::shared_ptr<Outcome> m_outcome = std::make_shared<Outcome>();
};

/// Runs the event loop until the task is done, and returns its value or throws its error.
///
/// Throws std::bad_optional_access, which fails the test, when the limit passes first.
template<typename T>
T runTask(QCoro::Task<T> task, std::chrono::milliseconds limit = std::chrono::seconds(20)) {
    const WatchedTask<T> watched(std::move(task));
    (void)waitUntil([&watched] { return watched.isDone(); }, limit);
    return watched.result();
}

} // namespace corvanta::testing
