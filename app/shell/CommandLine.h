// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace corvanta {

/// What the program was asked to do when it was started.
struct CommandLine {
    /// Replaces the address of the profile.
    std::optional<QString> url;
    /// A device's name or UDID, selected once the devices are listed.
    std::optional<QString> device;
    /// Start a workspace as soon as the setup checks have passed.
    bool start = false;
    /// Run without a person: start, write a picture of the whole desktop to this file, stop and exit.
    std::optional<QString> screenshot;

    bool operator==(const CommandLine&) const = default;
};

/// What is left to do after the arguments have been read: run with a command line, or print a text and exit.
struct CommandLineOutcome {
    std::optional<CommandLine> commandLine;
    /// Printed when there is no command line: to standard output for status 0, to standard error otherwise.
    QString message;
    int exitStatus = 0;
};

/// Reads the arguments, the program's name first. Unknown options and stray arguments are errors.
[[nodiscard]] CommandLineOutcome parseCommandLine(const QStringList& arguments);

} // namespace corvanta
