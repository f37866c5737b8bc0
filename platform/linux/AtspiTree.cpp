// SPDX-License-Identifier: MIT
#include "AtspiTree.h"

#include <QSet>

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
    const Place place = placeOf(path);
    return place == nowhere ? nullptr : &m_items[place];
}

AtspiTree::Place AtspiTree::placeOf(const QString& path) const {
    return m_places.value(path, nowhere);
}

void AtspiTree::reserve(qsizetype count) {
    m_items.reserve(static_cast<std::size_t>(count));
    m_places.reserve(count);
}

void AtspiTree::insert(AtspiItem item) {
    const Place known = placeOf(item.reference.path);
    if (known != nowhere) {
        m_items[known] = std::move(item);
        return;
    }
    m_places.insert(item.reference.path, m_items.size());
    m_items.push_back(std::move(item));
}

void AtspiTree::setChildren(const QString& path, const QList<AtspiReference>& children) {
    const Place place = placeOf(path);
    if (place == nowhere)
        return;
    AtspiItem& found = m_items[place];
    QList<AtspiReference> above;
    for (const AtspiItem* item = &found;
         item != nullptr && above.size() <= deepestLevel && !above.contains(item->reference); item = parentOf(*item))
        above.append(item->reference);
    found.children.clear();
    std::ranges::copy_if(children, std::back_inserter(found.children),
                         [&](const AtspiReference& child) { return !above.contains(child); });
    found.areChildrenKnown = true;
}

const AtspiItem* AtspiTree::parentOf(const AtspiItem& item) const {
    const AtspiItem* const parent = this->item(item.parent.path);
    return parent != nullptr && parent->reference == item.parent ? parent : nullptr;
}

std::vector<AtspiTree::Place> AtspiTree::parents() const {
    std::vector<Place> parents(m_items.size(), nowhere);
    for (Place place = 0; place < m_items.size(); ++place) {
        const AtspiReference& parent = m_items[place].parent;
        // Children often follow each other.
        const bool isLikeLast = place > 0 && parents[place - 1] != nowhere && m_items[place - 1].parent == parent;
        const Place found = isLikeLast ? parents[place - 1] : placeOf(parent.path);
        if (found != nowhere && m_items[found].reference == parent)
            parents[place] = found;
    }
    // The walk upwards that came by first; none is 0.
    std::vector<Place> walks(m_items.size(), 0);
    std::vector<Place> inCircles;
    for (Place start = 0; start < m_items.size(); ++start) {
        Place place = start;
        for (; place != nowhere && walks[place] == 0; place = parents[place])
            walks[place] = start + 1;
        if (place == nowhere || walks[place] != start + 1)
            continue;
        // This walk met itself: it stands in a circle now.
        for (const Place met = place; inCircles.empty() || inCircles.back() != met;) {
            place = parents[place];
            inCircles.push_back(place);
        }
    }
    for (const Place place : inCircles)
        parents[place] = nowhere;
    return parents;
}

void AtspiTree::link() {
    const std::vector<Place> parents = this->parents();
    std::vector<std::vector<Place>> children(m_items.size());
    for (Place place = 0; place < m_items.size(); ++place) {
        if (parents[place] != nowhere)
            children[parents[place]].push_back(place);
    }
    const auto index = [this](Place place) { return m_items[place].indexInParent; };
    for (Place place = 0; place < m_items.size(); ++place) {
        AtspiItem& item = m_items[place];
        std::vector<Place>& below = children[place];
        if (item.areChildrenKnown || item.childCount < 0 || std::cmp_not_equal(below.size(), item.childCount))
            continue;
        std::ranges::sort(below, {}, index);
        const bool isInOrder =
            below.size() < 2 ||
            std::ranges::all_of(below, [&](const Place& child) { return index(child) == &child - below.data(); });
        if (!isInOrder)
            continue;
        item.children.reserve(static_cast<qsizetype>(below.size()));
        for (const Place child : below)
            item.children.append(m_items[child].reference);
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
    for (const AtspiItem& item : other.m_items)
        insert(item);
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
