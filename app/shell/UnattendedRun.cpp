// SPDX-License-Identifier: MIT
#include "shell/UnattendedRun.h"

#include "window/DisplayText.h"
#include "workspace/WorkspaceCoordinator.h"

#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QImage>
#include <QPixmap>
#include <QScreen>

#include <cstdio>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto pictureInterval = 250ms;
constexpr int unchangedPictures = 6;
constexpr int pictureLimit = 80;

/// What pages and tools wrote is not to command the terminal.
void printLine(FILE* stream, const QString& text) {
    std::fprintf(stream, "%s\n", displayText(text).toUtf8().constData());
    std::fflush(stream);
}

} // namespace

PhaseReport::PhaseReport(const WorkspaceCoordinator& coordinator, const Clock& clock, QObject* parent)
    : QObject(parent)
    , m_coordinator(coordinator)
    , m_clock(clock)
    , m_start(clock.now()) {
    connect(&coordinator, &WorkspaceCoordinator::phaseChanged, this,
            [this] { print(displayName(m_coordinator.phase())); });
    connect(&coordinator, &WorkspaceCoordinator::statusMessageChanged, this,
            [this] { print(u"  "_s + m_coordinator.statusMessage()); });
}

void PhaseReport::print(const QString& text) const {
    const std::chrono::duration<double> elapsed = m_clock.now() - m_start;
    printLine(stdout, QString::number(elapsed.count(), 'f', 2).rightJustified(7) + u" s  "_s + text);
}

UnattendedRun::UnattendedRun(WorkspaceCoordinator& coordinator, Clock& clock)
    : m_coordinator(coordinator)
    , m_clock(clock) {}

void UnattendedRun::printFailure() const {
    printLine(stderr, m_coordinator.statusMessage());
    if (const auto& recovery = m_coordinator.recoveryMessage())
        printLine(stderr, *recovery);
    for (const SetupCheck& check : m_coordinator.setupChecks()) {
        if (check.state != SetupCheckState::passed)
            printLine(stderr, displayText(u"- "_s + check.title + u": "_s + check.detail, longestLine));
    }
    for (const SafariTarget& target : m_coordinator.candidateTargets())
        printLine(stderr, displayText(u"- "_s + target.title, longestLine));
}

QCoro::Task<int> UnattendedRun::run(QString screenshot) {
    // The devices could not be listed.
    if (m_coordinator.phase() == WorkspacePhase::failed) {
        printFailure();
        co_return 1;
    }
    co_await m_coordinator.startWorkspace();
    if (m_coordinator.phase() != WorkspacePhase::running) {
        printFailure();
        co_return 1;
    }
    if (!co_await writeScreenshot(screenshot)) {
        printLine(stderr, u"The screenshot could not be written to "_s + screenshot);
        co_return 1;
    }
    if (m_coordinator.phase() != WorkspacePhase::running) {
        printFailure();
        co_return 1;
    }
    printLine(stdout, u"Screenshot: "_s + QFileInfo(screenshot).absoluteFilePath());
    m_coordinator.stopWorkspace();
    co_return 0;
}

QCoro::Task<bool> UnattendedRun::writeScreenshot(QString path) {
    const auto grab = [] {
        QScreen* const screen = QGuiApplication::primaryScreen();
        return screen ? screen->grabWindow(0).toImage() : QImage();
    };
    QImage picture = grab();
    int unchanged = 0;
    // The windows have been moved only just now and their programs are still painting them.
    for (int look = 0; look < pictureLimit && unchanged < unchangedPictures; ++look) {
        co_await m_clock.sleepFor(pictureInterval);
        QImage next = grab();
        unchanged = next == picture ? unchanged + 1 : 0;
        picture = std::move(next);
    }
    QDir().mkpath(QFileInfo(path).absolutePath());
    co_return picture.save(path, "PNG");
}

} // namespace corvanta
