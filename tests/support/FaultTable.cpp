// SPDX-License-Identifier: MIT
#include "FaultTable.h"

#include <QFile>
#include <QRegularExpression>
#include <QStringList>

#include <algorithm>
#include <set>
#include <tuple>
#include <utility>

namespace corvanta::testing {

using namespace Qt::Literals::StringLiterals;

namespace {

const QStringList header{u"During"_s, u"Fault"_s, u"Phase"_s, u"Status"_s, u"Recovery"_s};
constexpr auto noText = u"none";
constexpr auto everyMoment = u"every moment";
constexpr auto asWithout = u"as without";
const QString onLinux = u" (on Linux)"_s;

[[noreturn]] void damaged(int line, const QString& complaint) {
    throw FaultTableError(u"line %1: %2"_s.arg(line).arg(complaint).toStdString());
}

/// The cells of "| a | b |", trimmed.
QStringList cellsOf(const QString& text, int line) {
    if (text.size() < 2 || !text.endsWith(u'|'))
        damaged(line, u"a row of a table begins and ends with a bar"_s);
    QStringList cells = text.mid(1, text.size() - 2).split(u'|');
    for (QString& cell : cells)
        cell = cell.trimmed();
    if (cells.size() != header.size())
        damaged(line, u"%1 columns instead of %2"_s.arg(cells.size()).arg(header.size()));
    return cells;
}

template<typename Value>
Value named(const auto& all, const QString& name, int line) {
    const auto found = std::ranges::find_if(all, [&name](Value value) { return tableName(value) == name; });
    if (found == all.end())
        damaged(line, u"unknown name \"%1\""_s.arg(name));
    return *found;
}

/// What comes of the moment when nothing goes wrong.
FaultTableRow rowWithout(FaultMoment moment) {
    FaultTableRow row;
    row.moment = moment;
    row.phase = WorkspacePhase::running;
    row.status = u"Workspace running"_s;
    if (moment == FaultMoment::setupCheck || moment == FaultMoment::deviceListing) {
        row.phase = WorkspacePhase::idle;
        row.status = moment == FaultMoment::setupCheck ? u"Setup ready; looking for simulators"_s : u"Ready"_s;
    }
    return row;
}

std::vector<FaultTableRow> rowsWithout(const QStringList& cells, int line) {
    if (cells[2] != asWithout || cells[3] != asWithout || cells[4] != asWithout)
        damaged(line, u"what is the same at every moment is \"as without\""_s);
    std::vector<FaultTableRow> rows;
    for (const FaultMoment moment : allFaultMoments) {
        rows.push_back(rowWithout(moment));
        rows.back().fault = named<Fault>(allFaults, cells[1], line);
        rows.back().line = line;
    }
    return rows;
}

std::vector<FaultTableRow> rowsOf(const QStringList& cells, int line) {
    if (cells[0] == everyMoment)
        return rowsWithout(cells, line);
    FaultTableRow row;
    row.line = line;
    row.moment = named<FaultMoment>(allFaultMoments, cells[0], line);
    row.isOnLinux = cells[1].endsWith(onLinux);
    row.fault = named<Fault>(allFaults, row.isOnLinux ? cells[1].chopped(onLinux.size()) : cells[1], line);
    const auto phase = workspacePhaseFromRawValue(cells[2]);
    if (!phase)
        damaged(line, u"unknown phase \"%1\""_s.arg(cells[2]));
    row.phase = *phase;
    row.status = cells[3];
    if (row.status.isEmpty() || cells[4].isEmpty())
        damaged(line, u"a text is missing"_s);
    if (cells[4] != noText)
        row.recovery = cells[4];
    return {row};
}

bool isSeparator(const QStringList& cells) {
    static const QRegularExpression dashes(u"^-{3,}$"_s);
    return std::ranges::all_of(cells, [](const QString& cell) { return dashes.match(cell).hasMatch(); });
}

/// The words of a name, each with a capital, run together.
QString camelCase(const QString& name) {
    static const QRegularExpression wordBreak(u"[^A-Za-z0-9]+"_s);
    QString result;
    for (QString word : name.split(wordBreak, Qt::SkipEmptyParts)) {
        word[0] = word[0].toUpper();
        result += word;
    }
    return result;
}

} // namespace

QString tableName(FaultMoment moment) {
    switch (moment) {
    case FaultMoment::setupCheck:
        return u"setup check"_s;
    case FaultMoment::deviceListing:
        return u"device listing"_s;
    case FaultMoment::preflight:
        return u"preflight"_s;
    case FaultMoment::boot:
        return u"booting: boot"_s;
    case FaultMoment::bootStatus:
        return u"booting: bootstatus"_s;
    case FaultMoment::openSimulator:
        return u"booting: open"_s;
    case FaultMoment::restoreLocation:
        return u"booting: location"_s;
    case FaultMoment::openingPage:
        return u"openingPage"_s;
    case FaultMoment::waiting:
        return u"attachingInspector: waiting"_s;
    case FaultMoment::attaching:
        return u"attachingInspector: attaching"_s;
    case FaultMoment::choice:
        return u"attachingInspector: choice"_s;
    case FaultMoment::running:
        return u"running"_s;
    case FaultMoment::runningChoice:
        return u"running: choice"_s;
    case FaultMoment::runningAttaching:
        return u"running: attaching"_s;
    case FaultMoment::reloadOpeningPage:
        return u"reload: openingPage"_s;
    case FaultMoment::reloadWaiting:
        return u"reload: waiting"_s;
    case FaultMoment::reloadAttaching:
        return u"reload: attaching"_s;
    }
    Q_UNREACHABLE();
}

QString tableName(Fault fault) {
    switch (fault) {
    case Fault::safariGone:
        return u"Safari gone"_s;
    case Fault::safariCannotBeLaunched:
        return u"Safari cannot be launched"_s;
    case Fault::safariHung:
        return u"Safari hung"_s;
    case Fault::deviceNotInMenu:
        return u"device not in the menu"_s;
    case Fault::noDevelopMenu:
        return u"no Develop menu"_s;
    case Fault::simulatorGone:
        return u"Simulator gone"_s;
    case Fault::deviceShutDown:
        return u"device shut down"_s;
    case Fault::pageCrashed:
        return u"page crashed"_s;
    case Fault::pageProcessKilled:
        return u"page process killed"_s;
    case Fault::toolMissing:
        return u"tool missing"_s;
    case Fault::toolNotExecutable:
        return u"tool not executable"_s;
    case Fault::toolFailing:
        return u"tool failing"_s;
    case Fault::toolPrintingGarbage:
        return u"tool printing garbage"_s;
    case Fault::toolEndedBySignal:
        return u"tool ended by a signal"_s;
    case Fault::toolHanging:
        return u"tool hanging"_s;
    case Fault::accessibilityGone:
        return u"accessibility bus gone"_s;
    case Fault::controlWindowClosed:
        return u"control window closed"_s;
    case Fault::preferencesReadOnly:
        return u"preferences read-only"_s;
    case Fault::preferencesOverLimit:
        return u"preferences over a size limit"_s;
    case Fault::preferencesDamaged:
        return u"preferences damaged"_s;
    case Fault::preferencesNewer:
        return u"preferences of a newer version"_s;
    case Fault::displayResized:
        return u"display resized"_s;
    }
    Q_UNREACHABLE();
}

std::string FaultTableRow::testName() const {
    return camelCase(tableName(moment) + u' ' + tableName(fault)).toStdString();
}

void PrintTo(const FaultTableRow& row, std::ostream* stream) {
    *stream << tableName(row.moment).toStdString() << " × " << tableName(row.fault).toStdString() << " (line "
            << row.line << ')';
}

std::vector<FaultTableRow> parseFaultTable(const QString& text) {
    std::vector<FaultTableRow> rows;
    std::set<std::tuple<FaultMoment, Fault, bool>> seen;
    int line = 0;
    int lineInTable = 0;
    for (const QString& content : text.split(u'\n')) {
        ++line;
        if (!content.startsWith(u'|')) {
            lineInTable = 0;
            continue;
        }
        const QStringList cells = cellsOf(content.trimmed(), line);
        ++lineInTable;
        if (lineInTable == 1) {
            if (cells != header)
                damaged(line, u"a table begins with the header \"%1\""_s.arg(header.join(u" | "_s)));
        } else if (lineInTable == 2) {
            if (!isSeparator(cells))
                damaged(line, u"dashes belong between the header and the rows"_s);
        } else {
            for (const FaultTableRow& row : rowsOf(cells, line)) {
                if (!seen.insert({row.moment, row.fault, row.isOnLinux}).second)
                    damaged(line, u"\"%1\" × \"%2\" has been there before"_s.arg(tableName(row.moment), cells[1]));
                rows.push_back(row);
            }
        }
    }
    return rows;
}

std::vector<FaultTableRow> readFaultTable(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw FaultTableError((path + u": "_s + file.errorString()).toStdString());
    try {
        auto rows = parseFaultTable(QString::fromUtf8(file.readAll()));
        if (rows.empty())
            throw FaultTableError("no row in it");
        return rows;
    } catch (const FaultTableError& error) {
        throw FaultTableError(path.toStdString() + ": " + error.what());
    }
}

QString filledText(const QString& text, const QHash<QString, QString>& values) {
    static const QRegularExpression placeholder(u"\\{([^{}]*)\\}"_s);
    QString result;
    qsizetype end = 0;
    for (auto found = placeholder.globalMatch(text); found.hasNext();) {
        const auto match = found.next();
        const auto value = values.constFind(match.captured(1));
        if (value == values.cend())
            throw FaultTableError("unknown placeholder " + match.captured(0).toStdString());
        result += text.mid(end, match.capturedStart() - end) + *value;
        end = match.capturedEnd();
    }
    return result + text.mid(end);
}

} // namespace corvanta::testing
