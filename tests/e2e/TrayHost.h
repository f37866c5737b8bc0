// SPDX-License-Identifier: MIT
#pragma once

#include <QMutex>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QThread>

#include <vector>

namespace corvanta::testing {

/// A desktop's tray, as much of it as a program's icon needs: the watcher of the StatusNotifierItem protocol.
///
/// Owns its name on the session bus while it lives, and answers on a thread of its own: programs ask it while a test
/// waits for them. One icon at a time.
class TrayHost final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(bool IsStatusNotifierHostRegistered READ isHost)
    Q_PROPERTY(int ProtocolVersion READ protocolVersion)
    Q_PROPERTY(QStringList RegisteredStatusNotifierItems READ items)

public:
    TrayHost();
    ~TrayHost() override;

    [[nodiscard]] bool isHost() const { return true; }

    [[nodiscard]] int protocolVersion() const { return 0; }

    /// The icon's name on the bus; empty while there is none.
    [[nodiscard]] QStringList items() const;

    /// The texts of the icon's menu as a person reads them; "---" for a separator, " off" behind what is disabled.
    [[nodiscard]] QStringList menu() const;

    /// Chooses the item with that text; false when there is none, or when it is disabled.
    [[nodiscard]] bool choose(const QString& text) const;

public Q_SLOTS:
    /// Called through the bus.
    Q_SCRIPTABLE void RegisterStatusNotifierItem(const QString& service);

private:
    struct Item {
        int id = 0;
        QString text;
        bool isEnabled = true;
        bool isSeparator = false;
    };

    [[nodiscard]] std::vector<Item> readMenu() const;

    QThread m_thread;
    mutable QMutex m_mutex;
    QString m_item;
};

} // namespace corvanta::testing
