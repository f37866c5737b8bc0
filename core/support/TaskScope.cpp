// SPDX-License-Identifier: MIT
#include "support/TaskScope.h"

#include "support/LocalizedError.h"

#include <QtGlobal>

#include <coroutine>
#include <utility>
#include <vector>

namespace corvanta {

struct TaskScope::State {
    std::size_t running = 0;
    std::vector<std::coroutine_handle<>> joiners;
};

namespace {

template<typename State>
struct UntilEmpty {
    State& state;

    [[nodiscard]] bool await_ready() const noexcept { return state.running == 0; }

    void await_suspend(std::coroutine_handle<> handle) const { state.joiners.push_back(handle); }

    void await_resume() const noexcept {}
};

} // namespace

TaskScope::TaskScope()
    : m_state(std::make_shared<State>()) {}

void TaskScope::start(QCoro::Task<void> task) {
    // The tracking frame keeps itself alive until it ends, so its handle may go.
    [[maybe_unused]] const auto detached = track(m_state, std::move(task));
}

std::size_t TaskScope::size() const {
    return m_state->running;
}

QCoro::Task<void> TaskScope::join() {
    const auto state = m_state;
    while (state->running > 0)
        co_await UntilEmpty<State>{*state};
}

QCoro::Task<void> TaskScope::track(std::shared_ptr<State> state, QCoro::Task<void> task) {
    ++state->running;
    try {
        co_await task;
    } catch (...) {
        qCritical("A background task ended with an error: %s",
                  qUtf8Printable(errorTexts(std::current_exception()).description));
    }
    if (--state->running > 0)
        co_return;
    for (const auto joiner : std::exchange(state->joiners, {}))
        joiner.resume();
}

} // namespace corvanta
