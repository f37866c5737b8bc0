// SPDX-License-Identifier: MIT
#include "DevelopMenu.h"

#include "LeafMenuItem.h"
#include "PageTitle.h"

#include <algorithm>
#include <utility>

namespace corvanta::lab {

namespace {

enum class Sensitivity { enabled, disabled };

/// Titles come from devices and pages: no character of them is a mnemonic or mark-up.
GtkWidget* plainItem(const char* title, Sensitivity sensitivity) {
    GtkWidget* const item = makeLeafMenuItem(title);
    gtk_widget_set_sensitive(item, sensitivity == Sensitivity::enabled);
    gtk_widget_show(item);
    return item;
}

GtkWidget* submenuItem(const char* title) {
    GtkWidget* const item = gtk_menu_item_new_with_label(title);
    gtk_widget_show(item);
    return item;
}

GtkWidget* separator() {
    GtkWidget* const item = gtk_separator_menu_item_new();
    gtk_widget_show(item);
    return item;
}

GtkWidget* checkItem(const char* title, Sensitivity sensitivity) {
    GtkWidget* const item = gtk_check_menu_item_new_with_label(title);
    gtk_widget_set_sensitive(item, sensitivity == Sensitivity::enabled);
    gtk_widget_show(item);
    return item;
}

void relabel(GtkWidget* item, const std::string& title) {
    if (title != gtk_menu_item_get_label(GTK_MENU_ITEM(item)))
        gtk_menu_item_set_label(GTK_MENU_ITEM(item), title.c_str());
}

} // namespace

/// The item of one device with the submenu of its pages.
class DevelopMenu::DeviceItem {
public:
    DeviceItem(const LabDevice& device, InspectHandler& onInspect)
        : m_busName(device.busName)
        , m_onInspect(onInspect)
        , m_item(submenuItem(""))
        , m_menu(gtk_menu_new())
        , m_header(plainItem("", Sensitivity::disabled)) {
        GtkMenuShell* const menu = GTK_MENU_SHELL(m_menu);
        gtk_menu_shell_append(menu, m_header);
        gtk_menu_shell_append(menu, separator());
        gtk_menu_shell_append(menu, checkItem("Automatically Show Web Inspector for JSContexts", Sensitivity::enabled));
        gtk_menu_shell_append(menu, checkItem("Automatically Pause Connecting to JSContexts", Sensitivity::enabled));
        gtk_menu_shell_append(menu, checkItem("Connect via Network", Sensitivity::disabled));
        gtk_menu_item_set_submenu(GTK_MENU_ITEM(m_item), m_menu);
        setDevice(device);
        setTargets({});
    }

    DeviceItem(const DeviceItem&) = delete;
    DeviceItem& operator=(const DeviceItem&) = delete;

    ~DeviceItem() { gtk_widget_destroy(m_item); }

    [[nodiscard]] const std::string& busName() const { return m_busName; }

    [[nodiscard]] GtkWidget* widget() const { return m_item; }

    void setDevice(const LabDevice& device) {
        relabel(m_item, device.title());
        relabel(m_header, device.name + " (Simulator)");
    }

    void setTargets(const InspectableTargets& targets) {
        std::erase_if(m_pages, [&targets](const std::unique_ptr<Page>& page) {
            const bool isGone =
                std::ranges::find(targets, page->target, &InspectableTarget::identifier) == targets.end();
            if (isGone)
                gtk_widget_destroy(page->item);
            return isGone;
        });
        for (std::size_t index = 0; index < targets.size(); ++index) {
            const InspectableTarget& target = targets[index];
            if (index < m_pages.size() && m_pages[index]->target == target.identifier)
                relabel(m_pages[index]->item, pageTitle(target.url));
            else
                insertPage(index, target);
        }
        showPlaceholder(m_pages.empty());
    }

private:
    struct Page {
        DeviceItem* device;
        TargetIdentifier target;
        GtkWidget* item;
    };

    static constexpr std::size_t itemsBeforePages = 1;

    void insertPage(std::size_t index, const InspectableTarget& target) {
        GtkWidget* const item = plainItem(pageTitle(target.url).c_str(), Sensitivity::enabled);
        auto page = std::make_unique<Page>(Page{this, target.identifier, item});
        g_signal_connect(item, "activate", G_CALLBACK(+[](GtkMenuItem*, Page* pressed) {
                             pressed->device->m_onInspect(pressed->device->m_busName, pressed->target);
                         }),
                         page.get());
        gtk_menu_shell_insert(GTK_MENU_SHELL(m_menu), item, static_cast<gint>(itemsBeforePages + index));
        m_pages.insert(m_pages.begin() + static_cast<std::ptrdiff_t>(index), std::move(page));
    }

    void showPlaceholder(bool isEmpty) {
        if (isEmpty && !m_placeholder) {
            m_placeholder = plainItem("No Inspectable Applications", Sensitivity::disabled);
            gtk_menu_shell_insert(GTK_MENU_SHELL(m_menu), m_placeholder, itemsBeforePages);
        } else if (!isEmpty && m_placeholder) {
            gtk_widget_destroy(std::exchange(m_placeholder, nullptr));
        }
    }

    std::string m_busName;
    InspectHandler& m_onInspect;
    GtkWidget* m_item;
    GtkWidget* m_menu;
    GtkWidget* m_header;
    GtkWidget* m_placeholder = nullptr;
    std::vector<std::unique_ptr<Page>> m_pages;
};

DevelopMenu::DevelopMenu(InspectHandler onInspect)
    : m_item(GTK_WIDGET(g_object_ref_sink(submenuItem("Develop"))))
    , m_menu(gtk_menu_new())
    , m_onInspect(std::move(onInspect)) {
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
    std::erase_if(m_devices, [&devices](const std::unique_ptr<DeviceItem>& item) {
        return std::ranges::find(devices, item->busName(), &LabDevice::busName) == devices.end();
    });
    for (std::size_t index = 0; index < devices.size(); ++index) {
        const auto known = std::ranges::find(m_devices, devices[index].busName, &DeviceItem::busName);
        if (known == m_devices.end()) {
            auto item = std::make_unique<DeviceItem>(devices[index], m_onInspect);
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
        m_placeholder = plainItem("No Booted Devices", Sensitivity::disabled);
        gtk_menu_shell_insert(GTK_MENU_SHELL(m_menu), m_placeholder, 0);
    } else if (!m_devices.empty() && m_placeholder) {
        gtk_widget_destroy(std::exchange(m_placeholder, nullptr));
    }
}

void DevelopMenu::setTargets(const std::string& busName, const InspectableTargets& targets) {
    const auto device = std::ranges::find(m_devices, busName, &DeviceItem::busName);
    if (device != m_devices.end())
        (*device)->setTargets(targets);
}

} // namespace corvanta::lab
