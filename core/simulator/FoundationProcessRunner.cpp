// SPDX-License-Identifier: MIT
#include "simulator/FoundationProcessRunner.h"

#include "simulator/ProcessLaunchError.h"

#include <QDir>
#include <QProcess>
#include <QTimer>

#include <coroutine>
#include <utility>

namespace corvanta {

namespace {

/// One child from its start to its end. Awaiting it resumes on a turn of the event loop that is not inside a signal of
/// the process, so that the awaiting frame may destroy it at once.
class ChildProcess {
public:
    explicit ChildProcess(const ProcessCommand& command) {
        m_process.setProgram(QDir::current().absoluteFilePath(command.executablePath));
        m_process.setArguments(command.arguments);
        m_process.setInputChannelMode(QProcess::ForwardedInputChannel);
        QObject::connect(&m_process, &QProcess::finished, &m_process, [this] { endSoon(); });
        QObject::connect(&m_process, &QProcess::errorOccurred, &m_process, [this](QProcess::ProcessError error) {
            if (error == QProcess::FailedToStart)
                endSoon();
        });
    }

    [[nodiscard]] bool await_ready() const noexcept { return false; }

    void await_suspend(std::coroutine_handle<> handle) {
        m_handle = handle;
        m_process.start();
    }

    void await_resume() const noexcept {}

    [[nodiscard]] QProcess& process() { return m_process; }

private:
    void endSoon() {
        if (std::exchange(m_isEnding, true))
            return;
        QTimer::singleShot(0, [handle = m_handle] { handle.resume(); });
    }

    QProcess m_process;
    std::coroutine_handle<> m_handle;
    bool m_isEnding = false;
};

} // namespace

QCoro::Task<ProcessResult> FoundationProcessRunner::run(ProcessCommand command) {
    ChildProcess child(command);
    co_await child;
    QProcess& process = child.process();
    if (process.error() == QProcess::FailedToStart)
        throw ProcessLaunchError(command.executablePath, process.errorString());
    // After a crash the exit code is the number of the signal.
    co_return ProcessResult{process.exitCode(), process.readAllStandardOutput(), process.readAllStandardError()};
}

} // namespace corvanta
