// SPDX-License-Identifier: MIT
#pragma once

#include <QCoroTask>

#include <cstddef>
#include <memory>

namespace corvanta {

/// Owns tasks that nobody awaits, so that none is dropped and their end can be waited for.
///
/// A task started here handles its own errors; one that still throws is reported as a critical message. Destroying the
/// scope does not end its tasks: whoever owns it makes them end and awaits `join()` first. Main thread only.
class TaskScope {
public:
    TaskScope();

    /// Keeps `task` until it has ended.
    void start(QCoro::Task<void> task);

    /// How many tasks have not ended yet.
    [[nodiscard]] std::size_t size() const;

    /// Returns once every task has ended, those included that are started while it waits.
    [[nodiscard]] QCoro::Task<void> join();

private:
    struct State;
    static QCoro::Task<void> track(std::shared_ptr<State> state, QCoro::Task<void> task);
    std::shared_ptr<State> m_state;
};

} // namespace corvanta
