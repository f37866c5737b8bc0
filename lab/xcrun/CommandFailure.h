// SPDX-License-Identifier: MIT
#pragma once

#include <QLatin1StringView>
#include <QString>

namespace corvanta::lab {

/// The domains and codes that the Mac's tool reports its failures with.
inline constexpr QLatin1StringView simulatorDomain{"com.apple.CoreSimulator.SimError"};
inline constexpr QLatin1StringView posixDomain{"NSPOSIXErrorDomain"};
inline constexpr QLatin1StringView statusDomain{"NSOSStatusErrorDomain"};
inline constexpr int runtimeUnavailable = 401;
inline constexpr int incompatibleDevice = 403;
inline constexpr int invalidDevice = 404;
inline constexpr int invalidState = 405;
inline constexpr int noEntry = 2;
inline constexpr int fileExists = 17;
inline constexpr int timedOut = 60;
inline constexpr int applicationNotFound = -10814;
inline constexpr int usageStatus = 64;

/// Ends a command with a text on standard error.
struct CommandFailure {
    int status = 1;
    QString text;
};

/// A failure in the tool's own form; its exit status is the code in one byte.
[[nodiscard]] CommandFailure failure(QLatin1StringView domain, int code, const QString& text);

/// A device in a state that does not allow the action ("boot device").
[[nodiscard]] CommandFailure wrongState(const QString& action, const QString& state);

/// A word that names no device.
[[nodiscard]] CommandFailure unknownDevice(const QString& word);

/// Arguments that the command does not take: its usage, after a line that says what is wrong if there is one.
[[nodiscard]] CommandFailure usage(const QString& command, const QString& problem = {});

/// Writes to standard output, or to standard error, at once.
void print(const QString& text);
void printError(const QString& text);

} // namespace corvanta::lab
