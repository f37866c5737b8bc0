// SPDX-License-Identifier: MIT
#include "shell/TerminationSignals.h"

#include <QSocketNotifier>

#include <array>
#include <cerrno>
#include <csignal>

#include <fcntl.h>
#include <unistd.h>

namespace corvanta {

namespace {

/// From the system, the keyboard, and a terminal that is closed.
constexpr std::array terminationSignals{SIGTERM, SIGINT, SIGHUP};

/// A signal handler may call little more than write(); the other end of this pipe is read by the event loop.
std::array<int, 2> signalPipe{-1, -1};

void writeToPipe(int) {
    const int interruptedError = errno;
    const char byte = 1;
    [[maybe_unused]] const auto written = ::write(signalPipe[1], &byte, 1);
    errno = interruptedError;
}

/// Not SIG_IGN, which the programs that are started would inherit.
void carryOn(int) {}

} // namespace

TerminationSignals::TerminationSignals(QObject* parent)
    : QObject(parent) {
    std::signal(SIGXFSZ, carryOn);
    if (::pipe(signalPipe.data()) != 0)
        return;
    for (const int end : signalPipe)
        ::fcntl(end, F_SETFD, FD_CLOEXEC);
    ::fcntl(signalPipe[1], F_SETFL, O_NONBLOCK);
    m_notifier = new QSocketNotifier(signalPipe[0], QSocketNotifier::Read, this);
    connect(m_notifier, &QSocketNotifier::activated, this, [this] {
        char byte = 0;
        [[maybe_unused]] const auto count = ::read(signalPipe[0], &byte, 1);
        Q_EMIT terminationRequested();
    });
    for (const int signal : terminationSignals)
        std::signal(signal, writeToPipe);
}

TerminationSignals::~TerminationSignals() {
    for (const int signal : terminationSignals)
        std::signal(signal, SIG_DFL);
    std::signal(SIGXFSZ, SIG_DFL);
    for (int& end : signalPipe) {
        if (end >= 0)
            ::close(end);
        end = -1;
    }
}

} // namespace corvanta
