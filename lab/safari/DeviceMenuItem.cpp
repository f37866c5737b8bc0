// SPDX-License-Identifier: MIT
#include "DeviceMenuItem.h"

#include "LeafMenuItem.h"
#include "MenuBuilder.h"
#include "ShownText.h"

#include <algorithm>
#include <utility>

namespace corvanta::lab {

namespace {

/// Behind the line that names the device.
constexpr int firstPosition = 1;

InspectableTargets ofKind(const InspectableTargets& targets, TargetKind kind) {
    InspectableTargets result;
    std::ranges::copy_if(targets, std::back_inserter(result),
                         [kind](const InspectableTarget& target) { return target.kind == kind; });
    return result;
}

GtkWidget* placeholder() {
    GtkWidget* const item = makePlainItem("No Inspectable Applications");
    gtk_widget_set_sensitive(item, FALSE);
    return item;
}

} // namespace

class DeviceMenuItem::Group {
public:
    Group(GtkWidget* menu, const char* title, TargetItems::PressHandler onPress)
        : m_parent(menu)
        , m_item(GTK_WIDGET(g_object_ref_sink(makeSubmenuItem(title))))
        , m_menu(gtk_menu_new())
        , m_items(m_menu, std::move(onPress)) {
        gtk_menu_item_set_submenu(GTK_MENU_ITEM(m_item.get()), m_menu);
    }

    Group(const Group&) = delete;
    Group& operator=(const Group&) = delete;

    ~Group() { gtk_widget_destroy(m_item.get()); }

    /// Answers the position behind the group.
    int set(const InspectableTargets& targets, int position) {
        m_items.set(targets, 0);
        GtkWidget* const parent = gtk_widget_get_parent(m_item.get());
        if (targets.empty()) {
            if (parent)
                gtk_container_remove(GTK_CONTAINER(m_parent), m_item.get());
            return position;
        }
        if (!parent)
            gtk_menu_shell_insert(GTK_MENU_SHELL(m_parent), m_item.get(), position);
        return position + 1;
    }

private:
    GtkWidget* m_parent;
    GlibPointer<GtkWidget> m_item;
    GtkWidget* m_menu;
    TargetItems m_items;
};

DeviceMenuItem::DeviceMenuItem(const LabDevice& device, const Handlers& handlers)
    : m_busName(device.busName)
    , m_handlers(handlers)
    , m_item(makeSubmenuItem(""))
    , m_menu(gtk_menu_new())
    , m_header(makePlainItem(""))
    , m_pages(m_menu, [this](const TargetIdentifier& target) { m_handlers.onInspect(m_busName, target); })
    , m_contexts(m_menu, [this](const TargetIdentifier& target) { m_handlers.onInspect(m_busName, target); }) {
    const auto inspect = [this](const TargetIdentifier& target) { m_handlers.onInspect(m_busName, target); };
    m_workers = std::make_unique<Group>(m_menu, "Service Workers", inspect);
    m_extensions = std::make_unique<Group>(m_menu, "Extensions", inspect);
    gtk_widget_set_sensitive(m_header, FALSE);
    gtk_menu_shell_append(GTK_MENU_SHELL(m_menu), m_header);
    gtk_menu_shell_append(GTK_MENU_SHELL(m_menu), makeSeparatorItem());
    addSwitch(m_showsInspectors, "Automatically Show Web Inspector for JSContexts");
    addSwitch(m_pausesContexts, "Automatically Pause Connecting to JSContexts");
    addSwitch(m_connectsViaNetwork, "Connect via Network");
    gtk_menu_item_set_submenu(GTK_MENU_ITEM(m_item), m_menu);
    setDevice(device);
    setTargets({});
}

DeviceMenuItem::~DeviceMenuItem() {
    m_workers.reset();
    m_extensions.reset();
    gtk_widget_destroy(m_item);
}

void DeviceMenuItem::addSwitch(Switch& added, const char* title) {
    added.item = makeLeafCheckItem(title);
    gtk_widget_show(added.item);
    gtk_menu_shell_append(GTK_MENU_SHELL(m_menu), added.item);
    g_signal_connect(added.item, "toggled", G_CALLBACK(+[](GtkCheckMenuItem* item, Switch* toggled) {
                         DeviceMenuItem& device = *toggled->device;
                         const bool isOn = gtk_check_menu_item_get_active(item) != FALSE;
                         // The switch may just be following the settings.
                         if (std::exchange(device.m_switches.*toggled->value, isOn) != isOn)
                             device.m_handlers.onSwitch(device.m_busName, device.m_switches);
                     }),
                     &added);
}

void DeviceMenuItem::setDevice(const LabDevice& device) {
    relabel(m_item, shownLine(device.title()));
    relabel(m_header, shownLine(device.name) + " (Simulator)");
}

void DeviceMenuItem::setTargets(const InspectableTargets& targets) {
    const InspectableTargets pages = ofKind(targets, TargetKind::page);
    const InspectableTargets contexts = ofKind(targets, TargetKind::javaScriptContext);
    const InspectableTargets workers = ofKind(targets, TargetKind::serviceWorker);
    const InspectableTargets extensions = ofKind(targets, TargetKind::extensionPage);
    int position = show(m_placeholder, pages.empty() && contexts.empty(), firstPosition, placeholder);
    m_pages.set(pages, position);
    position = show(m_contextsLine, !contexts.empty(), position + m_pages.count(), makeSeparatorItem);
    m_contexts.set(contexts, position);
    position =
        show(m_groupsLine, !workers.empty() || !extensions.empty(), position + m_contexts.count(), makeSeparatorItem);
    position = m_workers->set(workers, position);
    m_extensions->set(extensions, position);
}

void DeviceMenuItem::setSwitches(const DeviceSwitches& switches) {
    m_switches = switches;
    for (const Switch& known : {m_showsInspectors, m_pausesContexts, m_connectsViaNetwork})
        gtk_check_menu_item_set_active(GTK_CHECK_MENU_ITEM(known.item), switches.*known.value);
}

int DeviceMenuItem::show(GtkWidget*& child, bool isShown, int position, GtkWidget* (*make)()) {
    if (isShown && !child) {
        child = make();
        gtk_menu_shell_insert(GTK_MENU_SHELL(m_menu), child, position);
    } else if (!isShown && child) {
        gtk_widget_destroy(std::exchange(child, nullptr));
    }
    return position + (isShown ? 1 : 0);
}

} // namespace corvanta::lab
