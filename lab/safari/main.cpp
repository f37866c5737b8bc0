// SPDX-License-Identifier: MIT
#include "ProgramEnvironment.h"
#include "SafariApplication.h"

#include <csignal>

int main(int argc, char** argv) {
    corvanta::lab::setUpProgramEnvironment();
    // An inspector that has just left must not take Safari with it.
    std::signal(SIGPIPE, SIG_IGN);
    corvanta::lab::SafariApplication application;
    return application.run(argc, argv);
}
