// SPDX-License-Identifier: MIT
// The cells of docs/faults.md on the real lab: one fault at one moment, what Corvanta makes of it, and the next start.
#include "AnswerWatch.h"
#include "FaultyLab.h"
#include "PacedReport.h"
#include "TrayHost.h"
#include "WorkspaceEndToEnd.h"

#include <QElapsedTimer>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QProcess>
#include <QRegularExpression>
#include <QSet>

#include <algorithm>
#include <csignal>
#include <exception>
#include <optional>

namespace corvanta::testing {

namespace {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

constexpr auto tablePath = CORVANTA_FAULT_TABLE;
const QString deviceName = u"iPhone 16 Pro"_s;
const QString host = u"127.0.0.1"_s;
/// The page that is opened beside the one that was asked for.
const QString newestPage = u"two.html"_s;
/// How the texts begin that ask for a page.
const QString choicesBeginning = u"  Choose the "_s;
const QString checkingText = u"Checking this Mac"_s;
/// A window that is closed ends the workspace and says so.
const QString stoppedText = u"  Stopped; external apps were left running"_s;
/// A start waits ten seconds for a page and about as long for an inspector.
constexpr auto outcomeLimit = 75s;
/// Longer than a look of the watch over the menu takes to come round.
constexpr auto restTime = 2500ms;

/// With what holds on Linux in the place of what holds elsewhere.
std::vector<FaultTableRow> allRows() {
    try {
        auto rows = readFaultTable(QString::fromUtf8(tablePath));
        std::erase_if(rows, [all = rows](const FaultTableRow& row) {
            return !row.isOnLinux && std::ranges::any_of(all, [&row](const FaultTableRow& other) {
                return other.isOnLinux && other.moment == row.moment && other.fault == row.fault;
            });
        });
        return rows;
    } catch (const FaultTableError&) { // A test of its own complains about it.
        return {};
    }
}

/// Nobody waits longer for an answer; on a machine with nothing else to do it takes a tenth of a second at most.
std::chrono::milliseconds answerLimit() {
    bool isNumber = false;
    const int chosen = qEnvironmentVariableIntValue("CORVANTA_ANSWER_LIMIT", &isNumber);
    return isNumber ? std::chrono::milliseconds(chosen) : 2000ms;
}

bool isText(const QString& line) {
    return line.startsWith(u"  "_s);
}

/// Whether the text is the one of the table, whose braces stand for something.
bool matches(const QString& text, const QString& tableText, const QHash<QString, QString>& known) {
    static const QRegularExpression placeholder(u"\\{([^{}]*)\\}"_s);
    QString pattern;
    qsizetype end = 0;
    for (auto found = placeholder.globalMatch(tableText); found.hasNext();) {
        const auto match = found.next();
        pattern += QRegularExpression::escape(tableText.mid(end, match.capturedStart() - end));
        const QString name = match.captured(1);
        pattern += known.contains(name) ? QRegularExpression::escape(known.value(name)) : u"(?:.|\\n)+"_s;
        end = match.capturedEnd();
    }
    pattern += QRegularExpression::escape(tableText.mid(end));
    return QRegularExpression(QRegularExpression::anchoredPattern(pattern)).match(text).hasMatch();
}

/// How many pages the device has been asked to open when the moment comes.
int pagesAt(FaultMoment moment) {
    switch (moment) {
    case FaultMoment::waiting:
    case FaultMoment::attaching:
    case FaultMoment::running:
    case FaultMoment::reloadOpeningPage:
        return 1;
    case FaultMoment::choice:
    case FaultMoment::runningAttaching:
    case FaultMoment::reloadWaiting:
    case FaultMoment::reloadAttaching:
        return 2;
    case FaultMoment::runningChoice:
        return 3;
    default:
        return 0;
    }
}

class FaultMatrix : public WorkspaceEndToEnd, public ::testing::WithParamInterface<FaultTableRow> {
protected:
    void SetUp() override;
    void TearDown() override;

    /// Leads the workspace to the moment and breaks the lab there.
    void reach();
    void expectOutcome();
    /// What Safari has said before it hung may arrive afterwards; the row is then that of the moment it leads to.
    void followAnswerUnderWay();
    void startAfresh();
    void expectAnswers() const;

private:
    void startUntilRunning();
    void launchInto(FaultMoment moment);
    void launchRunning();
    void reachInStart(FaultMoment moment);
    void reachInReload(FaultMoment moment);
    void reachChoice();
    void reachRunningChoice();
    void reachRunningAttaching();

