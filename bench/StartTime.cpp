// SPDX-License-Identifier: MIT
// How long Corvanta takes from its start to its first painted window, and until that window answers, beside a bare
// Qt Widgets window of the same size. Both are started in turn and watched in the same way, from outside: the X server
// tells when a program has drawn into its window, and the program's answer to the window manager's question whether it
// is alive tells when its event loop runs. Exits with 1 when a goal is missed.
//
// Private memory tells of the other programs as well: a page of a library counts as private as long as no other program
// on the machine has loaded that library. So all that is resident is printed beside it.
//
// usage: StartTime [--runs N]
#include "support/Measuring.h"
#include "support/ProcessFigures.h"

#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/extensions/Xdamage.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <optional>
#include <poll.h>
#include <spawn.h>
#include <string>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace {

using namespace corvanta::bench;
using namespace std::chrono_literals;

constexpr double goalTime = 2.5;
constexpr double goalProcessor = 30;
constexpr double goalMemory = 2.5;
constexpr auto startLimit = 20s;
constexpr auto endLimit = 5s;
constexpr auto rest = 5s;
constexpr int restingRuns = 3;
/// Less than that of a window is a part of it, and not its first picture.
constexpr double wholePicture = 0.6;

struct Start {
    double paintedMilliseconds;
    double answeredMilliseconds;
    ProcessFigures figures;
};

struct Program {
    std::string name;
    std::string path;
};

/// A program from its start to its end.
class Child {
public:
    explicit Child(const std::string& path) {
        std::string name = path;
        char* const arguments[] = {name.data(), nullptr};
        if (posix_spawn(&m_process, path.c_str(), nullptr, nullptr, arguments, environ) != 0) {
            std::fprintf(stderr, "%s could not be started\n", path.c_str());
            std::exit(69);
        }
    }

    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;

    ~Child() {
        kill(m_process, SIGTERM);
        for (const SteadyTime begin = std::chrono::steady_clock::now();
             std::chrono::steady_clock::now() - begin < endLimit; std::this_thread::sleep_for(5ms)) {
            if (waitpid(m_process, nullptr, WNOHANG) == m_process)
                return;
        }
        kill(m_process, SIGKILL);
        waitpid(m_process, nullptr, 0);
    }

    [[nodiscard]] pid_t process() const { return m_process; }

private:
    pid_t m_process = 0;
};

/// Sees the windows that programs make and what is drawn into them.
class Watcher {
public:
    Watcher() {
        int major = 0;
        int minor = 0;
        if (!m_display || !XDamageQueryExtension(m_display, &m_damageBase, &m_error) ||
            !XDamageQueryVersion(m_display, &major, &minor)) {
            std::fputs("an X server with the damage extension is needed\n", stderr);
            std::exit(69);
        }
        // A window may be gone before it is asked about.
        XSetErrorHandler([](Display*, XErrorEvent*) { return 0; });
        XSelectInput(m_display, m_root, SubstructureNotifyMask | StructureNotifyMask);
        XSync(m_display, False);
    }

    Watcher(const Watcher&) = delete;
    Watcher& operator=(const Watcher&) = delete;

    ~Watcher() { XCloseDisplay(m_display); }

    /// Starts the program and waits for its window. `andThen` sees it while it still runs.
    template<class Continuation>
    std::optional<Start> start(const std::string& path, const Continuation& andThen) {
        forget();
        const SteadyTime begin = std::chrono::steady_clock::now();
        const Child child(path);
        Start start{};
        while (std::chrono::steady_clock::now() - begin < startLimit) {
            if (XPending(m_display) == 0) {
                pollfd connection{ConnectionNumber(m_display), POLLIN, 0};
                poll(&connection, 1, 100);
                continue;
            }
            XEvent event;
            XNextEvent(m_display, &event);
            if (start.paintedMilliseconds == 0 && isFirstPicture(event, child.process())) {
                start.paintedMilliseconds = millisecondsSince(begin);
                askWhetherAlive();
            } else if (start.paintedMilliseconds != 0 && isAnswer(event)) {
                start.answeredMilliseconds = millisecondsSince(begin);
                start.figures = ProcessFigures::of(child.process());
                andThen(child.process());
                return start;
            }
        }
        return std::nullopt;
    }

private:
    struct Extent {
        int width;
        int height;
        bool isMapped;
    };

