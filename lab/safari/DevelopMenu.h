// SPDX-License-Identifier: MIT
#pragma once

#include "DeviceMenuItem.h"
#include "GlibPointers.h"

#include <gtk/gtk.h>

#include <memory>
#include <string>
#include <vector>

namespace corvanta::lab {

/// The Develop item of the menu bar with a submenu for each booted device.
///
/// Every update changes only what is different: the item of a page that stays is never recreated or moved and keeps its
/// accessible object, also when its title changes. An update is whole before the main loop runs again, so nobody who
/// reads the menu sees a half of it. Main thread only.
class DevelopMenu {
public:
    explicit DevelopMenu(DeviceMenuItem::Handlers handlers);
    DevelopMenu(const DevelopMenu&) = delete;
    DevelopMenu& operator=(const DevelopMenu&) = delete;
    ~DevelopMenu();

    /// The menu-bar item; this object keeps it alive while it is in no menu bar.
    [[nodiscard]] GtkWidget* item() const { return m_item.get(); }

    /// Adds an item below the devices; used while the menu is built.
    void append(GtkWidget* item);

    /// The devices to be listed, in order.
    void setDevices(const std::vector<LabDevice>& devices);
    /// What a listed device has for the inspector, in the order of opening; ignored for others.
    void setTargets(const std::string& busName, const InspectableTargets& targets);
    /// What is switched on for a listed device; ignored for others.
    void setSwitches(const std::string& busName, const DeviceSwitches& switches);

private:
    GlibPointer<GtkWidget> m_item;
    GtkWidget* m_menu = nullptr;
    GtkWidget* m_placeholder = nullptr;
    DeviceMenuItem::Handlers m_handlers;
    std::vector<std::unique_ptr<DeviceMenuItem>> m_devices;
};

} // namespace corvanta::lab
