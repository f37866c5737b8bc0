// SPDX-License-Identifier: MIT
#include "EndedRun.h"

#include <QFile>

#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/wait.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <stdexcept>
#include <unistd.h>
#include <vector>

namespace corvanta {

namespace {

/// Without write, which also wakes threads and so comes in numbers that differ: the moments around it are those after
/// an open and before a sync.
constexpr std::array changingCalls{
    SYS_openat,   SYS_fsync,     SYS_flock,    SYS_mkdirat,   SYS_unlinkat,
    SYS_renameat, SYS_renameat2, SYS_fchmodat, SYS_ftruncate,
#ifdef SYS_rename
    SYS_rename,   SYS_mkdir,     SYS_unlink,   SYS_rmdir,     SYS_chmod,
#endif
};

std::vector<char*> pointers(QList<QByteArray>& words) {
    std::vector<char*> result;
    std::ranges::transform(words, std::back_inserter(result), [](QByteArray& word) { return word.data(); });
    result.push_back(nullptr);
    return result;
}

[[noreturn]] void becomeProgram(char** arguments, char** environment) {
    const int nothing = open("/dev/null", O_RDWR);
    if (nothing < 0) {
        _exit(127);
    }
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        dup2(nothing, stream);
    }
    ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
    execve(arguments[0], arguments, environment);
    _exit(127);
}

/// Whether the stopped program is about to make a change, or has just made one.
bool isAtChange(pid_t process, std::uint8_t wanted, bool& wasChange) {
    __ptrace_syscall_info info{};
    if (ptrace(static_cast<__ptrace_request>(PTRACE_GET_SYSCALL_INFO), process, sizeof info, &info) <= 0) {
        return false;
    }
    if (info.op == PTRACE_SYSCALL_INFO_ENTRY) {
        const auto call = static_cast<long>(info.entry.nr);
        wasChange = std::ranges::find(changingCalls, call) != changingCalls.end();
        if (call == SYS_openat) {
            wasChange = (info.entry.args[2] & (O_CREAT | O_TRUNC)) != 0;
        }
    }
    return wasChange && info.op == wanted;
}

} // namespace

EndedRun runAndEnd(const QString& program, const QStringList& arguments, const QList<QByteArray>& environment,
                   int change, EndPoint point) {
    QList<QByteArray> words{QFile::encodeName(QFile::decodeName(CORVANTA_LAB_PROGRAMS) + u'/' + program)};
    std::ranges::transform(arguments, std::back_inserter(words), [](const QString& word) { return word.toUtf8(); });
    QList<QByteArray> variables = environment;
    // Built with sanitizers, a program that is traced cannot look for leaks, and says so by its status.
    variables.removeIf([](const QByteArray& variable) { return variable.startsWith("ASAN_OPTIONS="); });
    variables.append("ASAN_OPTIONS=detect_leaks=0");
    const std::vector<char*> argv = pointers(words);
    const std::vector<char*> envp = pointers(variables);
    const pid_t process = fork();
    if (process == 0) {
        becomeProgram(const_cast<char**>(argv.data()), const_cast<char**>(envp.data()));
    }
    int state = 0;
    if (process < 0 || waitpid(process, &state, 0) != process || !WIFSTOPPED(state) ||
        ptrace(PTRACE_SETOPTIONS, process, nullptr, PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL) != 0) {
        throw std::runtime_error(std::string("cannot trace: ") + std::strerror(errno));
    }
    EndedRun run;
    const std::uint8_t wanted = point == EndPoint::beforeIt ? PTRACE_SYSCALL_INFO_ENTRY : PTRACE_SYSCALL_INFO_EXIT;
    bool wasChange = false;
    int signal = 0;
    while (ptrace(PTRACE_SYSCALL, process, nullptr, signal) == 0 && waitpid(process, &state, 0) == process &&
           WIFSTOPPED(state)) {
        const bool isCall = WSTOPSIG(state) == (SIGTRAP | 0x80);
        signal = isCall || WSTOPSIG(state) == SIGTRAP ? 0 : WSTOPSIG(state);
        if (!isCall || !isAtChange(process, wanted, wasChange)) {
            continue;
        }
        ++run.changes;
        if (run.changes == change) {
            kill(process, SIGKILL);
            waitpid(process, &state, 0);
            run.isEnded = true;
            return run;
        }
    }
    run.status = WIFEXITED(state) ? WEXITSTATUS(state) : -1;
    return run;
}

} // namespace corvanta