    void forget() {
        XSync(m_display, True);
        m_windows.clear();
        m_painted = None;
    }

    bool isFirstPicture(const XEvent& event, pid_t process) {
        switch (event.type) {
        case CreateNotify:
            XDamageCreate(m_display, event.xcreatewindow.window, XDamageReportRawRectangles);
            XSelectInput(m_display, event.xcreatewindow.window, StructureNotifyMask);
            m_windows[event.xcreatewindow.window] = {event.xcreatewindow.width, event.xcreatewindow.height, false};
            return false;
        case ConfigureNotify:
            if (const auto known = m_windows.find(event.xconfigure.window); known != m_windows.end()) {
                known->second.width = event.xconfigure.width;
                known->second.height = event.xconfigure.height;
            }
            return false;
        case MapNotify:
            if (const auto known = m_windows.find(event.xmap.window); known != m_windows.end())
                known->second.isMapped = true;
            return false;
        default:
            break;
        }
        if (event.type != m_damageBase + XDamageNotify)
            return false;
        XDamageNotifyEvent damage;
        std::memcpy(&damage, &event, sizeof damage);
        const auto known = m_windows.find(damage.drawable);
        if (known == m_windows.end() || !known->second.isMapped || known->second.width < 200)
            return false;
        const double drawn = static_cast<double>(damage.area.width) * damage.area.height;
        const double whole = static_cast<double>(known->second.width) * known->second.height;
        if (drawn < wholePicture * whole || ownerOf(damage.drawable) != process)
            return false;
        m_painted = damage.drawable;
        return true;
    }

    /// The window manager's frames are windows too.
    pid_t ownerOf(Window window) {
        Atom type = None;
        int format = 0;
        unsigned long count = 0;
        unsigned long left = 0;
        unsigned char* data = nullptr;
        XGetWindowProperty(m_display, window, XInternAtom(m_display, "_NET_WM_PID", False), 0, 1, False, XA_CARDINAL,
                           &type, &format, &count, &left, &data);
        const pid_t owner = count == 1 ? static_cast<pid_t>(*reinterpret_cast<unsigned long*>(data)) : 0;
        if (data != nullptr)
            XFree(data);
        return owner;
    }

    void askWhetherAlive() {
        XEvent question{};
        question.xclient.type = ClientMessage;
        question.xclient.window = m_painted;
        question.xclient.message_type = XInternAtom(m_display, "WM_PROTOCOLS", False);
        question.xclient.format = 32;
        question.xclient.data.l[0] = static_cast<long>(m_ping);
        question.xclient.data.l[1] = CurrentTime;
        question.xclient.data.l[2] = static_cast<long>(m_painted);
        XSendEvent(m_display, m_painted, False, NoEventMask, &question);
        XFlush(m_display);
    }

    [[nodiscard]] bool isAnswer(const XEvent& event) const {
        return event.type == ClientMessage && event.xclient.data.l[0] == static_cast<long>(m_ping) &&
               event.xclient.data.l[2] == static_cast<long>(m_painted);
    }

    Display* m_display = XOpenDisplay(nullptr);
    Window m_root = DefaultRootWindow(m_display);
    Atom m_ping = XInternAtom(m_display, "_NET_WM_PING", False);
    int m_damageBase = 0;
    int m_error = 0;
    std::map<Window, Extent> m_windows;
    Window m_painted = None;
};

struct Series {
    Program program;
    std::vector<double> painted;
    std::vector<double> answered;
    std::vector<double> processor;
    std::vector<double> resident;
    std::vector<double> memory;
    std::vector<double> anonymous;
    std::vector<double> restingResident;
    std::vector<double> restingMemory;
    std::vector<double> restingAnonymous;
};

