// SPDX-License-Identifier: MIT
#include "LabFolders.h"
#include "SystemDescription.h"

#include <QFile>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <unistd.h>
#include <vector>

using namespace corvanta::lab;

namespace {

constexpr int toolMissing = 72;
constexpr int usageError = 64;
constexpr std::array<std::string_view, 2> tools{"simctl", "xcodebuild"};

int failMissing(std::string_view tool) {
    std::fprintf(stderr, "xcrun: error: unable to find utility \"%.*s\", not a developer tool or in PATH\n",
                 static_cast<int>(tool.size()), tool.data());
    return toolMissing;
}

/// The tool's path; empty when this system does not have it. Throws SystemDescriptionError.
std::string pathOf(std::string_view tool) {
    const bool isKnown = std::ranges::find(tools, tool) != tools.end();
    if (!isKnown || !SystemDescription::load().hasDeveloperTools()) {
        return {};
    }
    std::string path = QFile::encodeName(programFolder()).toStdString() + '/' + std::string(tool);
    return access(path.c_str(), X_OK) == 0 ? path : std::string();
}

void printUsage(std::FILE* stream) {
    std::fputs("Usage: xcrun [options] <tool name> ... arguments ...\n"
               "\n"
               "Find and execute the named command line tool of the device lab.\n"
               "\n"
               "Options:\n"
               "  -h, --help                  show this help message and exit\n"
               "  --version                   show the xcrun version\n"
               "  -f, --find                  only find and print the tool path\n"
               "  -r, --run                   find and execute the tool (the default behavior)\n",
               stream);
}

} // namespace

int main(int argc, char** argv) {
    bool onlyFind = false;
    int index = 1;
    for (; index < argc && argv[index][0] == '-'; ++index) {
        const std::string_view option = argv[index];
        if (option == "-h" || option == "--help" || option == "-help") {
            printUsage(stdout);
            return 0;
        }
        if (option == "--version" || option == "-version") {
            std::puts("xcrun version 70.");
            return 0;
        }
        if (option == "-f" || option == "--find" || option == "-find") {
            onlyFind = true;
        } else if (option != "-r" && option != "--run" && option != "-run") {
            std::fprintf(stderr, "xcrun: error: invalid option: '%s'\n", argv[index]);
            return usageError;
        }
    }
    if (index >= argc) {
        printUsage(stderr);
        return usageError;
    }
    std::string path;
    try {
        path = pathOf(argv[index]);
    } catch (const SystemDescriptionError& problem) {
        std::fprintf(stderr, "xcrun: error: %s\n", problem.what());
        return EXIT_FAILURE;
    }
    if (path.empty()) {
        return failMissing(argv[index]);
    }
    if (onlyFind) {
        std::puts(path.c_str());
        return 0;
    }
    std::vector<char*> arguments(argv + index, argv + argc);
    arguments.push_back(nullptr);
    execv(path.c_str(), arguments.data());
    return failMissing(argv[index]);
}
