// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>

namespace corvanta {

/// Tells a long operation that nobody waits for its result any more.
///
/// Tokens are cheap to copy. A default-constructed token is never cancelled. All use is on one thread.
class CancellationToken {
public:
    CancellationToken() = default;

    [[nodiscard]] bool isCancelled() const;

    /// Keeps a callback registered for as long as it lives.
    class Registration {
    public:
        Registration();
        Registration(Registration&& other) noexcept;
        Registration& operator=(Registration&& other) noexcept;
        Registration(const Registration&) = delete;
        Registration& operator=(const Registration&) = delete;
        ~Registration();

    private:
        friend class CancellationToken;
        struct Impl;
        explicit Registration(std::unique_ptr<Impl> impl);
        std::unique_ptr<Impl> m_impl;
    };

    /// Calls `callback` once, from inside the cancelling call; at once when the token is already cancelled.
    ///
    /// The callback must not throw and must not resume a coroutine: it schedules that for a later turn.
    [[nodiscard]] Registration onCancel(std::function<void()> callback) const;

private:
    friend class CancellationSource;
    struct State;
    explicit CancellationToken(std::shared_ptr<State> state);
    std::shared_ptr<State> m_state;
};

/// The side that cancels. Destroying it does not cancel.
class CancellationSource {
public:
    CancellationSource();

    [[nodiscard]] CancellationToken token() const;

    /// Marks every token of this source as cancelled and runs their callbacks. Further calls do nothing.
    void cancel();

private:
    std::shared_ptr<CancellationToken::State> m_state;
};

} // namespace corvanta
