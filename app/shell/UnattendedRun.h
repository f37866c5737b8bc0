// SPDX-License-Identifier: MIT
#pragma once

#include "support/Clock.h"

#include <QCoroTask>
#include <QObject>

#include <optional>

namespace corvanta {

class WorkspaceCoordinator;

/// Tells a terminal what a workspace does: each phase with the seconds since the beginning, each status text.
class PhaseReport final : public QObject {
    Q_OBJECT

public:
    /// Both outlive the report.
    PhaseReport(const WorkspaceCoordinator& coordinator, const Clock& clock, QObject* parent = nullptr);

private:
    void print(const QString& text) const;

    const WorkspaceCoordinator& m_coordinator;
    const Clock& m_clock;
    const Clock::TimePoint m_start;
};

/// A run without a person: start, picture, stop.
class UnattendedRun final {
public:
    /// Both outlive the run and its tasks.
    UnattendedRun(WorkspaceCoordinator& coordinator, Clock& clock);

    /// Starts the workspace, writes a picture of the whole desktop to `screenshot` once it has come to rest, stops the
    /// workspace and returns 0; or prints the status and what to do about it, and returns 1.
    [[nodiscard]] QCoro::Task<int> run(QString screenshot);

private:
    /// Waits until the picture of the desktop has not changed for a while, and writes it; false when it cannot be
    /// written.
    [[nodiscard]] QCoro::Task<bool> writeScreenshot(QString path);
    void printFailure() const;

    WorkspaceCoordinator& m_coordinator;
    Clock& m_clock;
};

} // namespace corvanta
