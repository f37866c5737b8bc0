// SPDX-License-Identifier: MIT
// Many starts and stops on the real lab, which must leave nothing behind: ./dev soak rounds.
#include "PacedReport.h"
#include "Residue.h"
#include "TrayHost.h"
#include "WorkspaceEndToEnd.h"
#include "workspace/WorkspacePhase.h"

#include <QFile>
#include <QProcess>

#include <algorithm>

namespace corvanta::testing {

namespace {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

class StartStopRounds : public WorkspaceEndToEnd {
protected:
    void TearDown() override {
        // While somebody still reads what it prints.
        if (m_corvanta.isRunning())
            EXPECT_EQ(m_corvanta.quit(), 0);
    }

    /// Starts a workspace on a device that is off, stops it, and switches the device off.
    void runRound() {
        ASSERT_NO_FATAL_FAILURE(startUntilRunning());
        const qsizetype before = m_report.lines().size();
        ASSERT_TRUE(eventually([this] { return m_tray.choose(u"Stop Workspace"_s); }));
        ASSERT_TRUE(eventually([&] { return isSaid(u"  Stopped; external apps were left running"_s, before); }));
        runTool(u"xcrun"_s, {u"simctl"_s, u"shutdown"_s, u"all"_s});
        ASSERT_TRUE(eventually([this] { return inspectorWindows().empty() && !m_windows.window(u"iP"_s); }));
    }

    void startUntilRunning() {
        // Corvanta waits only so long for an inspector, and a busy machine may need longer for one.
        constexpr int mostStarts = 3;
        for (int start = 0; start < mostStarts; ++start) {
            const qsizetype before = m_report.lines().size();
            ASSERT_TRUE(eventually([this] { return m_tray.choose(u"Start Workspace"_s); }));
            ASSERT_TRUE(eventually(
                [&] {
                    return isSaid(u"  Workspace running"_s, before) ||
                           isSaid(displayName(WorkspacePhase::failed), before);
                },
                startLimit));
            if (isSaid(u"  Workspace running"_s, before))
                return;
        }
        FAIL() << m_report.lines().join(u'\n').toStdString();
    }

    [[nodiscard]] bool isSaid(const QString& line, qsizetype from) const {
        return m_report.lines().indexOf(line, from) >= 0;
    }

    /// What is there once everything that was ended has gone.
    [[nodiscard]] Residue settledResidue() const {
        Residue residue;
        // Processes take a while to leave; the least of some looks is what stays.
        for (int look = 0; look < looks; ++look) {
            const Residue current = Residue::now(m_corvanta.processID());
            if (residue.counts.empty())
                residue = current;
            for (std::size_t index = 0; index < residue.counts.size(); ++index)
                residue.counts[index].number = std::min(residue.counts[index].number, current.counts[index].number);
            std::ignore = eventually([] { return false; }, 200ms);
        }
        return residue;
    }

    static void keep(const Residue& before, const Residue& after, int rounds) {
        const QString folder = qEnvironmentVariable("CORVANTA_FAULT_RESULTS");
        QFile file(folder + u"/StartStopRounds.tsv"_s);
        if (folder.isEmpty() || !file.open(QIODevice::WriteOnly))
            return;
        for (std::size_t index = 0; index < after.counts.size(); ++index) {
            const Residue::Count& first = before.counts[index];
            const Residue::Count& last = after.counts[index];
            file.write(QStringList{first.what, QString::number(first.number),
                                   last.number <= first.number + first.tolerance ? u"passed"_s : u"failed"_s,
                                   QString::number(last.number), QString::number(rounds)}
                           .join(u'\t')
                           .toUtf8() +
                       '\n');
        }
    }

    static constexpr int looks = 10;

    PacedReport m_report;
    TrayHost m_tray;
};

TEST_F(StartStopRounds, LeaveNothingBehind) {
    const int rounds = std::max(1, qEnvironmentVariableIntValue("CORVANTA_ROUNDS"));
    m_corvanta.start({u"--url"_s, m_site.address(), u"--device"_s, u"iPhone 16 Pro"_s, u"--start"_s},
                     m_report.writingEnd());
    ASSERT_TRUE(eventually([this] { return isSaid(u"  Workspace running"_s, 0); }, startLimit));
    ASSERT_TRUE(eventually([this] { return m_tray.choose(u"Stop Workspace"_s); }));
    // What is loaded and kept with the first uses is not growth.
    for (int round = 0; round < std::min(rounds, 10); ++round)
        ASSERT_NO_FATAL_FAILURE(runRound());

    const Residue before = settledResidue();
    for (int round = 0; round < rounds; ++round)
        ASSERT_NO_FATAL_FAILURE(runRound()) << "in round " << round;
    const Residue after = settledResidue();
    keep(before, after, rounds);
    for (std::size_t index = 0; index < after.counts.size(); ++index) {
        const Residue::Count& first = before.counts[index];
        EXPECT_LE(after.counts[index].number, first.number + first.tolerance) << first.what.toStdString();
        std::printf("%s: %lld, then %lld\n", qUtf8Printable(first.what), static_cast<long long>(first.number),
                    static_cast<long long>(after.counts[index].number));
    }
}

} // namespace

} // namespace corvanta::testing
