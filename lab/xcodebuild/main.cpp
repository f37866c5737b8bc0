// SPDX-License-Identifier: MIT
#include "SystemDescription.h"

#include <QString>

#include <cstdio>
#include <string_view>

using namespace corvanta::lab;

int main(int argc, char** argv) {
    const SystemDescription system = SystemDescription::load();
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
