// SPDX-License-Identifier: MIT
// What one start of a workspace on the device lab spends its time on, phase by phase: the pauses that belong to it, the
// developer tools, the answers of other programs on the accessibility bus, and the rest, which is Corvanta's own. Runs
// the whole program on the real desktop with a recorder between it and the platform. Exits with 1 when the rest is
// above its goal.
//
// Of a call on the accessibility interface the part counts as another program's in which the main thread did not run;
// what it computed meanwhile is Corvanta's. Time in which several things were waited for is counted once. The processor
// time of the main thread and of the whole program stands beside, whatever was waited for meanwhile, and so does the
// time in which the main thread was ready and other programs had the processors ("queue"), which is part of the rest.
#include "Desktop.h"
#include "Platform.h"
#include "shell/CorvantaApp.h"
#include "support/Measuring.h"
#include "window/Appearance.h"

#include <QApplication>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <unistd.h>

namespace {

using namespace corvanta;
using namespace corvanta::bench;
using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

constexpr double goal = 0.03;

/// Something that was waited for.
struct Span {
    enum class Kind { pause, tool, answer };
    Kind kind;
    QString what;
    double begin;
    double end;
};

/// All that was waited for, in seconds since the program began.
class Recording {
public:
    explicit Recording(const Clock& clock)
        : m_clock(clock)
        , m_start(clock.now()) {}

    [[nodiscard]] double now() const { return std::chrono::duration<double>(m_clock.now() - m_start).count(); }

    void add(Span span) { m_spans.push_back(std::move(span)); }

    [[nodiscard]] const std::vector<Span>& spans() const { return m_spans; }

    /// Seconds of one kind between two times.
    [[nodiscard]] double total(Span::Kind kind, double from, double to) const {
        double sum = 0;
        for (const Span& span : m_spans) {
            if (span.kind == kind)
                sum += std::max(0.0, std::min(span.end, to) - std::max(span.begin, from));
        }
        return sum;
    }

    /// Seconds between two times in which something was waited for.
    [[nodiscard]] double waited(double from, double to) const {
        std::vector<std::pair<double, double>> parts;
        for (const Span& span : m_spans) {
            if (span.end > from && span.begin < to)
                parts.emplace_back(std::max(span.begin, from), std::min(span.end, to));
        }
        std::ranges::sort(parts);
        double sum = 0;
        double reached = from;
        for (const auto& [begin, end] : parts) {
            sum += std::max(0.0, end - std::max(begin, reached));
            reached = std::max(reached, end);
        }
        return sum;
    }

    /// Notes how much processor time has been used so far; once a millisecond is enough.
    void noteUse() {
        if (m_uses.empty() || now() - m_uses.back().at > 1e-3)
            m_uses.push_back({now(), usedMilliseconds() / 1e3, queuedMilliseconds() / 1e3, processSeconds()});
    }

    struct Use {
        double at;
        double mainThread;
        double queued;
        double process;
    };

    /// What had been used when it was noted last before that time.
    [[nodiscard]] Use used(double at) const {
        Use last{};
        for (const Use& use : m_uses) {
            // The program's report of its phases is in hundredths of a second.
            if (use.at <= at + 5e-3)
                last = use;
        }
        return last;
    }

    void copyTo(Recording& other) const {
        other.m_spans = m_spans;
        other.m_uses = m_uses;
    }

private:
    static double processSeconds() {
        timespec used{};
        clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &used);
        return static_cast<double>(used.tv_sec) + static_cast<double>(used.tv_nsec) / 1e9;
    }

    const Clock& m_clock;
    const Clock::TimePoint m_start;
    std::vector<Span> m_spans;
    std::vector<Use> m_uses;
};

class RecordedClock final : public Clock {
public:
    explicit RecordedClock(Clock& clock)
        : m_clock(clock)
        , m_recording(clock) {}

    [[nodiscard]] TimePoint now() const override {
        // The program reads the clock when it reports a phase.
        m_recording.noteUse();
        return m_clock.now();
    }

    [[nodiscard]] QCoro::Task<SleepResult> sleepFor(Duration duration, CancellationToken token) override {
        const double begin = m_recording.now();
        const SleepResult result = co_await m_clock.sleepFor(duration, token);
        // Waking up late is Corvanta's own time.
        const double end = std::min(m_recording.now(), begin + std::chrono::duration<double>(duration).count());
        m_recording.add({Span::Kind::pause, u"pause"_s, begin, end});
        co_return result;
    }

    [[nodiscard]] Date wallClockNow() const override { return m_clock.wallClockNow(); }

    [[nodiscard]] QUuid freshUUID() override { return m_clock.freshUUID(); }

    [[nodiscard]] Recording& recording() { return m_recording; }

private:
    Clock& m_clock;
    mutable Recording m_recording;
};

class RecordedAccessibility final : public AccessibilityClient {
private:
    // Before its uses, which deduce its type.
    template<class Call>
    auto recorded(const Call& call) {
        const double begin = m_recording.now();
        const double used = usedMilliseconds();
        auto result = call();
        add(begin, used);
        return result;
    }

public:
    RecordedAccessibility(AccessibilityClient& client, Recording& recording)
        : m_client(client)
        , m_recording(recording) {}

