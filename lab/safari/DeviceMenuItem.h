// SPDX-License-Identifier: MIT
#pragma once

#include "LabDevice.h"
#include "SafariSettings.h"
#include "TargetItems.h"

#include <gtk/gtk.h>

#include <functional>
#include <optional>
#include <string>

namespace corvanta::lab {

/// The item of one device in the Develop menu, with its submenu: the pages, the contexts of apps, the groups "Service
/// Workers" and "Extensions" and the device's switches. What is empty is not there. Main thread only.
class DeviceMenuItem {
public:
    struct Handlers {
        std::function<void(const std::string& busName, const TargetIdentifier& target)> onInspect;
        std::function<void(const std::string& busName, const DeviceSwitches& switches)> onSwitch;
    };

    /// `handlers` outlives the item.
    DeviceMenuItem(const LabDevice& device, const Handlers& handlers);
    DeviceMenuItem(const DeviceMenuItem&) = delete;
    DeviceMenuItem& operator=(const DeviceMenuItem&) = delete;
    ~DeviceMenuItem();

    [[nodiscard]] const std::string& busName() const { return m_busName; }

    /// What is put into the Develop menu.
    [[nodiscard]] GtkWidget* widget() const { return m_item; }

    void setDevice(const LabDevice& device);
    void setTargets(const InspectableTargets& targets);
    void setSwitches(const DeviceSwitches& switches);

private:
    /// A submenu that is in the menu while it has items.
    class Group;

    struct Switch {
        DeviceMenuItem* device;
        bool DeviceSwitches::* value;
        GtkWidget* item = nullptr;
    };

    void addSwitch(Switch& added, const char* title);
    /// Has a child in the menu at `position`, or has none; answers the position behind it.
    int show(GtkWidget*& child, bool isShown, int position, GtkWidget* (*make)());

    std::string m_busName;
    const Handlers& m_handlers;
    GtkWidget* m_item;
    GtkWidget* m_menu;
    GtkWidget* m_header;
    GtkWidget* m_placeholder = nullptr;
    GtkWidget* m_contextsLine = nullptr;
    GtkWidget* m_groupsLine = nullptr;
    TargetItems m_pages;
    TargetItems m_contexts;
    std::unique_ptr<Group> m_workers;
    std::unique_ptr<Group> m_extensions;
    DeviceSwitches m_switches;
    Switch m_showsInspectors{this, &DeviceSwitches::showsInspectors};
    Switch m_pausesContexts{this, &DeviceSwitches::pausesContexts};
    Switch m_connectsViaNetwork{this, &DeviceSwitches::connectsViaNetwork};
};

} // namespace corvanta::lab
