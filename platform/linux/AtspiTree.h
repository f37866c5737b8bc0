// SPDX-License-Identifier: MIT
#pragma once

#include "AtspiItem.h"

#include <QHash>

namespace corvanta {

/// The accessible objects of one process, as far as they were fetched. A value; knows nothing of the bus.
class AtspiTree {
public:
    /// The object at that path; null when it is not known. Valid until the tree changes.
    [[nodiscard]] const AtspiItem* item(const QString& path) const;

    [[nodiscard]] qsizetype size() const { return m_items.size(); }

    void insert(AtspiItem item);
    void setChildren(const QString& path, QList<AtspiReference> children);

    /// Links the inserted objects with their parents, as far as child counts and indices leave no doubt about which
    /// children there are and in which order.
    void link();

    /// Whether the object is a menu item with a submenu. GTK lists the entries directly below such an item.
    [[nodiscard]] bool opensSubmenu(const AtspiItem& item) const;

    /// Takes over what `other` knows.
    void merge(AtspiTree other);

    /// The objects whose children must be asked for.
    [[nodiscard]] QList<QString> withUnknownChildren() const;

private:
    QHash<QString, AtspiItem> m_items;
};

} // namespace corvanta
