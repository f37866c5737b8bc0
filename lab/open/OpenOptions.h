// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

namespace corvanta::lab {

/// What `open` is asked to do.
struct OpenOptions {
    /// The application named with -a, or with -b by its bundle identifier; empty when none is.
    QString application;
    bool isBundleIdentifier = false;
    /// Not to be brought forward.
    bool inBackground = false;
    /// Addresses and files.
    QStringList items;
    /// Everything behind --args.
    QStringList applicationArguments;
    /// What is wrong with the words; empty when nothing is.
    QString problem;

    [[nodiscard]] static OpenOptions parse(const QStringList& words);

    /// The word behind `option` among the application's arguments; empty when it is not there.
    [[nodiscard]] QString applicationOption(const QString& option) const;

    bool operator==(const OpenOptions&) const = default;
};

} // namespace corvanta::lab
