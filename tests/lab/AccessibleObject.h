// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>

#include <functional>
#include <optional>

namespace corvanta {

/// An object on the accessibility bus: whose it is and where. Everything is asked anew; an object that is gone has no
/// name and no children.
struct AccessibleObject {
    QString owner;
    QString path;

    [[nodiscard]] QString name() const;
    /// The number of its role on the bus.
    [[nodiscard]] unsigned role() const;

    [[nodiscard]] bool isEnabled() const { return hasState(24); }

    [[nodiscard]] bool isShowing() const { return hasState(25); }

    [[nodiscard]] QList<AccessibleObject> children() const;

    /// Does the object's first action, as a click does; false when it has none.
    bool press() const;

    /// The same without waiting for its end, for a button whose press asks something.
    void pressAndGoOn() const;

    /// An object below this one that is as wanted, at most that many levels down; the one that lies on top.
    [[nodiscard]] std::optional<AccessibleObject> find(const std::function<bool(const AccessibleObject&)>& isWanted,
                                                       int depth = 24) const;

    /// The windows of every program that is known by that name.
    [[nodiscard]] static QList<AccessibleObject> windows(const QString& program);

private:
    [[nodiscard]] bool hasState(unsigned state) const;
};

/// The names on the accessibility bus.
[[nodiscard]] QList<QString> accessibilityBusNames();

} // namespace corvanta
