// SPDX-License-Identifier: MIT
#include "SystemDescription.h"

#include <QString>

#include <cstdio>
#include <string_view>

using namespace corvanta::lab;

namespace {

int run(int argc, char** argv) {
    const SystemDescription system = SystemDescription::load();
    if (!system.xcode && !system.commandLineTools) {
        std::fputs("xcode-select: note: No developer tools were found, requesting install.\n"
                   "If developer tools are located at a non-default location on disk, use `sudo xcode-select --switch "
                   "path/to/Xcode.app` to specify the Xcode that you wish to use for command line developer tools, and "
                   "cancel the installation dialog.\n"
                   "See `man xcode-select` for more details.\n",
                   stderr);
        return 1;
    }
    if (!system.xcode) {
        std::fputs("xcode-select: error: tool 'xcodebuild' requires Xcode, but active developer directory "
                   "'/Library/Developer/CommandLineTools' is a command line tools instance\n",
                   stderr);
        return 1;
    }
    if (argc == 2 && std::string_view(argv[1]) == "-version") {
        std::printf("Xcode %s\nBuild version %s\n", system.xcode->toUtf8().constData(),
                    system.xcodeBuild.toUtf8().constData());
        return 0;
    }
    if (argc == 2 && (std::string_view(argv[1]) == "-help" || std::string_view(argv[1]) == "-usage")) {
        std::puts("Usage: xcodebuild -version\n\nThe device lab builds nothing; it only tells the version it plays.");
        return 0;
    }
    std::fputs("xcodebuild: error: The device lab has no projects to build. Only -version is available.\n", stderr);
    return 64;
}

} // namespace

int main(int argc, char** argv) {
    try {
        return run(argc, argv);
    } catch (const SystemDescriptionError& problem) {
        std::fprintf(stderr, "xcodebuild: error: %s\n", problem.what());
        return 1;
    }
}
