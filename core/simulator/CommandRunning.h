// SPDX-License-Identifier: MIT
#pragma once

#include "simulator/ProcessCommand.h"

#include <QCoroTask>

namespace corvanta {

/// Runs commands to their end.
class CommandRunning {
public:
    CommandRunning() = default;
    CommandRunning(const CommandRunning&) = delete;
    CommandRunning& operator=(const CommandRunning&) = delete;
    virtual ~CommandRunning() = default;

    /// Starts the command, waits until it exits and returns its status and both streams.
    ///
    /// A status other than 0 is a result, not a failure. Throws the platform's launch error, a LocalizedError, when the
    /// program cannot be started at all. There is no time limit. Runs may overlap.
    [[nodiscard]] virtual QCoro::Task<ProcessResult> run(ProcessCommand command) = 0;
};

} // namespace corvanta
