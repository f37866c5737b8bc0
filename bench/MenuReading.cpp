// SPDX-License-Identifier: MIT
// What reading a Develop menu of many pages takes over the accessibility bus, beside a walk with libatspi that asks for
// each attribute by itself; for how long one look of the Safari driver holds the main thread; and the same while the
// other program hangs. Exits with 1 when a goal is missed.
#include "Platform.h"
#include "safari/AXSupport.h"
#include "safari/SafariAXInspector.h"
#include "support/LocalizedError.h"
#include "support/Measuring.h"
#include "support/TaskScope.h"

#include <QApplication>
#include <QEventLoop>
#include <QProcess>
#include <QTimer>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <optional>
#include <thread>

namespace {

using namespace corvanta;
using namespace corvanta::bench;
using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

const QString fixtureName = u"dev.corvanta.MenuOfPages"_s;
const QString deviceName = u"iPhone 16 Pro"_s;

constexpr int goalPages = 500;
constexpr double goalRatio = 5;
constexpr double goalExponent = 1.1;
constexpr double goalHold = 8;
constexpr double goalHang = 80;
/// What the system's own clock and one last look may add to a wait that has its limit.
constexpr double hangSlack = 2;
constexpr int readings = 15;
constexpr int looks = 7;
/// Longer than what was read before counts as recent.
constexpr auto staleness = 250ms;
constexpr auto patience = 20s;
/// The driver's own pauses in one look.
constexpr double pauses = 240;

[[noreturn]] void fail(const char* what) {
    std::fprintf(stderr, "%s\n", what);
    std::exit(70);
}

bool turnUntil(const std::function<bool()>& isDone) {
    for (const SteadyTime start = std::chrono::steady_clock::now();
         std::chrono::steady_clock::now() - start < patience;) {
        if (isDone())
            return true;
        QEventLoop loop;
        QTimer::singleShot(20ms, &loop, &QEventLoop::quit);
        loop.exec();
    }
    return isDone();
}

/// The program whose menu is read.
class PagesProgram {
public:
    explicit PagesProgram(int pages) {
        m_process.start(QStringLiteral(CORVANTA_MENU_FIXTURE), {fixtureName});
        m_process.write("fill " + QByteArray::number(pages) + '\n');
        while (!m_process.readAllStandardOutput().contains("ok")) {
            if (!m_process.waitForReadyRead(10'000))
                fail("the program with the menu did not start");
        }
    }

    PagesProgram(const PagesProgram&) = delete;
    PagesProgram& operator=(const PagesProgram&) = delete;

    ~PagesProgram() {
        m_process.kill();
        m_process.waitForFinished();
    }

    void sendSignal(int number) const { kill(static_cast<pid_t>(m_process.processId()), number); }

private:
    QProcess m_process;
};

/// The longest time for which the main thread did one thing. What other programs took of that, which had the processors
/// meanwhile, is taken off.
class HoldWatch {
public:
    void reset() { m_longest = 0; }

    [[nodiscard]] double longest() const { return m_longest; }

    template<class Work>
    auto watch(const Work& work) {
        const double queued = queuedMilliseconds();
        const SteadyTime start = std::chrono::steady_clock::now();
        auto result = work();
        m_longest = std::max(m_longest, millisecondsSince(start) - (queuedMilliseconds() - queued));
        return result;
    }

private:
    double m_longest = 0;
};

/// Watches how long each event takes. What the event loop tells of its waiting leaves out timers and sockets.
class WatchedApplication final : public QApplication {
public:
    WatchedApplication(int& argc, char** argv, HoldWatch& watch)
        : QApplication(argc, argv)
        , m_watch(watch) {}

    bool notify(QObject* receiver, QEvent* event) override {
        if (m_isInEvent)
            return QApplication::notify(receiver, event);
        m_isInEvent = true;
        const bool result = m_watch.watch([&] { return QApplication::notify(receiver, event); });
        m_isInEvent = false;
        return result;
    }

private:
    HoldWatch& m_watch;
    bool m_isInEvent = false;
};

int walk(AccessibilityClient& client, const AccessibilityElement& element) {
    (void)client.attribute(element, u"AXTitle");
    (void)client.attribute(element, u"AXDescription");
    (void)client.attribute(element, u"AXEnabled");
    int count = 1;
    for (const AccessibilityElement& child : AXSupport::children(client, element))
        count += walk(client, child);
    return count;
}

/// How many elements the menu bar has, and zero when it cannot be read.
int readByCorvanta(AccessibilityClient& client) {
    const auto application = AXSupport::application(client, fixtureName);
    const auto menuBar = application ? AXSupport::element(client, *application, u"AXMenuBar") : std::nullopt;
    return menuBar ? walk(client, *menuBar) : 0;
}

/// The walk with libatspi, in a process of its own: in one with Qt's bus, the library waits for itself.
class PlainWalk {
public:
    PlainWalk() {
        // What libatspi has once read of a program that was still registering itself, it keeps.
        for (int attempt = 0; attempt < attempts; ++attempt) {
            m_process.start(QStringLiteral(CORVANTA_PLAIN_WALK), {fixtureName});
            if (answer() == "ready")
                return;
            m_process.kill();
            m_process.waitForFinished();
        }
        fail("libatspi does not find the menu");
    }

    PlainWalk(const PlainWalk&) = delete;
    PlainWalk& operator=(const PlainWalk&) = delete;

    ~PlainWalk() {
        m_process.closeWriteChannel();
        m_process.waitForFinished();
    }

    /// Milliseconds of one walk over at least that many objects.
    double read(int least) {
        m_process.write("read\n");
        const QByteArrayList result = answer().split(' ');
        if (result.size() != 2 || result.first().toInt() < least)
            fail("libatspi did not read all of the menu");
        return result.last().toDouble();
    }

private:
    static constexpr int attempts = 10;

    QByteArray answer() {
        while (!m_process.canReadLine()) {
            if (!m_process.waitForReadyRead(20'000))
                return {};
        }
        return m_process.readLine().trimmed();
    }

    QProcess m_process;
};

/// One look of the driver; what `pages` points to becomes how many it found, and -1 when it failed.
QCoro::Task<void> look(SafariAXInspector* inspector, std::optional<int>* pages) {
    int found = -1;
    try {
        found = static_cast<int>((co_await inspector->snapshotTargets(deviceName)).size());
    } catch (const LocalizedError& error) {
        std::fprintf(stderr, "%s\n", qUtf8Printable(error.errorDescription()));
    } catch (...) {
        std::fputs("the driver failed\n", stderr);
    }
    *pages = found;
}

struct Look {
    double milliseconds;
    int pages;
};

Look timedLook(SafariAXInspector& inspector, HoldWatch& watch) {
    TaskScope tasks;
    std::optional<int> pages;
    const SteadyTime start = std::chrono::steady_clock::now();
    watch.watch([&] {
        tasks.start(look(&inspector, &pages));
        return true;
    });
    (void)turnUntil([&pages] { return pages.has_value(); });
    return {millisecondsSince(start), pages.value_or(-1)};
}

} // namespace

int main(int argc, char** argv) {
    // Without windows of its own it is not on the bus itself, where it could not answer while it waits.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    HoldWatch watch;
    const WatchedApplication application(argc, argv, watch);
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    const auto platform = makePlatform();
    AccessibilityClient& client = platform->accessibility();
    if (!turnUntil([&client] { return client.requestTrust(); }))
        fail("the accessibility bus does not answer");
    SafariAXInspector inspector(client, platform->desktop(), platform->clock(), fixtureName);

    std::printf("%6s %9s | %12s %9s %9s | %12s %9s | %9s %12s %12s\n", "pages", "elements", "Corvanta ms", "least",
                "most", "libatspi ms", "ratio", "looks", "look ms *", "held ms **");
    std::vector<Sample> growth;
    bool isQuick = false;
    double longestHold = 0;
    // What is read is to be the new program's menu.
    const auto untilGone = [&client] {
        if (!turnUntil([&client] { return readByCorvanta(client) == 0; }))
            fail("the menu of a program that has ended can still be read");
    };
    for (const int pages : {50, 100, 200, 500, 1000}) {
        untilGone();
        const PagesProgram program(pages);
        if (!turnUntil([&] { return readByCorvanta(client) > pages; }))
            fail("Corvanta does not find the menu");
        PlainWalk plainWalk;
        std::vector<double> ours;
        std::vector<double> theirs;
        std::vector<double> ratios;
        int elements = 0;
        for (int reading = 0; reading < readings; ++reading) {
            turnUntil([&, begin = std::chrono::steady_clock::now()] {
                return std::chrono::steady_clock::now() - begin > staleness;
            });
            const SteadyTime start = std::chrono::steady_clock::now();
            const int read = readByCorvanta(client);
            const double mine = millisecondsSince(start);
            if (read < pages)
                fail("Corvanta did not read all of the menu");
            elements = read;
            const double plain = plainWalk.read(pages);
            ours.push_back(mine);
            theirs.push_back(plain);
            ratios.push_back(plain / mine);
        }
        std::vector<double> lookTimes;
        std::vector<double> holds;
        for (int number = 0; number < looks; ++number) {
            watch.reset();
            const Look seen = timedLook(inspector, watch);
            if (seen.pages < pages) {
                std::fprintf(stderr, "%d of %d pages\n", seen.pages, pages);
                fail("the driver did not find all pages");
            }
            lookTimes.push_back(seen.milliseconds - pauses);
            holds.push_back(watch.longest());
        }
        std::printf("%6d %9d | %12.2f %9.2f %9.2f | %12.2f %9.1f | %9d %12.2f %12.2f\n", pages, elements, median(ours),
                    quantile(ours, 0), quantile(ours, 1), median(theirs), median(ratios), looks, median(lookTimes),
                    quantile(holds, 1));
        growth.push_back({static_cast<double>(pages), median(ours)});
        if (pages <= goalPages)
            longestHold = std::max(longestHold, quantile(holds, 1));
        if (pages == goalPages)
            isQuick = median(ratios) >= goalRatio;
    }
    std::puts(" * median, above the driver's own pauses    ** the longest of all looks, on a processor of its own");
    untilGone();

    const PagesProgram program(goalPages);
    if (!turnUntil([&] { return readByCorvanta(client) > goalPages; }))
        fail("Corvanta does not find the menu");
    program.sendSignal(SIGSTOP);
    std::this_thread::sleep_for(staleness);
    std::printf("\nwhile the other program hangs, look by look: held ms, pages\n");
    double hangHold = 0;
    for (int number = 0; number < looks; ++number) {
        watch.reset();
        const Look seen = timedLook(inspector, watch);
        hangHold = std::max(hangHold, watch.longest());
        std::printf("%12.2f %6d\n", watch.longest(), seen.pages);
    }
    program.sendSignal(SIGCONT);

    const double exponent = growthExponent(growth);
    const bool isLinear = exponent <= goalExponent;
    const bool isShort = longestHold <= goalHold;
    // A look that did not wait at all has found nothing to wait for.
    const bool isBounded = hangHold > 0.1 && hangHold <= goalHang + hangSlack;
    std::printf("\nat least %.0f times as fast at %d pages: %s\n", goalRatio, goalPages, verdict(isQuick));
    std::printf("grows with the pages to the power of %.2f, at most %.1f: %s\n", exponent, goalExponent,
                verdict(isLinear));
    std::printf("main thread never held for longer than %.0f ms up to %d pages: %s (%.2f ms)\n", goalHold, goalPages,
                verdict(isShort), longestHold);
    std::printf("and for at most %.0f ms when the other program hangs: %s (%.2f ms)\n", goalHang, verdict(isBounded),
                hangHold);
    return isQuick && isLinear && isShort && isBounded ? 0 : 1;
}
