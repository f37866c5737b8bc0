// SPDX-License-Identifier: MIT
#include "InspectorProcess.h"

#include "InspectorCommands.h"
#include "ProgramEnvironment.h"

#include <algorithm>
#include <array>

namespace corvanta::lab {

std::unique_ptr<InspectorProcess> InspectorProcess::start(const std::string& serverAddress) {
    const std::string program = besideProgram("SafariInspector");
    GlibPointer<GSubprocess> process(
        g_subprocess_new(static_cast<GSubprocessFlags>(G_SUBPROCESS_FLAGS_STDIN_PIPE | G_SUBPROCESS_FLAGS_STDOUT_PIPE),
                         nullptr, program.c_str(), "--server", serverAddress.c_str(), "--commands", nullptr));
    if (!process)
        return nullptr;
    return std::unique_ptr<InspectorProcess>(new InspectorProcess(std::move(process)));
}

InspectorProcess::InspectorProcess(GlibPointer<GSubprocess> process)
    : m_process(std::move(process))
    , m_cancellable(g_cancellable_new()) {
    g_subprocess_wait_async(
        m_process.get(), m_cancellable.get(),
        [](GObject* process, GAsyncResult* result, gpointer self) {
            if (g_subprocess_wait_finish(G_SUBPROCESS(process), result, nullptr)) {
                // The handler may drop the object that holds it.
                const auto onExit = static_cast<InspectorProcess*>(self)->m_onExit;
                if (onExit)
                    onExit();
            }
        },
        this);
}

InspectorProcess::~InspectorProcess() {
    g_cancellable_cancel(m_cancellable.get());
    g_output_stream_close(g_subprocess_get_stdin_pipe(m_process.get()), nullptr, nullptr);
}

void InspectorProcess::inspect(const TargetIdentifier& target, const std::string& title) {
    send(formatCommand(InspectCommand{target, title}));
}

void InspectorProcess::present() {
    // Keeps the pipe of the answers empty, however often a person asks.
    countAnswers();
    ++m_unansweredPresents;
    send(formatCommand(PresentCommand{}));
}

bool InspectorProcess::hasUnansweredPresent() {
    countAnswers();
    return m_unansweredPresents > 0;
}

void InspectorProcess::countAnswers() {
    auto* const pipe = G_POLLABLE_INPUT_STREAM(g_subprocess_get_stdout_pipe(m_process.get()));
    std::array<char, 256> buffer{};
    gssize size = 0;
    do {
        size = g_pollable_input_stream_read_nonblocking(pipe, buffer.data(), buffer.size(), nullptr, nullptr);
        m_unansweredPresents -=
            static_cast<int>(std::count(buffer.begin(), buffer.begin() + std::max<gssize>(size, 0), presentedAnswer));
    } while (size > 0);
}

void InspectorProcess::retitle(const std::string& title) {
    send(formatCommand(RetitleCommand{title}));
}

void InspectorProcess::send(const std::string& line) {
    // Non-blocking, so that a hung inspector never hangs Safari. The pipe holds hundreds of such lines; one that does
    // not fit is lost with a process that has stopped listening anyway.
    auto* const pipe = G_POLLABLE_OUTPUT_STREAM(g_subprocess_get_stdin_pipe(m_process.get()));
    g_pollable_output_stream_write_nonblocking(pipe, line.data(), line.size(), nullptr, nullptr);
}

} // namespace corvanta::lab
