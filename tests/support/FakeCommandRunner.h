// SPDX-License-Identifier: MIT
#pragma once

#include "simulator/CommandRunning.h"

#include <deque>
#include <exception>
#include <functional>
#include <variant>
#include <vector>

namespace corvanta::testing {

/// Records commands and pops scripted replies, first in first out. Answers at once.
///
/// A command without a scripted reply goes to `handler`; without that either, it fails the test.
class FakeCommandRunner final : public CommandRunning {
public:
    [[nodiscard]] QCoro::Task<ProcessResult> run(ProcessCommand command) override;

    void reply(ProcessResult result) { m_replies.emplace_back(std::move(result)); }

    template<typename Error>
    void fail(Error error) {
        m_replies.emplace_back(std::make_exception_ptr(std::move(error)));
    }

    /// Every command so far, in order.
    [[nodiscard]] const std::vector<ProcessCommand>& commands() const { return m_commands; }

    std::function<ProcessResult(const ProcessCommand&)> handler;

private:
    std::vector<ProcessCommand> m_commands;
    std::deque<std::variant<ProcessResult, std::exception_ptr>> m_replies;
};

} // namespace corvanta::testing
