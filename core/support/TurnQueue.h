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
        bool isPassing = false;
        bool isPassedOn = false;
        std::deque<std::coroutine_handle<>> waiting;

        /// Resumes whoever is next. An operation that ends at once gives its turn back in the midst of this; the one
        /// after it is resumed from here as well, so that a long line does not pile up on the stack.
        void pass() {
            isPassedOn = true;
            if (isPassing)
                return;
            isPassing = true;
            while (std::exchange(isPassedOn, false)) {
                if (waiting.empty()) {
                    isTaken = false;
                    break;
                }
                const auto next = waiting.front();
                waiting.pop_front();
                next.resume();
            }
            isPassing = false;
        }
    };

public:
    /// Having the turn, until it is passed on.
    class Turn {
    public:
        Turn(Turn&& other) noexcept = default;
        Turn& operator=(Turn&& other) = delete;
        Turn(const Turn&) = delete;
        Turn& operator=(const Turn&) = delete;

        /// Passes the turn on where that was not done, so that no way out of an operation holds up the others.
        ~Turn() { pass(); }

        /// Ends the turn: the next in line goes on before this returns, as far as it gets without suspending. Passing
        /// a second time does nothing.
        void pass() {
            if (const std::shared_ptr<State> state = std::exchange(m_state, nullptr))
                state->pass();
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
