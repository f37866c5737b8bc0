// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

namespace corvanta::lab {

/// What `simctl list` is asked for.
struct ListOptions {
    bool isJson = false;
    /// Whether slashes in JSON are written with a backslash before them.
    bool escapesSlashes = true;
    /// Whether the text tells the folders too.
    bool isVerbose = false;
    bool deviceTypes = true;
    bool runtimes = true;
    bool devices = true;
    bool pairs = true;
    /// Only what can be used.
    bool onlyAvailable = false;
    /// Words that each must occur in an entry.
    QStringList terms;
    /// What is wrong with the arguments; empty when nothing is.
    QString problem;

    /// Reads the words behind `list`.
    [[nodiscard]] static ListOptions parse(const QStringList& arguments);

    /// Whether every term occurs in one of the texts, in any letter case.
    [[nodiscard]] bool matches(const QStringList& texts) const;

    bool operator==(const ListOptions&) const = default;
};

} // namespace corvanta::lab
