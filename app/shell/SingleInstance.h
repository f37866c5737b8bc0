// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QStringList>

namespace corvanta {

/// Makes one program of this user's session the only one: who comes second hands its arguments to the first.
///
/// The programs find each other by a name on the session bus. Without a bus everyone is alone.
class SingleInstance final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "dev.corvanta.Corvanta")

public:
    enum class Standing {
        /// This program goes on; it hears of those that come after it.
        alone,
        /// The first one has taken the arguments.
        handedOver,
        /// There is a first one, but it does not answer.
        unanswered,
    };

    explicit SingleInstance(QDBusConnection bus = QDBusConnection::sessionBus(), QObject* parent = nullptr);
    ~SingleInstance() override;

    /// Takes the name, or hands `arguments` to the program that has it, for which it waits some seconds.
    [[nodiscard]] Standing claim(const QStringList& arguments);

    /// Gives the name up, so that the next program is a first one again.
    void release();

public Q_SLOTS:
    /// Called through the bus.
    Q_SCRIPTABLE void Open(const QStringList& arguments);

Q_SIGNALS:
    /// Another program was started with these arguments, its name first.
    void opened(const QStringList& arguments);

private:
    QDBusConnection m_bus;
    bool m_hasName = false;
};

} // namespace corvanta