    /// Waits until the program stands still behind the line, breaks the lab, and lets the program go on.
    void strikeAfter(const QString& line);
    /// Waits until the program's tool waits, breaks the lab, and lets both go on.
    void strikeBefore(const QString& tool);
    void strike();
    void strikeAndChoose();
    /// Where the fault is that the control window is closed.
    void expectWindowGone();

    /// Waits until Safari lists them.
    void openPagesAtOnce(const QStringList& pages) const;
    void keepWatching();

    [[nodiscard]] bool isReported(const QString& line, qsizetype from = 0) const {
        return m_report.lines().indexOf(line, from) >= 0;
    }

    /// The name of the phase that was reported last.
    [[nodiscard]] QString phase() const;
    /// The text that was reported last; for the setup check, the first behind its beginning.
    [[nodiscard]] QString status() const;
    [[nodiscard]] bool isAtOutcome() const;

    [[nodiscard]] bool hasFailed() const { return phase() == displayName(WorkspacePhase::failed); }

    [[nodiscard]] std::string reported() const { return m_report.lines().join(u'\n').toStdString(); }

    /// A window that is gone has no choice to offer: it was made in the instant before.
    [[nodiscard]] static bool isChosenBefore() { return GetParam().fault == Fault::controlWindowClosed; }

    [[nodiscard]] static bool isAboutLaunchingTools(Fault fault) {
        return fault == Fault::toolMissing || fault == Fault::toolNotExecutable;
    }

    [[nodiscard]] static bool isAboutTools(Fault fault) {
        return isAboutLaunchingTools(fault) || fault == Fault::toolFailing || fault == Fault::toolPrintingGarbage ||
               fault == Fault::toolEndedBySignal || fault == Fault::toolHanging;
    }

