// SPDX-License-Identifier: MIT
#include "DevelopMenu.h"

#include "MenuBuilder.h"

#include <algorithm>
#include <utility>

namespace corvanta::lab {

DevelopMenu::DevelopMenu(DeviceMenuItem::Handlers handlers)
    : m_item(GTK_WIDGET(g_object_ref_sink(makeSubmenuItem("Develop"))))
    , m_menu(gtk_menu_new())
    , m_handlers(std::move(handlers)) {
    gtk_menu_item_set_submenu(GTK_MENU_ITEM(m_item.get()), m_menu);
    setDevices({});
}

DevelopMenu::~DevelopMenu() {
    m_devices.clear();
    gtk_widget_destroy(m_item.get());
}

void DevelopMenu::append(GtkWidget* item) {
    gtk_widget_show(item);
    gtk_menu_shell_append(GTK_MENU_SHELL(m_menu), item);
}

void DevelopMenu::setDevices(const std::vector<LabDevice>& devices) {
    std::erase_if(m_devices, [&devices](const std::unique_ptr<DeviceMenuItem>& item) {
        return std::ranges::find(devices, item->busName(), &LabDevice::busName) == devices.end();
    });
    for (std::size_t index = 0; index < devices.size(); ++index) {
        const auto known = std::ranges::find(m_devices, devices[index].busName, &DeviceMenuItem::busName);
        if (known == m_devices.end()) {
            auto item = std::make_unique<DeviceMenuItem>(devices[index], m_handlers);
            gtk_menu_shell_insert(GTK_MENU_SHELL(m_menu), item->widget(), static_cast<gint>(index));
            m_devices.insert(m_devices.begin() + static_cast<std::ptrdiff_t>(index), std::move(item));
            continue;
        }
        (*known)->setDevice(devices[index]);
        if (const auto position = m_devices.begin() + static_cast<std::ptrdiff_t>(index); known != position) {
            // Only a renamed device gets here.
            gtk_menu_reorder_child(GTK_MENU(m_menu), (*known)->widget(), static_cast<gint>(index));
            std::rotate(position, known, known + 1);
        }
    }
    if (m_devices.empty() && !m_placeholder) {
        m_placeholder = makePlainItem("No Booted Devices");
        gtk_widget_set_sensitive(m_placeholder, FALSE);
        gtk_menu_shell_insert(GTK_MENU_SHELL(m_menu), m_placeholder, 0);
    } else if (!m_devices.empty() && m_placeholder) {
        gtk_widget_destroy(std::exchange(m_placeholder, nullptr));
    }
}

void DevelopMenu::setTargets(const std::string& busName, const InspectableTargets& targets) {
    const auto device = std::ranges::find(m_devices, busName, &DeviceMenuItem::busName);
    if (device != m_devices.end())
        (*device)->setTargets(targets);
}

void DevelopMenu::setSwitches(const std::string& busName, const DeviceSwitches& switches) {
    const auto device = std::ranges::find(m_devices, busName, &DeviceMenuItem::busName);
    if (device != m_devices.end())
        (*device)->setSwitches(switches);
}

} // namespace corvanta::lab
