// SPDX-License-Identifier: MIT
#pragma once

#include "workspace/WorkspacePhase.h"

#include <QHash>
#include <QString>

#include <array>
#include <optional>
#include <ostream>
#include <stdexcept>
#include <vector>

namespace corvanta::testing {

/// When a fault appears: the points of a workspace's life that docs/faults.md tells apart.
enum class FaultMoment {
    setupCheck,
    deviceListing,
    preflight,
    boot,
    bootStatus,
    openSimulator,
    restoreLocation,
    openingPage,
    waiting,
    attaching,
    choice,
    running,
    runningChoice,
    runningAttaching,
    reloadOpeningPage,
    reloadWaiting,
    reloadAttaching,
};

inline constexpr std::array allFaultMoments{
    FaultMoment::setupCheck,
    FaultMoment::deviceListing,
    FaultMoment::preflight,
    FaultMoment::boot,
    FaultMoment::bootStatus,
    FaultMoment::openSimulator,
    FaultMoment::restoreLocation,
    FaultMoment::openingPage,
    FaultMoment::waiting,
    FaultMoment::attaching,
    FaultMoment::choice,
    FaultMoment::running,
    FaultMoment::runningChoice,
    FaultMoment::runningAttaching,
    FaultMoment::reloadOpeningPage,
    FaultMoment::reloadWaiting,
    FaultMoment::reloadAttaching,
};

/// What goes wrong.
enum class Fault {
    safariGone,
    safariCannotBeLaunched,
    safariHung,
    deviceNotInMenu,
    noDevelopMenu,
    simulatorGone,
    deviceShutDown,
    pageCrashed,
    pageProcessKilled,
    toolMissing,
    toolNotExecutable,
    toolFailing,
    toolPrintingGarbage,
    toolEndedBySignal,
    toolHanging,
    accessibilityGone,
    controlWindowClosed,
    preferencesReadOnly,
    preferencesOverLimit,
    preferencesDamaged,
    preferencesNewer,
    displayResized,
};

inline constexpr std::array allFaults{
    Fault::safariGone,           Fault::safariCannotBeLaunched,
    Fault::safariHung,           Fault::deviceNotInMenu,
    Fault::noDevelopMenu,        Fault::simulatorGone,
    Fault::deviceShutDown,       Fault::pageCrashed,
    Fault::pageProcessKilled,    Fault::toolMissing,
    Fault::toolNotExecutable,    Fault::toolFailing,
    Fault::toolPrintingGarbage,  Fault::toolEndedBySignal,
    Fault::toolHanging,          Fault::accessibilityGone,
    Fault::controlWindowClosed,  Fault::preferencesReadOnly,
    Fault::preferencesOverLimit, Fault::preferencesDamaged,
    Fault::preferencesNewer,     Fault::displayResized,
};

/// The name under which the table has it.
[[nodiscard]] QString tableName(FaultMoment moment);
[[nodiscard]] QString tableName(Fault fault);

/// One cell: what the workspace comes to rest at when the fault appears at that moment and stays.
struct FaultTableRow {
    FaultMoment moment{};
    Fault fault{};
    WorkspacePhase phase{};
    /// With placeholders in braces, see `filledText`.
    QString status;
    std::optional<QString> recovery;
    /// Whether this is what a Linux desktop makes of it, where that differs from the row of the same name.
    bool isOnLinux = false;
    /// Counted from 1.
    int line = 0;

    /// The cell as the name of a test: "RunningSafariGone".
    [[nodiscard]] std::string testName() const;
};

/// How test failures show a cell.
void PrintTo(const FaultTableRow& row, std::ostream* stream);

/// A table that does not say what it should; `what()` names the line.
class FaultTableError final : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Every row of the Markdown tables in `text`, in their order. Behind a fault's name may stand "(on Linux)". A row of
/// "every moment" with the outcome "as without" stands for a row of each moment, with the outcome that there is without
/// a fault. Throws FaultTableError for a line of a table that is not understood whole: another number of columns, an
/// unknown name, a missing text, a cell that has been there before.
[[nodiscard]] std::vector<FaultTableRow> parseFaultTable(const QString& text);

/// The same of a file. Throws FaultTableError also when there is none, or no row in it.
[[nodiscard]] std::vector<FaultTableRow> readFaultTable(const QString& path);

/// `text` with each "{name}" replaced by its value. Throws FaultTableError for a name without one.
[[nodiscard]] QString filledText(const QString& text, const QHash<QString, QString>& values);

} // namespace corvanta::testing
