// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

namespace corvanta::lab {

/// Runs one `simctl` command line, given without the program's name, and returns its exit status. Writes to the
/// standard streams as the Mac's tool does; never throws.
[[nodiscard]] int runSimctl(QStringList arguments);

/// The usage text of the tool, or of one of its commands; empty for a command that is not there.
[[nodiscard]] QString simctlHelp(const QString& command = {});

} // namespace corvanta::lab