    FaultyLab m_lab;
    PacedReport m_report;
    AnswerWatch m_watch;
    // Before the program starts, which looks for a tray only then.
    TrayHost m_tray;
    FaultyLab::Application m_application;
    QHash<QString, QString> m_known;
    FaultTableRow m_row;
    QElapsedTimer m_time;
    QString m_note;
};

void FaultMatrix::SetUp() {
    WorkspaceEndToEnd::SetUp();
    m_time.start();
    m_row = GetParam();
    FaultyLab::storeProfile();

    const auto devices = QJsonDocument::fromJson(
        runTool(u"xcrun"_s, {u"simctl"_s, u"list"_s, u"-j"_s, u"devices"_s, deviceName}).toUtf8())[u"devices"_s];
    for (const QJsonValue runtime : devices.toObject()) {
        const QJsonArray ofRuntime = runtime.toArray();
        for (const QJsonValue device : ofRuntime) {
            if (device[u"name"_s].toString() == deviceName)
                m_application.deviceID = device[u"udid"_s].toString();
        }
    }
    ASSERT_FALSE(m_application.deviceID.isEmpty());
    m_application.deviceName = deviceName;
    m_known = {{u"device"_s, deviceName},
               {u"udid"_s, m_application.deviceID},
               {u"url"_s, m_site.address()},
               {u"host"_s, host},
               {u"place"_s, u"Barcelona"_s},
               {u"coordinate"_s, u"41.3874,2.1686"_s},
               {u"output"_s, u"\n %$ not what was asked for \n"_s}};
    if (m_row.fault == Fault::toolFailing)
        m_known[u"message"_s] = u"The tool is out of order."_s;
    if (m_row.fault == Fault::safariCannotBeLaunched)
        m_known[u"launch error"_s] = u"The application “Safari” could not be started."_s;
    // In the lab the device and the Simulator are one program.
    if (m_row.fault == Fault::simulatorGone) {
        const auto rows = allRows();
        m_row = *std::ranges::find_if(rows, [this](const FaultTableRow& row) {
            return row.moment == m_row.moment && row.fault == Fault::deviceShutDown;
        });
    }
}

void FaultMatrix::TearDown() {
    // While somebody still reads what it prints.
    if (m_corvanta.isRunning()) {
        m_report.goOn();
        EXPECT_EQ(m_corvanta.quit(), 0);
    }
    const QString folder = qEnvironmentVariable("CORVANTA_FAULT_RESULTS");
    if (folder.isEmpty())
        return;
    QFile file(folder + u'/' + QString::fromStdString(GetParam().testName()) + u".tsv"_s);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    const QStringList fields{tableName(GetParam().moment),
                             tableName(GetParam().fault),
                             HasFailure() ? u"failed"_s : u"passed"_s,
                             QString::number(m_watch.longest().count()),
                             QString::number(m_watch.answers()),
                             QString::number(static_cast<double>(m_time.elapsed()) / 1000, 'f', 1),
                             m_note.isEmpty() ? u"-"_s : m_note};
    file.write(fields.join(u'\t').toUtf8() + '\n');
}

QString FaultMatrix::phase() const {
    QString last = displayName(WorkspacePhase::idle);
    const QStringList lines = m_report.lines();
    for (const QString& line : lines) {
        if (!line.isEmpty() && line != u"stopped" && !isText(line))
            last = line;
    }
    return last;
}

QString FaultMatrix::status() const {
    QString last;
    const QStringList lines = m_report.lines();
    for (const QString& line : lines) {
        if (!isText(line) || (line == stoppedText && GetParam().fault == Fault::controlWindowClosed))
            continue;
        const QString text = line.sliced(2);
        const bool isCheck = m_row.moment == FaultMoment::setupCheck && !last.isEmpty() && last != checkingText;
        if (!isCheck || text == checkingText)
            last = text;
    }
    return last;
}

bool FaultMatrix::isAtOutcome() const {
    // The listing behind the check may change the phase; the check does not.
    const bool isPhase = m_row.moment == FaultMoment::setupCheck || phase() == displayName(m_row.phase);
    return isPhase && matches(status(), m_row.status, m_known);
}

void FaultMatrix::keepWatching() {
    if (const auto window = m_windows.window(u"Corvanta"_s)) {
        m_application.window = window->id;
        m_watch.watch(window->id);
    }
}

void FaultMatrix::strike() {
    keepWatching();
    m_application.processID = m_corvanta.processID();
    m_application.pages = pagesAt(m_row.moment);
    try {
        m_lab.inflict(GetParam().fault, m_application);
    } catch (const std::exception& error) {
        FAIL() << "the fault did not come about: " << error.what();
    }
}

void FaultMatrix::strikeAfter(const QString& line) {
    ASSERT_TRUE(eventually([&] { return m_report.holds(m_corvanta.processID()); }, outcomeLimit))
        << "not behind \"" << line.toStdString() << "\":\n"
        << reported();
    strike();
    m_watch.forgive();
    m_report.goOn();
    expectWindowGone();
}

void FaultMatrix::strikeBefore(const QString& tool) {
    ASSERT_TRUE(eventually([&] { return m_lab.isToolHeld(tool); }, outcomeLimit)) << reported();
    strike();
    m_lab.releaseTool(tool);
    expectWindowGone();
}

void FaultMatrix::expectWindowGone() {
    if (GetParam().fault != Fault::controlWindowClosed)
        return;
    // A window manager may lose a request to close a window that does not answer just then.
    ASSERT_TRUE(eventually([this] {
        const auto window = m_windows.window(u"Corvanta"_s);
        if (window)
            m_windows.close(window->id);
        return !window;
    }));
}

void FaultMatrix::launchInto(FaultMoment moment) {
    QStringList arguments{u"--url"_s, m_site.address(), u"--start"_s};
    // A start that follows at once would hide what came of the check and of the listing.
    const bool comesFirst = moment == FaultMoment::setupCheck || moment == FaultMoment::deviceListing;
    arguments += {u"--device"_s, comesFirst ? u"No such device"_s : deviceName};
    m_corvanta.start(arguments, m_report.writingEnd());
    m_application.processID = m_corvanta.processID();
}

void FaultMatrix::reachInStart(FaultMoment moment) {
    struct Place {
        FaultMoment moment;
        QString line;
    };

    const std::vector<Place> places{{FaultMoment::deviceListing, u"  Checking this Mac"_s},
                                    {FaultMoment::preflight, displayName(WorkspacePhase::preflight)},
                                    {FaultMoment::boot, displayName(WorkspacePhase::booting)},
                                    {FaultMoment::restoreLocation, u"  Booting "_s + deviceName},
                                    {FaultMoment::openingPage, displayName(WorkspacePhase::openingPage)},
                                    {FaultMoment::waiting, displayName(WorkspacePhase::attachingInspector)},
                                    {FaultMoment::attaching, u"  Waiting for Safari Web Inspector"_s}};
    const auto place = std::ranges::find(places, moment, &Place::moment);
    ASSERT_NE(place, places.end());
    m_report.stopAfter(place->line);
    launchInto(moment);
    ASSERT_NO_FATAL_FAILURE(strikeAfter(place->line));
}

void FaultMatrix::launchRunning() {
    launchInto(FaultMoment::running);
    ASSERT_TRUE(eventually([this] { return isReported(u"  Workspace running"_s); }, startLimit)) << reported();
    ASSERT_TRUE(eventually([this] { return inspectorWindows().size() == 1; }));
    keepWatching();
}

void FaultMatrix::reachInReload(FaultMoment moment) {
    ASSERT_NO_FATAL_FAILURE(launchRunning());
    QString line = displayName(WorkspacePhase::openingPage);
    if (moment == FaultMoment::reloadWaiting)
        line = u"  Opening "_s + host;
    else if (moment == FaultMoment::reloadAttaching)
        line = displayName(WorkspacePhase::attachingInspector);
    m_report.stopAfter(line);
    ASSERT_TRUE(eventually([this] { return m_tray.choose(u"Open / Reload Page"_s); }));
    ASSERT_NO_FATAL_FAILURE(strikeAfter(line));
}

void FaultMatrix::openPagesAtOnce(const QStringList& pages) const {
    const int before = FaultyLab::entriesInMenus(host);
    for (const QString& page : pages)
        runTool(u"xcrun"_s, {u"simctl"_s, u"openurl"_s, m_application.deviceID, m_site.address(page)});
    const auto count = before + static_cast<int>(pages.size());
    ASSERT_TRUE(eventually([&] { return FaultyLab::entriesInMenus(host) >= count; }));
}

void FaultMatrix::reachChoice() {
    const QString line = displayName(WorkspacePhase::attachingInspector);
    m_report.stopAfter(line);
    launchInto(FaultMoment::choice);
    ASSERT_TRUE(eventually([this] { return m_report.holds(m_corvanta.processID()); }, startLimit)) << reported();
    // Its first look finds another page beside the one that was asked for.
    ASSERT_TRUE(eventually([] { return FaultyLab::entriesInMenus(host) == 1; }));
    ASSERT_NO_FATAL_FAILURE(openPagesAtOnce({newestPage}));
    m_report.goOn(isChosenBefore() ? std::optional(choicesBeginning) : std::nullopt);
    ASSERT_TRUE(eventually([this] { return isReported(u"  Choose the Safari page to inspect"_s); })) << reported();
    ASSERT_NO_FATAL_FAILURE(strikeAndChoose());
}

void FaultMatrix::reachRunningChoice() {
    ASSERT_NO_FATAL_FAILURE(launchRunning());
    {
        const DrivenCorvanta::Pause pause(m_corvanta);
        ASSERT_NO_FATAL_FAILURE(openPagesAtOnce({u"index.html"_s, newestPage}));
        m_watch.forgive();
        if (isChosenBefore())
            m_report.stopAfter(choicesBeginning);
    }
    ASSERT_TRUE(eventually([this] { return isReported(u"  Choose the newest Safari page"_s); })) << reported();
    ASSERT_NO_FATAL_FAILURE(strikeAndChoose());
}

void FaultMatrix::strikeAndChoose() {
    const QString page = host + u" — "_s + newestPage;
    ASSERT_TRUE(eventually([&] { return m_corvanta.isEnabled(page); })) << m_corvanta.texts().join(u'\n').toStdString();
    // Where the accessibility bus goes, only the keyboard reaches the choice.
    const bool isByKeyboard = GetParam().fault == Fault::accessibilityGone;
    if (isByKeyboard) {
        const auto window = m_windows.window(u"Corvanta"_s);
        ASSERT_TRUE(window);
        ASSERT_TRUE(eventually([&] {
            m_windows.activate(window->id);
            return m_windows.activeWindow() == window->id && m_corvanta.focus(page);
        }));
    }
    if (isChosenBefore()) {
        ASSERT_TRUE(m_corvanta.press(page));
        ASSERT_NO_FATAL_FAILURE(strikeAfter(choicesBeginning));
        return;
    }
    ASSERT_NO_FATAL_FAILURE(strike());
    if (isByKeyboard)
        QProcess::execute(u"xdotool"_s, {u"key"_s, u"space"_s});
    else
        ASSERT_TRUE(m_corvanta.press(page));
}

void FaultMatrix::reachRunningAttaching() {
    ASSERT_NO_FATAL_FAILURE(launchRunning());
    const QString line = displayName(WorkspacePhase::attachingInspector);
    m_report.stopAfter(line);
    runTool(u"xcrun"_s, {u"simctl"_s, u"openurl"_s, m_application.deviceID, m_site.address(newestPage)});
    ASSERT_NO_FATAL_FAILURE(strikeAfter(line));
}

void FaultMatrix::reach() {
    const FaultMoment moment = m_row.moment;
    switch (moment) {
    case FaultMoment::setupCheck:
        runTool(u"open"_s, {u"-g"_s, u"-a"_s, u"Safari"_s});
        ASSERT_TRUE(eventually([] { return FaultyLab::entriesInMenus(u"Develop"_s) > 0; }));
        // What is wrong with the preferences shows when they are read.
        if (GetParam().fault == Fault::preferencesDamaged || GetParam().fault == Fault::preferencesNewer)
            ASSERT_NO_FATAL_FAILURE(strike());
        m_report.stopAtTheBeginning();
        launchInto(moment);
        ASSERT_NO_FATAL_FAILURE(strikeAfter(u"stopped"_s));
        return;
    case FaultMoment::bootStatus:
    case FaultMoment::openSimulator: {
        const bool isBootStatus = moment == FaultMoment::bootStatus;
        const QString before = isBootStatus ? u"boot"_s : u"bootstatus"_s;
        const QString tool = isAboutLaunchingTools(GetParam().fault) ? before
                             : isBootStatus                          ? u"bootstatus"_s
                                                                     : u"open"_s;
        m_lab.holdTool(tool);
        launchInto(moment);
        ASSERT_NO_FATAL_FAILURE(strikeBefore(tool));
        return;
    }
    case FaultMoment::choice:
        ASSERT_NO_FATAL_FAILURE(reachChoice());
        return;
    case FaultMoment::running:
        ASSERT_NO_FATAL_FAILURE(launchRunning());
        ASSERT_NO_FATAL_FAILURE(strike());
        return;
    case FaultMoment::runningChoice:
        ASSERT_NO_FATAL_FAILURE(reachRunningChoice());
        return;
    case FaultMoment::runningAttaching:
        ASSERT_NO_FATAL_FAILURE(reachRunningAttaching());
        return;
    case FaultMoment::reloadOpeningPage:
    case FaultMoment::reloadWaiting:
    case FaultMoment::reloadAttaching:
        ASSERT_NO_FATAL_FAILURE(reachInReload(moment));
        return;
    default:
        ASSERT_NO_FATAL_FAILURE(reachInStart(moment));
        return;
    }
}

void FaultMatrix::followAnswerUnderWay() {
    if (m_row.moment == FaultMoment::setupCheck && m_row.fault == Fault::noDevelopMenu && !isAtOutcome()) {
        // The check had its answer already, so the next one tells.
        ASSERT_TRUE(eventually([this] { return m_corvanta.press(u"Check Again"_s); }));
        m_note = u"an answer was under way"_s;
        EXPECT_TRUE(eventually([this] { return isAtOutcome(); }, outcomeLimit)) << reported();
        return;
    }
    const bool isReload = m_row.moment == FaultMoment::reloadWaiting;
    if (m_row.fault != Fault::safariHung || (!isReload && m_row.moment != FaultMoment::waiting) || isAtOutcome())
        return;
    const qsizetype struck = m_report.lines().lastIndexOf(displayName(WorkspacePhase::attachingInspector));
    if (!isReported(u"  Attaching Web Inspector to "_s + host, std::max<qsizetype>(struck, 0)))
        return;
    // Both rows of that moment hold here: whether Safari counts as busy or as hung depends on when it fell silent.
    const auto rows = readFaultTable(QString::fromUtf8(tablePath));
    const FaultMoment next = isReload ? FaultMoment::reloadAttaching : FaultMoment::attaching;
    const auto row = std::ranges::find_if(rows, [&](const FaultTableRow& candidate) {
        return candidate.moment == next && candidate.fault == Fault::safariHung &&
               matches(status(), candidate.status, m_known);
    });
    if (row == rows.end())
        return;
    m_row = *row;
    m_note = u"an answer was under way"_s;
}

void FaultMatrix::expectOutcome() {
    // A check that finds nothing amiss ends so.
    const qsizetype beginning = m_row.moment == FaultMoment::setupCheck ? 0 : m_report.lines().size();
    const auto looksDone = [this, beginning] {
        if (m_application.window == 0)
            keepWatching();
        return isAtOutcome() || hasFailed() || isReported(u"  Ready"_s, beginning);
    };
    ASSERT_TRUE(eventually(looksDone, outcomeLimit)) << reported();
    followAnswerUnderWay();
    // The text follows the phase.
    const bool isReached = eventually([this] { return isAtOutcome(); }, restTime);
    ASSERT_TRUE(isReached) << displayName(m_row.phase).toStdString() << ": " << m_row.status.toStdString()
                           << "\nwas expected of\n"
                           << reported();
    // What fails has come to rest; what goes on may still change.
    if (m_row.phase != WorkspacePhase::failed && m_row.moment != FaultMoment::setupCheck)
        EXPECT_FALSE(eventually([this] { return !isAtOutcome(); }, restTime)) << reported();
    EXPECT_TRUE(m_corvanta.isRunning());

    // Who has left the accessibility bus does not come back to another one, a closed window shows nothing, and where
    // the listing behind the check fails, it says so instead.
    if (GetParam().fault == Fault::accessibilityGone || GetParam().fault == Fault::controlWindowClosed ||
        (m_row.moment == FaultMoment::setupCheck && isAboutTools(GetParam().fault))) {
        m_note = u"recovery not read"_s;
        return;
    }
    const auto shown = [this] {
        QStringList recoveries;
        const QStringList texts = m_corvanta.texts();
        for (const FaultTableRow& row : allRows()) {
            if (row.recovery && texts.contains(*row.recovery) && !recoveries.contains(*row.recovery))
                recoveries.append(*row.recovery);
        }
        return recoveries;
    };
    const QStringList expected = m_row.recovery ? QStringList{*m_row.recovery} : QStringList();
    EXPECT_TRUE(eventually([&] { return shown() == expected; }, 10s))
        << shown().join(u'\n').toStdString() << "\nis shown instead of\n"
        << expected.join(u'\n').toStdString();
}

void FaultMatrix::startUntilRunning() {
    const qsizetype before = m_report.lines().size();
    const auto isSaid = [&](const QString& line) { return isReported(line, before); };
    ASSERT_TRUE(eventually([this] { return m_tray.choose(u"Start Workspace"_s); }))
        << m_tray.menu().join(u'\n').toStdString();
    EXPECT_TRUE(eventually(
        [&] { return isSaid(u"  Workspace running"_s) || isSaid(displayName(WorkspacePhase::failed)); }, startLimit))
        << reported();
    ASSERT_TRUE(isSaid(u"  Workspace running"_s)) << reported();
}

void FaultMatrix::startAfresh() {
    m_lab.lift(m_application);
    if (phase() != displayName(WorkspacePhase::idle)) {
        ASSERT_TRUE(eventually([this] { return m_tray.choose(u"Stop Workspace"_s); })) << reported();
        ASSERT_TRUE(eventually([&] { return isReported(stoppedText); })) << reported();
    }
    // A window that is opened checks the setup and lists the devices anew.
    const bool isCheckedAnew = m_row.moment == FaultMoment::setupCheck || m_row.moment == FaultMoment::deviceListing;
    if (isCheckedAnew || !m_windows.window(u"Corvanta"_s)) {
        if (const auto window = m_windows.window(u"Corvanta"_s))
            m_windows.close(window->id);
        ASSERT_TRUE(eventually([this] { return !m_windows.window(u"Corvanta"_s); }));
        const qsizetype before = m_report.lines().size();
        ASSERT_TRUE(eventually([this] { return m_tray.choose(u"Open Corvanta"_s); }));
        ASSERT_TRUE(eventually([&] { return isReported(u"  Ready"_s, before); })) << reported();
        keepWatching();
    }
    startUntilRunning();
    EXPECT_EQ(phase(), displayName(WorkspacePhase::running)) << reported();
}

void FaultMatrix::expectAnswers() const {
    EXPECT_GT(m_watch.answers(), 0);
    EXPECT_LE(m_watch.longest().count(), answerLimit().count()) << "milliseconds without an answer";
}

TEST_P(FaultMatrix, ComesToRestAsTheTableSaysAndStartsAfresh) {
    ASSERT_NO_FATAL_FAILURE(reach());
    ASSERT_NO_FATAL_FAILURE(expectOutcome());
    ASSERT_NO_FATAL_FAILURE(startAfresh());
    expectAnswers();
}

INSTANTIATE_TEST_SUITE_P(Cells, FaultMatrix, ::testing::ValuesIn(allRows()),
                         [](const auto& info) { return info.param.testName(); });

} // namespace

} // namespace corvanta::testing
