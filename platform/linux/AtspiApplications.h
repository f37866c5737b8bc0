// SPDX-License-Identifier: MIT
#pragma once

#include "AtspiBus.h"

#include <QElapsedTimer>
#include <QHash>

#include <cstdint>
#include <optional>

namespace corvanta {

/// The other programs on the accessibility bus and their names. A program that does not answer does not spoil the
/// others.
class AtspiApplications {
public:
    AtspiApplications(AtspiBus& bus, HangAllowance& allowance);

    /// The roots of the programs with that name, in the order in which they came.
    [[nodiscard]] QList<AtspiReference> named(const QString& name);

    /// The roots of the programs that carry the same name as that process.
    [[nodiscard]] QList<AtspiReference> namedLike(const QString& process);

    /// Whether the registry of programs answers.
    [[nodiscard]] bool answers();

    [[nodiscard]] std::optional<std::uint32_t> processId(const QString& process);

    /// Asks anew without waiting, for a look that comes later. The answer under way; nothing where there is none.
    [[nodiscard]] std::optional<QDBusPendingCall> ask();

    [[nodiscard]] bool contains(const QString& process) const;

    void expire() { m_age.invalidate(); }

    /// Forgets everything, for a new connection.
    void clear();

private:
    struct Application {
        AtspiReference root;
        std::optional<QString> name;
        std::optional<std::uint32_t> processId;
        std::optional<HangAllowance::Call> nameCall;
        std::optional<HangAllowance::Call> processIdCall;
    };

    void update();
    /// Takes the list that was asked for; false when it could not be read.
    bool takeAnswer();
    void takeRoots(const QList<AtspiReference>& roots);
    void takeProcessId(Application& application);
    void askName(Application& application);
    void takeName(Application& application);

    AtspiBus& m_bus;
    HangAllowance& m_allowance;
    std::vector<Application> m_applications;
    std::optional<HangAllowance::Call> m_rootsCall;
    QElapsedTimer m_age;
    bool m_hasAnswered = false;
};

} // namespace corvanta
