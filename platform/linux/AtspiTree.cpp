// SPDX-License-Identifier: MIT
#include "AtspiTree.h"

#include <algorithm>
#include <utility>

namespace corvanta {

const AtspiItem* AtspiTree::item(const QString& path) const {
    const auto found = m_items.constFind(path);
    return found == m_items.cend() ? nullptr : &*found;
}

void AtspiTree::insert(AtspiItem item) {
    m_items.insert(item.reference.path, std::move(item));
}

void AtspiTree::setChildren(const QString& path, QList<AtspiReference> children) {
    const auto found = m_items.find(path);
    if (found == m_items.end())
        return;
    found->children = std::move(children);
    found->areChildrenKnown = true;
}

void AtspiTree::link() {
    using Child = std::pair<int, AtspiReference>;
    QHash<QString, QList<Child>> byParent;
    for (const AtspiItem& item : std::as_const(m_items)) {
        const auto parent = m_items.constFind(item.parent.path);
        if (parent != m_items.cend() && parent->reference == item.parent)
            byParent[item.parent.path].append({item.indexInParent, item.reference});
    }
    for (AtspiItem& item : m_items) {
        if (item.areChildrenKnown || item.childCount < 0)
            continue;
        QList<Child> children = byParent.value(item.reference.path);
        if (children.size() != item.childCount)
            continue;
        std::ranges::sort(children, {}, &Child::first);
        const bool isInOrder =
            children.size() < 2 ||
            std::ranges::all_of(children, [&](const Child& child) { return child.first == &child - children.data(); });
        if (!isInOrder)
            continue;
        for (const Child& child : std::as_const(children))
            item.children.append(child.second);
        item.areChildrenKnown = true;
    }
}

bool AtspiTree::opensSubmenu(const AtspiItem& item) const {
    if (item.role != AtspiRole::menu)
        return false;
    const AtspiItem* const parent = this->item(item.parent.path);
    return parent != nullptr && (parent->role == AtspiRole::menuBar || parent->role == AtspiRole::menu);
}

void AtspiTree::merge(AtspiTree other) {
    m_items.insert(other.m_items);
}

QList<QString> AtspiTree::withUnknownChildren() const {
    QList<QString> paths;
    for (const AtspiItem& item : m_items) {
        if (!item.areChildrenKnown)
            paths.append(item.reference.path);
    }
    return paths;
}

} // namespace corvanta
