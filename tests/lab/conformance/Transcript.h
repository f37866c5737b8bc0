// SPDX-License-Identifier: MIT
#pragma once

#include <QMap>
#include <QString>
#include <QStringList>

#include <iosfwd>
#include <optional>
#include <vector>

namespace corvanta {

/// One command of a transcript with what it must do.
struct TranscriptStep {
    /// Files that are written before the command runs, with their content.
    std::vector<std::pair<QString, QString>> given;
    QString command;
    QByteArray input;
    QStringList output;
    QStringList error;
    int status = 0;
    /// Files that must begin with these bytes, in hexadecimal digits.
    std::vector<std::pair<QString, QByteArray>> files;
};

/// A conversation with the lab's programs, from one of the files beside this one; README.md there tells their form.
struct Transcript {
    QString name;
    /// The public address that it is taken from, or "own".
    QString source;
    std::vector<TranscriptStep> steps;

    friend void PrintTo(const Transcript& transcript, std::ostream* stream);
};

/// Every transcript of the file. Throws std::runtime_error, which names the line, for one that cannot be read.
[[nodiscard]] std::vector<Transcript> readTranscripts(const QString& path);

/// The words of a command line: separated by blanks, kept together by double or single quotes.
[[nodiscard]] QStringList splitCommand(const QString& command);

/// Values by the names that stand for them in braces.
using TranscriptValues = QMap<QString, QString>;

/// The text with each known name in braces replaced by its value.
[[nodiscard]] QString filledIn(const QString& text, const TranscriptValues& values);

/// Compares what a program wrote with the lines expected, and keeps what the lines capture in the values. Returns what
/// differs, for a person to read; absent when nothing does.
[[nodiscard]] std::optional<QString> difference(const QStringList& expected, const QByteArray& actual,
                                                TranscriptValues& values);

} // namespace corvanta
