// SPDX-License-Identifier: MIT
#pragma once

#include "SingleInstance.h"

#include <QDBusConnection>
#include <QObject>

namespace corvanta {

/// The programs find each other by a name on the session bus. Without a bus everyone is alone.
class BusSingleInstance final : public QObject, public SingleInstance {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "dev.corvanta.Corvanta")

public:
    explicit BusSingleInstance(QDBusConnection bus = QDBusConnection::sessionBus());
    ~BusSingleInstance() override;

    [[nodiscard]] Standing claim(const QStringList& arguments) override;
    void release() override;

public Q_SLOTS:
    /// Called through the bus.
    Q_SCRIPTABLE void Open(const QStringList& arguments);

private:
    /// What `release` does, for the destructor too.
    void giveNameUp();

    QDBusConnection m_bus;
    bool m_hasName = false;
};

} // namespace corvanta
