// SPDX-License-Identifier: MIT
#pragma once

#include <coroutine>
#include <deque>
#include <memory>
#include <utility>

namespace corvanta {

/// Lets operations that suspend take turns: one at a time, in the order in which they asked. Main thread only.
///
/// Not a lock: it holds back coroutines of one thread, never a thread.
class TurnQueue {
    struct State {
        bool isTaken = false;
        std::deque<std::coroutine_handle<>> waiting;
    };

public:
    /// Having the turn. It passes to the next in line when this is destroyed.
    class Turn {
    public:
        Turn(Turn&& other) noexcept = default;
        Turn& operator=(Turn&& other) = delete;
        Turn(const Turn&) = delete;
        Turn& operator=(const Turn&) = delete;

        ~Turn() {
            if (!m_state)
                return;
            if (m_state->waiting.empty()) {
                m_state->isTaken = false;
                return;
            }
            const auto next = m_state->waiting.front();
            m_state->waiting.pop_front();
            next.resume();
        }

    private:
        friend class TurnQueue;

        explicit Turn(std::shared_ptr<State> state)
            : m_state(std::move(state)) {}

        std::shared_ptr<State> m_state;
    };

    /// Awaited for a Turn; ready at once when nobody has it.
    [[nodiscard]] auto next() {
        struct Awaiter {
            std::shared_ptr<State> state;

            [[nodiscard]] bool await_ready() const noexcept {
                if (state->isTaken)
                    return false;
                state->isTaken = true;
                return true;
            }

            void await_suspend(std::coroutine_handle<> handle) const { state->waiting.push_back(handle); }

            [[nodiscard]] Turn await_resume() const { return Turn(state); }
        };

        return Awaiter{m_state};
    }

private:
    std::shared_ptr<State> m_state = std::make_shared<State>();
};

} // namespace corvanta
