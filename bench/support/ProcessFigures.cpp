// SPDX-License-Identifier: MIT
#include "ProcessFigures.h"

#include <charconv>
#include <filesystem>
#include <fstream>
#include <map>

namespace corvanta::bench {

namespace {

namespace fs = std::filesystem;

std::string folderOf(pid_t process) {
    return "/proc/" + std::to_string(process);
}

/// The number behind "FIELD:" in a file of lines of that kind.
long numberIn(const std::string& path, const std::string& field) {
    std::ifstream file(path);
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with(field + ":"))
            return std::strtol(line.c_str() + field.size() + 1, nullptr, 10);
    }
    return 0;
}

/// Folders whose name is a number, which is how processes and their threads are listed.
std::vector<pid_t> numbersIn(const std::string& folder) {
    std::vector<pid_t> numbers;
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(folder, error)) {
        const std::string name = entry.path().filename();
        pid_t number = 0;
        if (const auto [end, failure] = std::from_chars(name.data(), name.data() + name.size(), number);
            failure == std::errc() && end == name.data() + name.size())
            numbers.push_back(number);
    }
    return numbers;
}

pid_t parentOf(pid_t process) {
    return static_cast<pid_t>(numberIn(folderOf(process) + "/status", "PPid"));
}

} // namespace

ProcessFigures ProcessFigures::of(pid_t process) {
    ProcessFigures figures;
    const std::string folder = folderOf(process);
    const std::string memory = folder + "/smaps_rollup";
    figures.residentKilobytes = numberIn(memory, "Rss");
    figures.privateKilobytes = numberIn(memory, "Private_Clean") + numberIn(memory, "Private_Dirty");
    figures.anonymousKilobytes = numberIn(memory, "Anonymous");
    figures.proportionalKilobytes = numberIn(memory, "Pss");
    for (const pid_t thread : numbersIn(folder + "/task")) {
        const std::string place = folder + "/task/" + std::to_string(thread);
        double nanoseconds = 0;
        std::ifstream(place + "/schedstat") >> nanoseconds;
        figures.processorMilliseconds += nanoseconds / 1e6;
        figures.sleeps += numberIn(place + "/status", "voluntary_ctxt_switches");
    }
    return figures;
}

std::vector<pid_t> descendants(pid_t process) {
    std::multimap<pid_t, pid_t> children;
    for (const pid_t candidate : numbersIn("/proc"))
        children.emplace(parentOf(candidate), candidate);
    std::vector<pid_t> found{process};
    for (std::size_t at = 0; at < found.size(); ++at) {
        const auto [first, last] = children.equal_range(found[at]);
        for (auto child = first; child != last; ++child)
            found.push_back(child->second);
    }
    found.erase(found.begin());
    return found;
}

std::string programOf(pid_t process) {
    std::error_code error;
    return fs::read_symlink(folderOf(process) + "/exe", error).filename();
}

} // namespace corvanta::bench
