// SPDX-License-Identifier: MIT
// Plays every kind of child process. The first argument is the part to play:
//   quiet                       writes nothing and exits with 0
//   write STREAM BYTES          writes that many bytes on "stdout", "stderr" or "both"
//   exit STATUS [TEXT]          writes TEXT on standard error and exits with STATUS
//   raise SIGNAL                ends by that signal
//   echo ARGUMENT...            writes each argument on a line of its own
//   environment NAME            writes the variable's value
//   directory                   writes the working directory
//   cat                         copies standard input to standard output
//   last-words                  writes "out" and "err" and ends by SIGKILL
//   stubborn FILE [LAST]        ignores SIGTERM and runs until FILE exists, then makes LAST
//   leave-child FILE LAST       writes "out" and "err", leaves a child that keeps both streams, and exits with 3; the
//                               child ends once FILE exists, or after ten seconds, and says in LAST which it was
#include <algorithm>
#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <string_view>
#include <unistd.h>
#include <vector>

namespace {

void writeAll(int descriptor, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = ::write(descriptor, bytes.data(), bytes.size());
        if (written <= 0)
            std::_Exit(99);
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
}

void writeMany(std::string_view stream, std::size_t count) {
    const std::string block(64 * 1024, 'x');
    while (count > 0) {
        const std::size_t size = std::min(count, block.size());
        if (stream != "stderr")
            writeAll(STDOUT_FILENO, std::string_view(block).substr(0, size));
        if (stream != "stdout")
            writeAll(STDERR_FILENO, std::string_view(block).substr(0, size));
        count -= size;
    }
}

void copyInput() {
    std::array<char, 4096> buffer{};
    for (ssize_t count = 0; (count = ::read(STDIN_FILENO, buffer.data(), buffer.size())) > 0;)
        writeAll(STDOUT_FILENO, {buffer.data(), static_cast<std::size_t>(count)});
}

void leaveFile(const std::string& path, std::string_view text) {
    const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    writeAll(file, text);
    ::close(file);
}

void leaveChild(const std::string& path, const std::string& last) {
    if (::fork() != 0)
        return;
    constexpr int turns = 2000;
    int turn = 0;
    for (; turn < turns && ::access(path.c_str(), F_OK) != 0; ++turn)
        ::usleep(5000);
    leaveFile(last, turn < turns ? "released" : "too late");
    std::_Exit(0);
}

void runUntilFileExists(const char* path) {
    (void)std::signal(SIGTERM, SIG_IGN);
    writeAll(STDOUT_FILENO, "ready\n");
    while (::access(path, F_OK) != 0)
        ::usleep(5000);
}

} // namespace

int main(int argc, char** argv) {
    std::vector<std::string> arguments(argv + 1, argv + argc);
    const std::string part = arguments.empty() ? "quiet" : arguments[0];
    arguments.resize(std::max<std::size_t>(arguments.size(), 3));
    if (part == "write") {
        writeMany(arguments[1], std::stoul(arguments[2]));
    } else if (part == "exit") {
        writeAll(STDERR_FILENO, arguments[2]);
        return std::stoi(arguments[1]);
    } else if (part == "raise") {
        (void)std::signal(std::stoi(arguments[1]), SIG_DFL);
        (void)std::raise(std::stoi(arguments[1]));
    } else if (part == "echo") {
        for (int index = 2; index < argc; ++index)
            writeAll(STDOUT_FILENO, std::string(argv[index]) + '\n');
    } else if (part == "environment") {
        const char* value = std::getenv(arguments[1].c_str());
        writeAll(STDOUT_FILENO, value != nullptr ? value : "");
    } else if (part == "directory") {
        std::array<char, 4096> buffer{};
        writeAll(STDOUT_FILENO, ::getcwd(buffer.data(), buffer.size()));
    } else if (part == "cat") {
        copyInput();
    } else if (part == "last-words") {
        writeAll(STDOUT_FILENO, "out");
        writeAll(STDERR_FILENO, "err");
        (void)std::raise(SIGKILL);
    } else if (part == "stubborn") {
        runUntilFileExists(arguments[1].c_str());
        if (!arguments[2].empty())
            leaveFile(arguments[2], "done");
    } else if (part == "leave-child") {
        writeAll(STDOUT_FILENO, "out");
        writeAll(STDERR_FILENO, "err");
        leaveChild(arguments[1], arguments[2]);
        return 3;
    }
    return 0;
}
