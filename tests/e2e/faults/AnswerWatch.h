// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <thread>

namespace corvanta::testing {

/// Asks a window again and again whether it answers, as a window manager does (_NET_WM_PING), on a thread of its own.
///
/// Its program answers on the thread that does everything else, so an answer takes as long as that thread is busy.
class AnswerWatch {
public:
    AnswerWatch();
    /// Ends the asking.
    ~AnswerWatch();
    AnswerWatch(const AnswerWatch&) = delete;
    AnswerWatch& operator=(const AnswerWatch&) = delete;

    /// Asks this window from now on; until it is closed.
    void watch(std::uint32_t window);

    /// Does not count what was asked and not answered so far: the program was held in between.
    void forgive();

    /// The longest that an answer took, one that has not come yet included.
    [[nodiscard]] std::chrono::milliseconds longest() const;

    [[nodiscard]] int answers() const;

private:
    class State;

    std::unique_ptr<State> m_state;
    std::thread m_asker;
};

} // namespace corvanta::testing
