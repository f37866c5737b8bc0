// SPDX-License-Identifier: MIT
#include "TargetItems.h"

#include "MenuBuilder.h"
#include "PageTitle.h"

#include <algorithm>
#include <utility>

namespace corvanta::lab {

TargetItems::TargetItems(GtkWidget* menu, PressHandler onPress)
    : m_menu(menu)
    , m_onPress(std::move(onPress)) {}

void TargetItems::set(const InspectableTargets& targets, int position) {
    std::erase_if(m_items, [&targets](const std::unique_ptr<Item>& item) {
        const bool isGone = std::ranges::find(targets, item->target, &InspectableTarget::identifier) == targets.end();
        if (isGone)
            gtk_widget_destroy(item->widget);
        return isGone;
    });
    for (std::size_t index = 0; index < targets.size(); ++index) {
        const InspectableTarget& target = targets[index];
        if (index < m_items.size() && m_items[index]->target == target.identifier)
            relabel(m_items[index]->widget, targetTitle(target));
        else
            insert(index, target, position);
    }
}

void TargetItems::insert(std::size_t index, const InspectableTarget& target, int position) {
    GtkWidget* const widget = makePlainItem(targetTitle(target).c_str());
    auto item = std::make_unique<Item>(Item{this, target.identifier, widget});
    g_signal_connect(widget, "activate",
                     G_CALLBACK(+[](GtkMenuItem*, Item* pressed) { pressed->owner->m_onPress(pressed->target); }),
                     item.get());
    gtk_menu_shell_insert(GTK_MENU_SHELL(m_menu), widget, position + static_cast<gint>(index));
    m_items.insert(m_items.begin() + static_cast<std::ptrdiff_t>(index), std::move(item));
}

} // namespace corvanta::lab
