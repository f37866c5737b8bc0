// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusPendingCall>
#include <QObject>

#include <chrono>
#include <functional>

namespace corvanta {

/// How long a program may be silent before it counts as one that hangs; until then what it said last stands.
constexpr std::chrono::milliseconds silenceOfABusyProgram{5000};

/// How long what was asked before a pause is good for at its first reading behind it.
constexpr std::chrono::milliseconds announcedLifetime{400};

/// How long programs that do not answer may hold the main thread in one turn of its event loop, all of them together.
class HangAllowance {
public:
    explicit HangAllowance(std::chrono::milliseconds perTurn)
        : m_perTurn(perTurn) {}

    /// Rests until something may have happened, and not for longer than it is told.
    using Pause = std::function<void(std::chrono::nanoseconds atMost)>;

    /// Waits until `isDone`, which is asked again and again, or until the allowance is used up, and says which it was.
    /// Only waiting in vain uses it up. Asks at least once. Without a pause of the caller's own it asks often at first,
    /// and less often the longer nothing has happened.
    bool wait(const std::function<bool()>& isDone, const Pause& pause = {});

    /// One call that may be waited for once: when that was in vain, later waits only look.
    struct Call {
        QDBusPendingCall pending;
        bool isLate = false;
        std::chrono::steady_clock::time_point begin = std::chrono::steady_clock::now();

        /// Whether the answer may have lain here unread for longer than it is good for.
        [[nodiscard]] bool isStale() const {
            return pending.isFinished() && std::chrono::steady_clock::now() - begin > announcedLifetime;
        }

        /// Whether the answer has been missing for longer than a busy program needs.
        [[nodiscard]] bool isOverdue() const {
            return !pending.isFinished() && std::chrono::steady_clock::now() - begin > silenceOfABusyProgram;
        }
    };

    bool wait(Call& call);

private:
    const std::chrono::milliseconds m_perTurn;
    std::chrono::nanoseconds m_used{};
    bool m_isRenewalScheduled = false;
    QObject m_context;
};

} // namespace corvanta