    [[nodiscard]] bool isTrusted() override {
        return recorded([this] { return m_client.isTrusted(); });
    }

    bool requestTrust() override {
        return recorded([this] { return m_client.requestTrust(); });
    }

    [[nodiscard]] QCoro::Task<void> lookAhead(QString bundleIdentifier) override {
        const double begin = m_recording.now();
        const double used = usedMilliseconds();
        co_await m_client.lookAhead(std::move(bundleIdentifier));
        add(begin, used);
    }

    [[nodiscard]] std::optional<AccessibilityElement> application(const QString& bundleIdentifier) override {
        return recorded([&] { return m_client.application(bundleIdentifier); });
    }

    [[nodiscard]] std::optional<AccessibilityValue> attribute(const AccessibilityElement& element,
                                                              QStringView name) override {
        return recorded([&] { return m_client.attribute(element, name); });
    }

    bool setAttribute(const AccessibilityElement& element, QStringView name, const AccessibilityValue& value) override {
        return recorded([&] { return m_client.setAttribute(element, name, value); });
    }

    bool performAction(const AccessibilityElement& element, QStringView name) override {
        return recorded([&] { return m_client.performAction(element, name); });
    }

private:
    /// What the main thread computed is not waiting; it is taken from the beginning.
    void add(double begin, double usedBefore) {
        const double end = m_recording.now();
        begin += (usedMilliseconds() - usedBefore) / 1e3;
        // Most calls are answered from what is known.
        if (end - begin > 1e-4)
            m_recording.add({Span::Kind::answer, u"accessibility"_s, begin, end});
    }

    AccessibilityClient& m_client;
    Recording& m_recording;
};

class RecordedRunner final : public CommandRunning {
public:
    RecordedRunner(std::unique_ptr<CommandRunning> runner, Recording& recording)
        : m_runner(std::move(runner))
        , m_recording(recording) {}

    [[nodiscard]] QCoro::Task<ProcessResult> run(ProcessCommand command) override {
        const QString name = command.executablePath.section(u'/', -1) + u' ' + command.arguments.mid(0, 3).join(u' ');
        const double begin = m_recording.now();
        ProcessResult result = co_await m_runner->run(std::move(command));
        m_recording.add({Span::Kind::tool, name, begin, m_recording.now()});
        co_return result;
    }

private:
    std::unique_ptr<CommandRunning> m_runner;
    Recording& m_recording;
};

class RecordedDesktop final : public Desktop {
public:
    RecordedDesktop(Desktop& desktop, Recording& recording)
        : m_desktop(desktop)
        , m_recording(recording) {}

    [[nodiscard]] bool isRunning(const QString& identifier) const override { return m_desktop.isRunning(identifier); }

    void activate(const QString& identifier) override { m_desktop.activate(identifier); }

    void activateSelf() override { m_desktop.activateSelf(); }

    [[nodiscard]] std::optional<QString> applicationPath(const QString& identifier) const override {
        return m_desktop.applicationPath(identifier);
    }

    [[nodiscard]] QCoro::Task<void> openApplication(QString path) override {
        const double begin = m_recording.now();
        co_await m_desktop.openApplication(path);
        m_recording.add({Span::Kind::tool, path.section(u'/', -1), begin, m_recording.now()});
    }

    bool openURL(const URL& url) override { return m_desktop.openURL(url); }

    [[nodiscard]] std::vector<Screen> screens() const override { return m_desktop.screens(); }

    [[nodiscard]] std::optional<Screen> mainScreen() const override { return m_desktop.mainScreen(); }

    [[nodiscard]] OperatingSystemVersion operatingSystemVersion() const override {
        return m_desktop.operatingSystemVersion();
    }

private:
    Desktop& m_desktop;
    Recording& m_recording;
};

class RecordedPlatform final : public Platform {
public:
    explicit RecordedPlatform(std::unique_ptr<Platform> platform)
        : m_platform(std::move(platform)) {}

    [[nodiscard]] QCoro::Task<void> untilReady() override { return m_platform->untilReady(); }

    [[nodiscard]] AccessibilityClient& accessibility() override { return m_accessibility; }

    [[nodiscard]] Desktop& desktop() override { return m_desktop; }

    [[nodiscard]] Clock& clock() override { return m_clock; }

    [[nodiscard]] PreferencesStore& preferences() override { return m_platform->preferences(); }

    [[nodiscard]] PlaceSearch& placeSearch() override { return m_platform->placeSearch(); }

    [[nodiscard]] std::unique_ptr<MapSurface> makeMapSurface(QWidget& parent) override {
        return m_platform->makeMapSurface(parent);
    }

    [[nodiscard]] std::unique_ptr<CommandRunning> makeCommandRunner() override {
        return std::make_unique<RecordedRunner>(m_platform->makeCommandRunner(), m_clock.recording());
    }

    [[nodiscard]] std::shared_ptr<ControlWindow> makeControlWindow(QWidget& window) override {
        return m_platform->makeControlWindow(window);
    }

