// SPDX-License-Identifier: MIT
#pragma once

#include "LabFolder.h"
#include "simulator/CommandRunning.h"

#include <memory>

namespace corvanta {

/// Runs the lab's programs where commands name the developer tools of a Mac; everything else runs as it is named.
class LabCommandRunner final : public CommandRunning {
public:
    LabCommandRunner(std::unique_ptr<CommandRunning> runner, LabFolder lab);

    [[nodiscard]] QCoro::Task<ProcessResult> run(ProcessCommand command) override;

private:
    std::unique_ptr<CommandRunning> m_runner;
    LabFolder m_lab;
};

} // namespace corvanta