void measure(Watcher& watcher, Series& series, bool isCounted) {
    const auto start = watcher.start(series.program.path, [](pid_t) {});
    if (!start) {
        std::fprintf(stderr, "%s showed no window\n", series.program.path.c_str());
        std::exit(70);
    }
    if (!isCounted)
        return;
    series.painted.push_back(start->paintedMilliseconds);
    series.answered.push_back(start->answeredMilliseconds);
    series.processor.push_back(start->figures.processorMilliseconds);
    series.resident.push_back(static_cast<double>(start->figures.residentKilobytes));
    series.memory.push_back(static_cast<double>(start->figures.privateKilobytes));
    series.anonymous.push_back(static_cast<double>(start->figures.anonymousKilobytes));
}

void measureAtRest(Watcher& watcher, Series& series) {
    (void)watcher.start(series.program.path, [&series](pid_t process) {
        std::this_thread::sleep_for(rest);
        const ProcessFigures figures = ProcessFigures::of(process);
        series.restingResident.push_back(static_cast<double>(figures.residentKilobytes));
        series.restingMemory.push_back(static_cast<double>(figures.privateKilobytes));
        series.restingAnonymous.push_back(static_cast<double>(figures.anonymousKilobytes));
    });
}

/// Prints one line and answers the ratio of the medians.
double compare(const char* what, const std::vector<double>& ours, const std::vector<double>& bare) {
    const double ratio = median(ours) / median(bare);
    std::printf("%-38s %10.1f %10.1f %10.1f | %10.1f %10.1f %10.1f | %6.2f\n", what, median(ours), quantile(ours, 0),
                quantile(ours, 1), median(bare), quantile(bare, 0), quantile(bare, 1), ratio);
    return ratio;
}

} // namespace

int main(int argc, char** argv) {
    int runs = 21;
    for (int at = 1; at + 1 < argc; ++at) {
        if (std::strcmp(argv[at], "--runs") == 0)
            runs = std::max(1, std::atoi(argv[at + 1]));
    }
    Watcher watcher;
    Series ours{{"Corvanta", CORVANTA_PROGRAM}, {}, {}, {}, {}, {}, {}, {}, {}, {}};
    Series bare{{"bare window", CORVANTA_BARE_WINDOW}, {}, {}, {}, {}, {}, {}, {}, {}, {}};
    // The first start of each reads its files from the disk.
    for (int run = -1; run < runs; ++run) {
        measure(watcher, bare, run >= 0);
        measure(watcher, ours, run >= 0);
    }
    for (int run = 0; run < restingRuns; ++run) {
        measureAtRest(watcher, bare);
        measureAtRest(watcher, ours);
    }

    std::printf(
        "%d starts of each, in turn           Corvanta: median, least, most    | bare window                    "
        "  | ratio\n",
        runs);
    const double painted = compare("first painted window, ms", ours.painted, bare.painted);
    const double answered = compare("window answers, ms", ours.answered, bare.answered);
    compare("processor time until then, ms", ours.processor, bare.processor);
    compare("resident memory then, KiB", ours.resident, bare.resident);
    const double memory = compare("  of it private, KiB", ours.memory, bare.memory);
    compare("  of it anonymous, KiB", ours.anonymous, bare.anonymous);
    compare("resident memory 5 s later, KiB", ours.restingResident, bare.restingResident);
    const double resting = compare("  of it private, KiB", ours.restingMemory, bare.restingMemory);
    compare("  of it anonymous, KiB", ours.restingAnonymous, bare.restingAnonymous);
    const double processor = median(ours.processor) - median(bare.processor);
    std::printf("\nfirst painted window at most %.1f times the bare one: %s (%.2f)\n", goalTime,
                verdict(painted <= goalTime), painted);
    std::printf("the same until it answers: %s (%.2f)\n", verdict(answered <= goalTime), answered);
    std::printf("processor time at most %.0f ms more: %s (%.1f ms)\n", goalProcessor,
                verdict(processor <= goalProcessor), processor);
    std::printf("private memory at most %.1f times: %s (%.2f, later %.2f)\n", goalMemory,
                verdict(memory <= goalMemory && resting <= goalMemory), memory, resting);
    const bool isGood = painted <= goalTime && answered <= goalTime && processor <= goalProcessor &&
                        memory <= goalMemory && resting <= goalMemory;
    return isGood ? 0 : 1;
}
