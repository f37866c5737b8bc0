// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace corvanta::lab {

/// Runs one `simctl` command line, given without the program's name, and returns its exit status. Writes to the
/// standard streams as the Mac's tool does; never throws.
[[nodiscard]] int runSimctl(QStringList arguments);

/// A "latitude,longitude" pair in degrees; absent when the text is not one.
struct LocationArgument {
    double latitude = 0;
    double longitude = 0;

    [[nodiscard]] static std::optional<LocationArgument> parse(const QString& text);

    bool operator==(const LocationArgument&) const = default;
};

/// The usage text of the tool, or of one of its commands; empty for a command that is not there.
[[nodiscard]] QString simctlHelp(const QString& command = {});

} // namespace corvanta::lab
