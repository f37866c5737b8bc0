// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <cstdint>

namespace corvanta {

/// A program and its arguments, not yet started.
struct ProcessCommand {
    /// The path of the program's file URL, absolute.
    QString executablePath;
    /// Argument vector without the program's name; never seen by a shell.
    QStringList arguments;

    /// The path and every argument joined by single spaces, unquoted: how error messages name a command.
    [[nodiscard]] QString displayString() const;

    bool operator==(const ProcessCommand&) const = default;
};

/// What a finished child left behind, as raw bytes: nothing is decoded or trimmed.
struct ProcessResult {
    /// The exit status; the signal's number when a signal ended the child.
    std::int32_t terminationStatus = 0;
    /// The child's two streams; not called `stdout` and `stderr`, which <cstdio> defines as macros.
    QByteArray standardOutput;
    QByteArray standardError;

    bool operator==(const ProcessResult&) const = default;
};

} // namespace corvanta
