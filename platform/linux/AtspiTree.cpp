// SPDX-License-Identifier: MIT
#include "AtspiTree.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace corvanta {

namespace {

/// Far deeper than programs nest their objects; what lies below is not followed.
constexpr int deepestLevel = 64;

const AtspiItem* firstWithRoleBelow(const AtspiTree& tree, const AtspiItem& item, AtspiRole role, int levels,
                                    QSet<QString>& visited) {
    if (item.role == role)
        return &item;
    visited.insert(item.reference.path);
    if (levels == 0)
        return nullptr;
    for (const AtspiReference& child : item.children) {
        if (child.bus != item.reference.bus || visited.contains(child.path))
            continue;
        const AtspiItem* const known = tree.item(child.path);
        const AtspiItem* const found =
            known == nullptr ? nullptr : firstWithRoleBelow(tree, *known, role, levels - 1, visited);
        if (found != nullptr)
            return found;
    }
    return nullptr;
}

} // namespace

const AtspiItem* AtspiTree::item(const QString& path) const {
    const auto found = m_items.constFind(path);
    return found == m_items.cend() ? nullptr : &*found;
}

void AtspiTree::insert(const AtspiItem& item) {
    m_items.insert(item.reference.path, item);
}

void AtspiTree::setChildren(const QString& path, const QList<AtspiReference>& children) {
    const auto found = m_items.find(path);
    if (found == m_items.end())
        return;
    QList<AtspiReference> above;
    for (const AtspiItem* item = &*found;
         item != nullptr && above.size() <= deepestLevel && !above.contains(item->reference); item = parentOf(*item))
        above.append(item->reference);
    found->children.clear();
    std::ranges::copy_if(children, std::back_inserter(found->children),
                         [&](const AtspiReference& child) { return !above.contains(child); });
    found->areChildrenKnown = true;
}

const AtspiItem* AtspiTree::parentOf(const AtspiItem& item) const {
    const AtspiItem* const parent = this->item(item.parent.path);
    return parent != nullptr && parent->reference == item.parent ? parent : nullptr;
}

QSet<QString> AtspiTree::pathsInCircles() const {
    QSet<QString> circles;
    // By the walk upwards that came by first.
    QHash<QString, qsizetype> walks;
    qsizetype walk = 0;
    for (const AtspiItem& start : m_items) {
        ++walk;
        const AtspiItem* item = &start;
        while (item != nullptr && !walks.contains(item->reference.path)) {
            walks.insert(item->reference.path, walk);
            item = parentOf(*item);
        }
        if (item == nullptr || walks.value(item->reference.path) != walk)
            continue;
        // This walk met itself: it stands in a circle now.
        while (!circles.contains(item->reference.path)) {
            circles.insert(item->reference.path);
            item = parentOf(*item);
        }
    }
    return circles;
}

void AtspiTree::link() {
    using Child = std::pair<int, AtspiReference>;
    const QSet<QString> circles = pathsInCircles();
    QHash<QString, QList<Child>> byParent;
    for (const AtspiItem& item : std::as_const(m_items)) {
        if (parentOf(item) != nullptr && !circles.contains(item.reference.path))
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

const AtspiItem* AtspiTree::firstWithRole(const AtspiItem& top, AtspiRole role) const {
    QSet<QString> visited;
    return firstWithRoleBelow(*this, top, role, deepestLevel, visited);
}

bool AtspiTree::opensSubmenu(const AtspiItem& item) const {
    if (item.role != AtspiRole::menu)
        return false;
    const AtspiItem* const parent = this->item(item.parent.path);
    return parent != nullptr && (parent->role == AtspiRole::menuBar || parent->role == AtspiRole::menu);
}

void AtspiTree::merge(const AtspiTree& other) {
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
