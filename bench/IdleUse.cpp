// SPDX-License-Identifier: MIT
// What Corvanta uses while its workspace runs on the device lab and nobody does anything: processor time, wake-ups, and
// how its memory changes. Exits with 1 when a goal is missed.
//
// usage: IdleUse [--minutes N]   (35)
#include "support/Measuring.h"
#include "support/ProcessFigures.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <poll.h>
#include <string>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace {

using namespace corvanta::bench;
using namespace std::chrono_literals;

constexpr double goalShare = 0.5;
constexpr double goalGrowth = 1024;
constexpr double goalMinutes = 30;
constexpr double settlingMinutes = 5;
constexpr auto startLimit = 90s;
constexpr auto interval = 10s;

struct Child {
    pid_t process = 0;
    int output = -1;
    int input = -1;
};

/// A program with pipes to and from it.
Child start(std::vector<std::string> arguments) {
    int output[2];
    int input[2];
    if (pipe2(output, O_CLOEXEC) != 0 || pipe2(input, O_CLOEXEC) != 0)
        std::exit(71);
    const pid_t process = fork();
    if (process == 0) {
        dup2(output[1], STDOUT_FILENO);
        dup2(input[0], STDIN_FILENO);
        std::vector<char*> pointers;
        pointers.reserve(arguments.size() + 1);
        for (std::string& argument : arguments)
            pointers.push_back(argument.data());
        pointers.push_back(nullptr);
        execv(pointers.front(), pointers.data());
        _exit(127);
    }
    close(output[1]);
    close(input[0]);
    return {process, output[0], input[1]};
}

/// What the child has printed up to and with a line that holds `wanted`; exits when that does not come in time.
std::string readUntil(const Child& child, const std::string& wanted) {
    std::string read;
    for (const SteadyTime begin = std::chrono::steady_clock::now();
         std::chrono::steady_clock::now() - begin < startLimit;) {
        pollfd stream{child.output, POLLIN, 0};
        char buffer[4096];
        if (poll(&stream, 1, 100) <= 0)
            continue;
        const ssize_t count = ::read(child.output, buffer, sizeof buffer);
        if (count <= 0)
            break;
        read.append(buffer, static_cast<std::size_t>(count));
        if (const std::size_t found = read.find(wanted);
            found != std::string::npos && read.find('\n', found) != std::string::npos)
            return read;
    }
    std::fprintf(stderr, "it did not come to \"%s\":\n%s", wanted.c_str(), read.c_str());
    std::exit(70);
}

struct Look {
    double minutes;
    ProcessFigures figures;
};

/// Kilobytes a minute: the slope of the line of best fit.
double growthPerMinute(const std::vector<Look>& looks) {
    double minutes = 0;
    double memory = 0;
    for (const Look& look : looks) {
        minutes += look.minutes;
        memory += static_cast<double>(look.figures.proportionalKilobytes);
    }
    const auto count = static_cast<double>(looks.size());
    double together = 0;
    double spread = 0;
    for (const Look& look : looks) {
        const double distance = look.minutes - minutes / count;
        together += distance * (static_cast<double>(look.figures.proportionalKilobytes) - memory / count);
        spread += distance * distance;
    }
    return spread > 0 ? together / spread : 0;
}

} // namespace

int main(int argc, char** argv) {
    double minutes = goalMinutes + settlingMinutes;
    for (int at = 1; at + 1 < argc; ++at) {
        if (std::strcmp(argv[at], "--minutes") == 0)
            minutes = std::atof(argv[at + 1]);
    }
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    const std::string lab = std::filesystem::temp_directory_path() / ("idle-use-" + std::to_string(getpid()));
    setenv("CORVANTA_LAB_HOME", lab.c_str(), 1);
    const Child server = start({CORVANTA_LAB_PROGRAMS "/SampleServer", "--until-stdin-closes"});
    std::string address = readUntil(server, "http");
    address.resize(address.find('\n'));
    const Child corvanta = start({CORVANTA_PROGRAM, "--url", address, "--device", "iPhone 16 Pro", "--start"});
    (void)readUntil(corvanta, "Workspace running");

    std::printf("%8s %12s %14s %12s %12s\n", "minutes", "cpu %", "wake-ups / s", "PSS KiB", "own KiB");
    const SteadyTime begin = std::chrono::steady_clock::now();
    const auto now = [&begin] { return millisecondsSince(begin) / 60'000; };
    Look last{now(), ProcessFigures::of(corvanta.process)};
    const Look first = last;
    // A run that is shorter than the time to settle is judged by its second half.
    const double settled = std::min(settlingMinutes, minutes / 2);
    std::vector<Look> looks;
    for (double nextRow = 1; now() < minutes;) {
        std::this_thread::sleep_for(interval);
        const Look look{now(), ProcessFigures::of(corvanta.process)};
        if (look.minutes >= settled)
            looks.push_back(look);
        if (look.minutes >= nextRow) {
            const double seconds = (look.minutes - last.minutes) * 60;
            std::printf("%8.1f %12.3f %14.1f %12ld %12ld\n", look.minutes,
                        (look.figures.processorMilliseconds - last.figures.processorMilliseconds) / seconds / 10,
                        static_cast<double>(look.figures.sleeps - last.figures.sleeps) / seconds,
                        look.figures.proportionalKilobytes, look.figures.anonymousKilobytes);
            last = look;
            nextRow = std::floor(look.minutes) + 1;
        }
        if (waitpid(corvanta.process, nullptr, WNOHANG) == corvanta.process) {
            std::fputs("Corvanta ended by itself\n", stderr);
            return 70;
        }
    }
    const ProcessFigures final = ProcessFigures::of(corvanta.process);
    const double seconds = (now() - first.minutes) * 60;
    const double share = (final.processorMilliseconds - first.figures.processorMilliseconds) / seconds / 10;
    const double growth = growthPerMinute(looks) * goalMinutes;
    std::printf("\n%.1f minutes with a running workspace, %.1f wake-ups a second\n", seconds / 60,
                static_cast<double>(final.sleeps - first.figures.sleeps) / seconds);
    std::printf("below %.1f %% of one core: %s (%.3f %%)\n", goalShare, verdict(share < goalShare), share);
    std::printf("proportional memory grows by less than %.0f KiB in %.0f minutes after the first %.0f: %s (%.0f KiB)\n",
                goalGrowth, goalMinutes, settled, verdict(growth < goalGrowth), growth);

    kill(corvanta.process, SIGTERM);
    waitpid(corvanta.process, nullptr, 0);
    close(server.input);
    waitpid(server.process, nullptr, 0);
    std::error_code error;
    std::filesystem::remove_all(lab, error);
    return share < goalShare && growth < goalGrowth ? 0 : 1;
}
