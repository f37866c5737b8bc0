// SPDX-License-Identifier: MIT
#include "Transcript.h"

#include <QFile>
#include <QRegularExpression>

#include <ostream>
#include <stdexcept>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace corvanta {

namespace {

/// What a placeholder may stand for.
const QMap<QString, QString>& kinds() {
    static const QMap<QString, QString> known{
        {u"udid"_s, u"[0-9A-F]{8}(?:-[0-9A-F]{4}){3}-[0-9A-F]{12}"_s},
        {u"time"_s, u"[0-9]{4}-[0-9]{2}-[0-9]{2}[T ][0-9:]{8}(?:Z| \\+0000)"_s},
        {u"number"_s, u"[0-9]+"_s},
        {u"any"_s, u"[^\\n]*"_s},
    };
    return known;
}

/// A line as a pattern: "{udid}" is any identifier, "{new:udid}" keeps it under a name, "{new}" is what was kept.
QString linePattern(const QString& line, const TranscriptValues& values) {
    static const QRegularExpression placeholder(u"\\{(?:([a-z]+):)?([a-z]+)\\}"_s);
    QString pattern;
    qsizetype end = 0;
    for (auto matches = placeholder.globalMatch(line); matches.hasNext();) {
        const QRegularExpressionMatch match = matches.next();
        const QString name = match.captured(1);
        const QString kind = match.captured(2);
        pattern += QRegularExpression::escape(line.sliced(end, match.capturedStart() - end));
        if (values.contains(kind)) {
            pattern += QRegularExpression::escape(values[kind]);
        } else if (kinds().contains(kind)) {
            pattern += name.isEmpty() ? u"(?:%1)"_s.arg(kinds()[kind]) : u"(?<%1>%2)"_s.arg(name, kinds()[kind]);
        } else {
            pattern += QRegularExpression::escape(match.captured());
        }
        end = match.capturedEnd();
    }
    return pattern + QRegularExpression::escape(line.sliced(end));
}

[[noreturn]] void fail(const QString& path, int line, const QString& text) {
    throw std::runtime_error(u"%1:%2: %3"_s.arg(path).arg(line).arg(text).toStdString());
}

/// Adds a line that belongs to a command. False when there is no such line.
bool addToStep(TranscriptStep& step, QChar mark, const QString& rest) {
    if (mark == u'|') {
        step.output.append(rest);
    } else if (mark == u'!') {
        step.error.append(rest);
    } else if (mark == u'<') {
        step.input += rest.toUtf8() + '\n';
    } else if (mark == u'=') {
        step.status = rest.toInt();
    } else if (mark == u'%') {
        step.files.emplace_back(rest.section(u' ', 0, 0),
                                QByteArray::fromHex(rest.section(u' ', 1).remove(u' ').toLatin1()));
    } else {
        return false;
    }
    return true;
}

} // namespace

void PrintTo(const Transcript& transcript, std::ostream* stream) {
    *stream << transcript.name.toStdString();
}

std::vector<Transcript> readTranscripts(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        throw std::runtime_error((path + u": "_s + file.errorString()).toStdString());
    }
    std::vector<Transcript> result;
    std::vector<std::pair<QString, QString>> given;
    int number = 0;
    for (const QString& line : QString::fromUtf8(file.readAll()).split(u'\n')) {
        ++number;
        if (line.isEmpty() || line.startsWith(u'#')) {
            continue;
        }
        const QChar mark = line[0];
        const QString rest = line.sliced(std::min<qsizetype>(2, line.size()));
        if (mark == u'@') {
            result.push_back({.name = rest, .source = {}, .steps = {}});
        } else if (result.empty()) {
            fail(path, number, u"a transcript begins with @ and its name"_s);
        } else if (line.startsWith(u"from ")) {
            result.back().source = line.sliced(5);
        } else if (mark == u'$') {
            result.back().steps.push_back({.given = std::exchange(given, {}),
                                           .command = rest,
                                           .input = {},
                                           .output = {},
                                           .error = {},
                                           .files = {}});
        } else if (mark == u'>') {
            given.emplace_back(rest.section(u' ', 0, 0), rest.section(u' ', 1));
        } else if (result.back().steps.empty() || !addToStep(result.back().steps.back(), mark, rest)) {
            fail(path, number, u"cannot be understood: "_s + line);
        }
    }
    return result;
}

QStringList splitCommand(const QString& command) {
    static const QRegularExpression word(u"(?:\"[^\"]*\"|'[^']*'|[^\\s\"'])+"_s);
    QStringList words;
    for (auto matches = word.globalMatch(command); matches.hasNext();) {
        QString text;
        QChar quote;
        for (const QChar letter : matches.next().captured()) {
            if (quote.isNull() && (letter == u'"' || letter == u'\'')) {
                quote = letter;
            } else if (letter == quote) {
                quote = QChar();
            } else {
                text += letter;
            }
        }
        words.append(text);
    }
    return words;
}

QString filledIn(const QString& text, const TranscriptValues& values) {
    QString result = text;
    for (auto value = values.begin(); value != values.end(); ++value) {
        result.replace(u'{' + value.key() + u'}', value.value());
    }
    return result;
}

std::optional<QString> difference(const QStringList& expected, const QByteArray& actual, TranscriptValues& values) {
    QString pattern = u"\\A"_s;
    for (const QString& line : expected) {
        pattern += line == u"..." ? u"(?:[^\\n]*\\n)*?"_s : linePattern(line, values) + u"\\n"_s;
    }
    const QRegularExpression whole(pattern + u"\\z"_s);
    const QRegularExpressionMatch match = whole.match(QString::fromUtf8(actual));
    if (!whole.isValid() || !match.hasMatch()) {
        return u"expected:\n%1\nwritten:\n%2"_s.arg(expected.join(u'\n'), QString::fromUtf8(actual));
    }
    for (const QString& name : whole.namedCaptureGroups()) {
        if (!name.isEmpty()) {
            values[name] = match.captured(name);
        }
    }
    return std::nullopt;
}

} // namespace corvanta
