// SPDX-License-Identifier: MIT
#include "LabCommandRunner.h"

#include <utility>

namespace corvanta {

namespace {

using namespace Qt::Literals::StringLiterals;

bool isDeveloperTool(const QString& path) {
    return path == u"/usr/bin/xcrun" || path == u"/usr/bin/open" || path == u"/usr/bin/xcodebuild";
}

} // namespace

LabCommandRunner::LabCommandRunner(std::unique_ptr<CommandRunning> runner, LabFolder lab)
    : m_runner(std::move(runner))
    , m_lab(std::move(lab)) {}

QCoro::Task<ProcessResult> LabCommandRunner::run(ProcessCommand command) {
    if (isDeveloperTool(command.executablePath))
        command.executablePath = m_lab.program(command.executablePath.section(u'/', -1));
    return m_runner->run(std::move(command));
}

} // namespace corvanta
