// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <condition_variable>
#include <mutex>
#include <optional>
#include <thread>

namespace corvanta::testing {

/// What Corvanta prints about its phases and texts, read such that the program can be stopped between two lines.
///
/// The pipe in between holds one line at a time. While a line is left in it, the program waits with the next one in its
/// hand and does nothing else, so whatever happens meanwhile happens exactly there.
class PacedReport {
public:
    PacedReport();
    ~PacedReport();
    PacedReport(const PacedReport&) = delete;
    PacedReport& operator=(const PacedReport&) = delete;

    /// What the program prints to. It stays open here, so that more than one program may print.
    [[nodiscard]] int writingEnd() const { return m_pipe[1]; }

    /// Stops the program with its first line in its hand. Before it is started.
    void stopAtTheBeginning();
    /// Stops the program with the line in its hand that follows the next one that begins so.
    void stopAfter(const QString& beginning);
    /// Whether the program waits with a line in its hand.
    [[nodiscard]] bool holds(int processID) const;
    /// Lets the program go on, to the next stop where there is one to be.
    void goOn(const std::optional<QString>& nextStop = std::nullopt);

    /// The lines so far, without their times: a phase's name, or a text with two spaces in front.
    [[nodiscard]] QStringList lines() const;

private:
    void read();
    /// Keeps a line, and where it is one to stop after, waits until the program may go on.
    void note(const QString& line);
    /// The line that is in the pipe, which stays there.
    [[nodiscard]] std::optional<QString> peek() const;
    void take() const;

    int m_pipe[2]{-1, -1};
    int m_copy[2]{-1, -1};
    int m_wakeUp = -1;
    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    QStringList m_lines;
    std::optional<QString> m_stopBeginning;
    bool m_isLeft = false;
    bool m_isEnding = false;
    std::thread m_reader;
};

} // namespace corvanta::testing
