// SPDX-License-Identifier: MIT
#pragma once

#include "InspectableTarget.h"

#include <gtk/gtk.h>

#include <functional>
#include <memory>
#include <vector>

namespace corvanta::lab {

/// The items of some targets, one behind the other in a menu.
///
/// An update changes only what is different: the item of a target that stays is never recreated or moved and keeps its
/// accessible object, also when its title changes. The menu destroys what is left in it. Main thread only.
class TargetItems {
public:
    using PressHandler = std::function<void(const TargetIdentifier&)>;

    TargetItems(GtkWidget* menu, PressHandler onPress);
    TargetItems(const TargetItems&) = delete;
    TargetItems& operator=(const TargetItems&) = delete;

    /// Has an item for each of the targets, the first one at `position` of the menu.
    void set(const InspectableTargets& targets, int position);

    [[nodiscard]] int count() const { return static_cast<int>(m_items.size()); }

private:
    struct Item {
        TargetItems* owner;
        TargetIdentifier target;
        GtkWidget* widget;
    };

    void insert(std::size_t index, const InspectableTarget& target, int position);

    GtkWidget* m_menu;
    PressHandler m_onPress;
    std::vector<std::unique_ptr<Item>> m_items;
};

} // namespace corvanta::lab
