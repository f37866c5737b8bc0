// SPDX-License-Identifier: MIT
#include "LabFolders.h"
#include "SystemDescription.h"

#include <QFile>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <sstream>
#include <string>
#include <string_view>
#include <unistd.h>
#include <vector>

using namespace corvanta::lab;

namespace {

constexpr int toolMissing = 72;
constexpr int usageError = 64;
constexpr std::array<std::string_view, 3> tools{"simctl", "xcodebuild", "xcrun"};

/// What a command line asks for.
struct Request {
    enum class Answer { run, find, help, version, sdk };

    Answer answer = Answer::run;
    /// What is asked of the development kit, as the error spells it ("Path").
    std::string item;
    std::string sdk = "macosx";
    /// Position of the tool's name.
    int tool = 1;
    std::string problem;
};

int failMissing(std::string_view tool) {
    std::fprintf(stderr, "xcrun: error: unable to find utility \"%.*s\", not a developer tool or in PATH\n",
                 static_cast<int>(tool.size()), tool.data());
    return toolMissing;
}

int failWithoutSdk(const Request& request) {
    // The tool asks twice before it gives up, and tells it twice.
    std::fprintf(stderr,
                 "xcrun: error: SDK \"%s\" cannot be located\nxcrun: error: SDK \"%s\" cannot be located\n"
                 "xcrun: error: unable to lookup item '%s' in SDK '%s'\n",
                 request.sdk.c_str(), request.sdk.c_str(), request.item.c_str(), request.sdk.c_str());
    return EXIT_FAILURE;
}

/// The program of that name in the folders of PATH; empty when there is none.
std::string pathInFolders(std::string_view tool) {
    const char* const folders = std::getenv("PATH");
    std::istringstream list(folders != nullptr ? folders : "");
    for (std::string folder; std::getline(list, folder, ':');) {
        std::string path = folder + '/' + std::string(tool);
        if (folder.starts_with('/') && access(path.c_str(), X_OK) == 0) {
            return path;
        }
    }
    return {};
}

/// The tool's path; empty when this system does not have it. Throws SystemDescriptionError.
std::string pathOf(std::string_view tool) {
    if (tool.empty() || tool.find('/') != std::string_view::npos) {
        return {};
    }
    if (std::ranges::find(tools, tool) == tools.end()) {
        return pathInFolders(tool);
    }
    if (!SystemDescription::load().hasDeveloperTools()) {
        return {};
    }
    std::string path = QFile::encodeName(programFolder()).toStdString() + '/' + std::string(tool);
    return access(path.c_str(), X_OK) == 0 ? path : std::string();
}

void printUsage(std::FILE* stream) {
    std::fputs("Usage: xcrun [options] <tool name> ... arguments ...\n"
               "\n"
               "Find and execute the named command line tool of the device lab, or one in PATH.\n"
               "\n"
               "Options:\n"
               "  -h, --help                  show this help message and exit\n"
               "  --version                   show the xcrun version\n"
               "  --sdk <sdk name>            taken, and without effect: the lab has no SDK\n"
               "  --toolchain <name>          taken, and without effect\n"
               "  -v, -l, -n, -k              taken, and without effect, as are their long forms\n"
               "  -f, --find                  only find and print the tool path\n"
               "  -r, --run                   find and execute the tool (the default behavior)\n"
               "  --show-sdk-path             end with the error of a system without SDKs, as do its siblings\n",
               stream);
}

Request parse(int argc, char** argv) {
    struct SdkQuestion {
        std::string_view option;
        const char* item;
    };

    static constexpr std::array<SdkQuestion, 6> questions{{{"show-sdk-path", "Path"},
                                                           {"show-sdk-version", "SDKVersion"},
                                                           {"show-sdk-build-version", "SDKBuildVersion"},
                                                           {"show-sdk-platform-path", "PlatformPath"},
                                                           {"show-sdk-platform-version", "PlatformVersion"},
                                                           {"show-toolchain-path", "ToolchainPath"}}};
    static constexpr std::array<std::string_view, 10> silent{"v",        "verbose", "l",          "log", "n",
                                                             "no-cache", "k",       "kill-cache", "r",   "run"};
    Request request;
    if (const char* const chosen = std::getenv("SDKROOT"); chosen != nullptr && *chosen != '\0') {
        request.sdk = chosen;
    }
    int& index = request.tool;
    for (; index < argc && argv[index][0] == '-'; ++index) {
        std::string_view option = argv[index];
        option.remove_prefix(option.starts_with("--") ? 2 : 1);
        const auto question = std::ranges::find(questions, option, &SdkQuestion::option);
        if (option == "h" || option == "help") {
            request.answer = Request::Answer::help;
        } else if (option == "version") {
            request.answer = Request::Answer::version;
        } else if (option == "f" || option == "find") {
            request.answer = Request::Answer::find;
        } else if (question != questions.end()) {
            request.answer = Request::Answer::sdk;
            request.item = question->item;
        } else if ((option == "sdk" || option == "toolchain") && index + 1 < argc) {
            ++index;
            request.sdk = option == "sdk" ? argv[index] : request.sdk;
        } else if (std::ranges::find(silent, option) == silent.end()) {
            request.problem = std::string("invalid option: '") + argv[index] + '\'';
            break;
        }
    }
    return request;
}

int run(const Request& request, int argc, char** argv) {
    const std::string path = pathOf(argv[request.tool]);
    if (path.empty()) {
        return failMissing(argv[request.tool]);
    }
    if (request.answer == Request::Answer::find) {
        std::puts(path.c_str());
        return 0;
    }
    std::vector<char*> arguments(argv + request.tool, argv + argc);
    arguments.push_back(nullptr);
    execv(path.c_str(), arguments.data());
    return failMissing(argv[request.tool]);
}

} // namespace

int main(int argc, char** argv) {
    const Request request = parse(argc, argv);
    if (!request.problem.empty()) {
        std::fprintf(stderr, "xcrun: error: %s\n", request.problem.c_str());
        return usageError;
    }
    switch (request.answer) {
    case Request::Answer::help:
        printUsage(stdout);
        return 0;
    case Request::Answer::version:
        std::puts("xcrun version 70.");
        return 0;
    case Request::Answer::sdk:
        return failWithoutSdk(request);
    case Request::Answer::find:
    case Request::Answer::run:
        break;
    }
    if (request.tool >= argc) {
        printUsage(stderr);
        return usageError;
    }
    try {
        return run(request, argc, argv);
    } catch (const SystemDescriptionError& problem) {
        std::fprintf(stderr, "xcrun: error: %s\n", problem.what());
        return EXIT_FAILURE;
    }
}
