// SPDX-License-Identifier: MIT
#pragma once

#include "simulator/CommandRunning.h"

namespace corvanta {

/// Runs commands as child processes of this one.
///
/// The child inherits the environment, the working directory and standard input. Both of its output streams are read
/// while it runs, on the event loop of the calling thread, so any amount of output is fine and nothing blocks. A child
/// ended by a signal reports the signal's number. Throws ProcessLaunchError for a program that cannot be started. The
/// path is never searched for. A task that is dropped lets its child run to the end.
class FoundationProcessRunner final : public CommandRunning {
public:
    [[nodiscard]] QCoro::Task<ProcessResult> run(ProcessCommand command) override;
};

} // namespace corvanta