    [[nodiscard]] Recording& recording() { return m_clock.recording(); }

private:
    std::unique_ptr<Platform> m_platform;
    RecordedClock m_clock{m_platform->clock()};
    RecordedAccessibility m_accessibility{m_platform->accessibility(), m_clock.recording()};
    RecordedDesktop m_desktop{m_platform->desktop(), m_clock.recording()};
};

/// A phase and when it began, as the program reports it.
struct Phase {
    QString name;
    double begin;
};

std::vector<Phase> reportedPhases(const QByteArray& report) {
    std::vector<Phase> phases;
    for (const QByteArray& line : report.split('\n')) {
        const qsizetype unit = line.indexOf(" s  ");
        // What stands further in is a status, not a phase.
        if (unit > 0 && line.size() > unit + 4 && line.at(unit + 4) != ' ')
            phases.push_back({QString::fromUtf8(line.mid(unit + 4)), line.first(unit).trimmed().toDouble()});
    }
    return phases;
}

/// Where the sample page is served while the process lives.
QString serve(QProcess& server) {
    server.start(QStringLiteral(CORVANTA_LAB_PROGRAMS "/SampleServer"), {u"--until-stdin-closes"_s});
    while (!server.canReadLine()) {
        if (!server.waitForReadyRead(10'000)) {
            std::fputs("the sample page's server did not start\n", stderr);
            std::exit(70);
        }
    }
    return QString::fromUtf8(server.readLine()).trimmed();
}

} // namespace

int main(int argc, char** argv) {
    qputenv("CORVANTA_LAB_DIR", CORVANTA_LAB_PROGRAMS);
    const QTemporaryDir folder;
    qputenv("CORVANTA_LAB_HOME", QFile::encodeName(folder.filePath(u"lab"_s)));
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    QProcess server;
    CommandLine line;
    line.url = serve(server);
    line.device = u"iPhone 16 Pro"_s;
    line.start = true;
    line.screenshot = folder.filePath(u"desktop.png"_s);

    auto owned = makePlatform();
    (void)owned->accessibility().requestTrust();
    // The program's report of its phases goes to standard output.
    const QByteArray reportPath = QFile::encodeName(folder.filePath(u"report.txt"_s));
    std::fflush(stdout);
    const int output = dup(STDOUT_FILENO);
    if (!std::freopen(reportPath.constData(), "w", stdout))
        return 70;
    auto recorded = std::make_unique<RecordedPlatform>(std::move(owned));
    Recording& recording = recorded->recording();
    prepareAppearance();
    int status = 70;
    std::vector<Span> spans;
    Recording copy(recorded->clock());
    {
        CorvantaApp app(std::move(recorded), line);
        applyAppearance(application);
        app.start();
        status = QApplication::exec();
        recording.copyTo(copy);
        std::fflush(stdout);
        dup2(output, STDOUT_FILENO);
    }
    QFile reportFile(QFile::decodeName(reportPath));
    if (status != 0 || !reportFile.open(QIODevice::ReadOnly)) {
        std::fputs("the workspace did not start\n", stderr);
        return 70;
    }

    const std::vector<Phase> phases = reportedPhases(reportFile.readAll());
    std::printf("%-22s %8s %8s %10s %9s %10s %9s %9s %13s %11s\n", "phase", "at s", "lasts s", "pauses s", "tools s",
                "answers s", "rest s", "queue s", "main thread s", "processor s");
    double start = 0;
    double end = 0;
    double rest = 0;
    for (std::size_t at = 0; at + 1 < phases.size() && phases[at].name != u"Running"; ++at) {
        const double from = phases[at].begin;
        const double to = phases[at + 1].begin;
        if (start == 0)
            start = from;
        end = to;
        const double pauses = copy.total(Span::Kind::pause, from, to);
        const double tools = copy.total(Span::Kind::tool, from, to);
        const double answers = copy.total(Span::Kind::answer, from, to);
        const double own = to - from - copy.waited(from, to);
        const Recording::Use before = copy.used(from);
        const Recording::Use after = copy.used(to);
        rest += own;
        std::printf("%-22s %8.2f %8.2f %10.2f %9.2f %10.3f %9.3f %9.3f %13.3f %11.3f\n",
                    qUtf8Printable(phases[at].name), from, to - from, pauses, tools, answers, own,
                    after.queued - before.queued, after.mainThread - before.mainThread, after.process - before.process);
    }
    std::puts("\ntools, in the order in which they ended:");
    for (const Span& span : copy.spans()) {
        if (span.kind == Span::Kind::tool && span.begin >= start && span.end <= end)
            std::printf("%8.2f s for %6.2f s  %s\n", span.begin, span.end - span.begin, qUtf8Printable(span.what));
    }
    const double share = rest / (end - start);
    std::printf("\nCorvanta's own part below %.0f %% of %.2f s: %s (%.3f s, %.1f %%)\n", 100 * goal, end - start,
                verdict(share < goal), rest, 100 * share);
    server.closeWriteChannel();
    server.waitForFinished();
    return share < goal ? 0 : 1;
}
