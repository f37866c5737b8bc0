// SPDX-License-Identifier: MIT
#pragma once

#include "AtspiItem.h"
#include "HangAllowance.h"

#include <QDBusConnection>
#include <QDBusPendingReply>
#include <QElapsedTimer>
#include <QObject>

#include <optional>

namespace corvanta {

/// The connection to the accessibility bus, found through the session bus and found again after it went away.
class AtspiBus : public QObject {
    Q_OBJECT

public:
    explicit AtspiBus(HangAllowance& allowance);
    ~AtspiBus() override;

    /// Whether there is a connection; begins to make one where there is none.
    [[nodiscard]] bool isConnected();

    /// Whether the session's assistive-technology switch is on. Asked of the session again when the answer has aged.
    [[nodiscard]] bool isEnabled();

    /// Asks for the switch anew without waiting, for a look that comes later. The answer under way; nothing where there
    /// is none.
    [[nodiscard]] std::optional<QDBusPendingCall> askWhetherEnabled();

    /// Whether the session has answered that question since it was asked last.
    [[nodiscard]] bool knowsWhetherEnabled() const { return m_enabledAge.isValid() && !m_enabledCall; }

    /// Turns the session's assistive-technology switch on.
    void enable();

    /// Starts a call on the accessibility bus. It has no time limit: a program that hangs answers when it goes on.
    [[nodiscard]] QDBusPendingCall call(const AtspiReference& object, const QString& interface, const QString& method,
                                        const QVariantList& arguments = {}) const;

    /// Counts the connections made, so that what was learnt on an earlier one can be told apart.
    [[nodiscard]] unsigned generation() const { return m_generation; }

Q_SIGNALS:
    /// A process has left the bus.
    void processLeft(const QString& bus);

private Q_SLOTS:
    void noteOwnerChange(const QString& name, const QString& oldOwner, const QString& newOwner);

private:
    void requestAddress();
    void takeWhetherEnabled();
    void takeAddress(const QDBusPendingReply<QString>& reply);
    void disconnectFromBus();

    HangAllowance& m_allowance;
    std::optional<QDBusConnection> m_connection;
    std::optional<HangAllowance::Call> m_addressCall;
    std::optional<HangAllowance::Call> m_enabledCall;
    bool m_isEnabled = false;
    QElapsedTimer m_enabledAge;
    unsigned m_generation = 0;
};

} // namespace corvanta
