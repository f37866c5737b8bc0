// SPDX-License-Identifier: MIT
#include "PacedReport.h"

#include <QFile>

#include <array>
#include <system_error>
#include <utility>

#include <cerrno>
#include <fcntl.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace corvanta::testing {

using namespace Qt::Literals::StringLiterals;

namespace {

/// The least that a pipe can hold, which with whole packets in it is a single one.
constexpr int oneLine = 4096;

void check(bool isFine, const char* what) {
    if (!isFine)
        throw std::system_error(errno, std::generic_category(), what);
}

/// Without the time in front: "   0.12 s  Booting\n".
QString textOf(const QByteArray& packet) {
    const qsizetype unit = packet.indexOf("s  ");
    QByteArray text = packet.sliced(unit < 0 ? 0 : unit + 3);
    if (text.endsWith('\n'))
        text.chop(1);
    return QString::fromUtf8(text);
}

} // namespace

PacedReport::PacedReport() {
    check(::pipe2(m_pipe, O_CLOEXEC | O_DIRECT) == 0, "pipe2");
    check(::fcntl(m_pipe[1], F_SETPIPE_SZ, oneLine) == oneLine, "F_SETPIPE_SZ");
    check(::pipe2(m_copy, O_CLOEXEC) == 0, "pipe2");
    m_wakeUp = ::eventfd(0, EFD_CLOEXEC);
    check(m_wakeUp >= 0, "eventfd");
    m_reader = std::thread([this] { read(); });
}

PacedReport::~PacedReport() {
    {
        const std::lock_guard lock(m_mutex);
        m_isEnding = true;
    }
    m_changed.notify_all();
    const std::uint64_t one = 1;
    [[maybe_unused]] const auto written = ::write(m_wakeUp, &one, sizeof one);
    m_reader.join();
    for (const int descriptor : {m_pipe[0], m_pipe[1], m_copy[0], m_copy[1], m_wakeUp})
        ::close(descriptor);
}

void PacedReport::stopAtTheBeginning() {
    stopAfter(u"stopped"_s);
    check(::write(m_pipe[1], "stopped\n", 8) == 8, "write");
}

void PacedReport::stopAfter(const QString& beginning) {
    const std::lock_guard lock(m_mutex);
    m_stopBeginning = beginning;
}

bool PacedReport::holds(int processID) const {
    {
        const std::lock_guard lock(m_mutex);
        if (!m_isLeft)
            return false;
    }
    // The number of the system call that it is in, and the first argument: its standard output.
    QFile file(u"/proc/%1/syscall"_s.arg(processID));
    if (!file.open(QIODevice::ReadOnly))
        return false;
    return file.readAll().startsWith(QByteArray::number(SYS_write) + " 0x1 ");
}

void PacedReport::goOn(const std::optional<QString>& nextStop) {
    {
        const std::lock_guard lock(m_mutex);
        m_isLeft = false;
        m_stopBeginning = nextStop;
    }
    m_changed.notify_all();
}

QStringList PacedReport::lines() const {
    const std::lock_guard lock(m_mutex);
    return m_lines;
}

std::optional<QString> PacedReport::peek() const {
    const ssize_t count = ::tee(m_pipe[0], m_copy[1], oneLine, SPLICE_F_NONBLOCK);
    if (count <= 0)
        return std::nullopt;
    QByteArray packet(count, Qt::Uninitialized);
    check(::read(m_copy[0], packet.data(), static_cast<std::size_t>(count)) == count, "read");
    return textOf(packet);
}

void PacedReport::take() const {
    std::array<char, oneLine> packet{};
    check(::read(m_pipe[0], packet.data(), packet.size()) > 0, "read");
}

void PacedReport::note(const QString& line) {
    std::unique_lock lock(m_mutex);
    m_lines.append(line);
    if (!m_stopBeginning || !line.startsWith(*m_stopBeginning))
        return;
    m_stopBeginning.reset();
    m_isLeft = true;
    m_changed.wait(lock, [this] { return !m_isLeft || m_isEnding; });
    m_isLeft = false;
}

void PacedReport::read() {
    while (true) {
        std::array<pollfd, 2> waited{pollfd{m_pipe[0], POLLIN, 0}, pollfd{m_wakeUp, POLLIN, 0}};
        ::poll(waited.data(), waited.size(), -1);
        {
            const std::lock_guard lock(m_mutex);
            if (m_isEnding)
                return;
        }
        const auto line = peek();
        if (!line)
            continue;
        note(*line);
        take();
    }
}

} // namespace corvanta::testing
