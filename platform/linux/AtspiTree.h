// SPDX-License-Identifier: MIT
#pragma once

#include "AtspiItem.h"

#include <QHash>

#include <vector>

namespace corvanta {

/// The accessible objects of one process, as far as they were fetched. A value; knows nothing of the bus.
class AtspiTree {
public:
    /// The object at that path; null when it is not known. Valid until the tree changes.
    [[nodiscard]] const AtspiItem* item(const QString& path) const;

    [[nodiscard]] qsizetype size() const { return static_cast<qsizetype>(m_items.size()); }

    /// Makes room for that many objects.
    void reserve(qsizetype count);

    void insert(AtspiItem item);

    /// Takes the program's own list of an object's children. The object itself and those above it are left out.
    void setChildren(const QString& path, const QList<AtspiReference>& children);

    /// Links the inserted objects with their parents, as far as child counts and indices leave no doubt about which
    /// children there are and in which order. Objects whose parents lead back to themselves get none.
    void link();

    /// The first object of that role in pre-order, `top` included; null when there is none. Follows this process's
    /// objects only, each of them once and not deeper than any program nests them.
    [[nodiscard]] const AtspiItem* firstWithRole(const AtspiItem& top, AtspiRole role) const;

    /// Whether the object is a menu item with a submenu. GTK lists the entries directly below such an item.
    [[nodiscard]] bool opensSubmenu(const AtspiItem& item) const;

    /// Takes over what `other` knows.
    void merge(const AtspiTree& other);

    /// The objects whose children must be asked for.
    [[nodiscard]] QList<QString> withUnknownChildren() const;

private:
    /// Null where the parent is not known or another process's.
    [[nodiscard]] const AtspiItem* parentOf(const AtspiItem& item) const;

    using Place = std::size_t;
    static constexpr Place nowhere = static_cast<Place>(-1);

    [[nodiscard]] Place placeOf(const QString& path) const;

    /// Where each object's parent is; nowhere where that is not known or leads back to the object.
    [[nodiscard]] std::vector<Place> parents() const;

    std::vector<AtspiItem> m_items;
    QHash<QString, Place> m_places;
};

} // namespace corvanta
