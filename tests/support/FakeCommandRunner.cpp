// SPDX-License-Identifier: MIT
#include "FakeCommandRunner.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <utility>

namespace corvanta::testing {

QCoro::Task<ProcessResult> FakeCommandRunner::run(ProcessCommand command) {
    m_commands.push_back(command);
    if (!m_replies.empty()) {
        const auto reply = std::move(m_replies.front());
        m_replies.pop_front();
        if (const auto* error = std::get_if<std::exception_ptr>(&reply))
            std::rethrow_exception(*error);
        co_return std::get<ProcessResult>(reply);
    }
    if (handler)
        co_return handler(command);
    ADD_FAILURE() << "unexpected command: " << command.displayString().toStdString();
    throw std::logic_error("unexpected command");
}

} // namespace corvanta::testing
