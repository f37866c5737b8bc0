// SPDX-License-Identifier: MIT
//
// A GTK program with a menu bar whose menus are never shown, driven by lines on its standard input. Each line is
// answered by "ok" on standard output; pressed entries and closed windows are reported there as they happen. With a
// second argument it owns that name on the session bus and reads no commands.
#include <gtk/gtk.h>

#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <map>
#include <string>

namespace {

void say(const std::string& line) {
    std::fputs((line + "\n").c_str(), stdout);
    std::fflush(stdout);
}

void reportPress(GtkMenuItem* item, gpointer) {
    say(std::string("pressed ") + gtk_menu_item_get_label(item));
}

void reportMapping(GtkWidget*, gpointer) {
    say("popped up");
}

gboolean reportClosing(GtkWidget* window, GdkEvent*, gpointer) {
    say(std::string("closed ") + gtk_window_get_title(GTK_WINDOW(window)));
    return FALSE;
}

class Fixture {
public:
    Fixture() {
        m_window = makeWindow("Fixture Window");
        GtkWidget* const box = gtk_box_new(GTK_ORIENTATION_VERTICAL, 0);
        gtk_container_add(GTK_CONTAINER(m_window), box);
        GtkWidget* const bar = gtk_menu_bar_new();
        gtk_box_pack_start(GTK_BOX(box), bar, FALSE, FALSE, 0);
        gtk_box_pack_start(GTK_BOX(box), gtk_label_new("Content"), TRUE, TRUE, 0);

        GtkWidget* const file = addSubmenu(bar, "File");
        addEntry(file, "New Window");
        GtkWidget* const develop = addSubmenu(bar, "Develop");
        m_pages = addSubmenu(develop, "iPhone 16 Pro – iOS 18.2");
        gtk_widget_set_sensitive(addEntry(m_pages, "iPhone 16 Pro Simulator"), FALSE);
        gtk_menu_shell_append(GTK_MENU_SHELL(m_pages), gtk_separator_menu_item_new());
        GtkWidget* const check = gtk_check_menu_item_new_with_label("Automatically Show Web Inspector for JSContexts");
        gtk_menu_shell_append(GTK_MENU_SHELL(m_pages), check);
        addPage("localhost — first");
        addPage("localhost — second");
        gtk_widget_show_all(m_window);
    }

    void obey(const std::string& line) {
        const auto space = line.find(' ');
        const std::string verb = line.substr(0, space);
        const std::string rest = space == std::string::npos ? std::string() : line.substr(space + 1);
        if (verb == "add") {
            addPage(rest);
        } else if (verb == "remove") {
            gtk_widget_destroy(m_items.at(rest));
            m_items.erase(rest);
        } else if (verb == "rename") {
            const auto bar = rest.find('|');
            GtkWidget* const item = m_items.at(rest.substr(0, bar));
            m_items.erase(rest.substr(0, bar));
            gtk_menu_item_set_label(GTK_MENU_ITEM(item), rest.substr(bar + 1).c_str());
            m_items[rest.substr(bar + 1)] = item;
        } else if (verb == "disable") {
            gtk_widget_set_sensitive(m_items.at(rest), FALSE);
        } else if (verb == "title") {
            gtk_window_set_title(GTK_WINDOW(m_window), rest.c_str());
        } else if (verb == "fill") {
            const int count = std::stoi(rest);
            for (int index = 0; index < count; ++index)
                addPage("filled — page " + std::to_string(index));
        } else if (verb == "window") {
            m_latest = makeWindow(rest);
            gtk_widget_show_all(m_latest);
        } else if (verb == "headerbar") {
            GtkWidget* const window = makeWindow(rest);
            GtkWidget* const header = gtk_header_bar_new();
            gtk_header_bar_set_title(GTK_HEADER_BAR(header), rest.c_str());
            gtk_header_bar_set_show_close_button(GTK_HEADER_BAR(header), TRUE);
            gtk_window_set_titlebar(GTK_WINDOW(window), header);
            gtk_widget_show_all(window);
            m_latest = window;
        } else if (verb == "minimum") {
            const int size = std::stoi(rest);
            gtk_widget_set_size_request(m_window, size, size);
        } else if (verb == "iconify") {
            gtk_window_iconify(GTK_WINDOW(m_window));
        } else if (verb == "maximize") {
            gtk_window_maximize(GTK_WINDOW(rest == "latest" ? m_latest : m_window));
        } else if (verb == "hide") {
            gtk_widget_hide(m_window);
        } else if (verb == "show") {
            gtk_widget_show(m_window);
        } else if (verb == "quit") {
            say("ok");
            std::exit(0);
        }
        say("ok");
    }

private:
    GtkWidget* makeWindow(const std::string& title) {
        GtkWidget* const window = gtk_window_new(GTK_WINDOW_TOPLEVEL);
        gtk_window_set_title(GTK_WINDOW(window), title.c_str());
        gtk_window_set_default_size(GTK_WINDOW(window), 400, 300);
        g_signal_connect(window, "delete-event", G_CALLBACK(reportClosing), nullptr);
        return window;
    }

    GtkWidget* addSubmenu(GtkWidget* shell, const char* label) {
        GtkWidget* const item = gtk_menu_item_new_with_label(label);
        GtkWidget* const menu = gtk_menu_new();
        g_signal_connect(menu, "map", G_CALLBACK(reportMapping), nullptr);
        gtk_menu_item_set_submenu(GTK_MENU_ITEM(item), menu);
        gtk_menu_shell_append(GTK_MENU_SHELL(shell), item);
        return menu;
    }

    GtkWidget* addEntry(GtkWidget* menu, const std::string& label) {
        GtkWidget* const item = gtk_menu_item_new_with_label(label.c_str());
        g_signal_connect(item, "activate", G_CALLBACK(reportPress), nullptr);
        gtk_menu_shell_append(GTK_MENU_SHELL(menu), item);
        gtk_widget_show(item);
        return item;
    }

    void addPage(const std::string& label) {
        GtkWidget* const item = addEntry(m_pages, label);
        gtk_menu_reorder_child(GTK_MENU(m_pages), item, 1 + static_cast<int>(m_items.size()));
        m_items[label] = item;
    }

    GtkWidget* m_window = nullptr;
    GtkWidget* m_latest = nullptr;
    GtkWidget* m_pages = nullptr;
    std::map<std::string, GtkWidget*> m_items;
};

gboolean readLine(GIOChannel* channel, GIOCondition, gpointer fixture) {
    char* text = nullptr;
    gsize terminator = 0;
    if (g_io_channel_read_line(channel, &text, nullptr, &terminator, nullptr) != G_IO_STATUS_NORMAL) {
        gtk_main_quit();
        return FALSE;
    }
    const std::string line(text, terminator);
    g_free(text);
    static_cast<Fixture*>(fixture)->obey(line);
    return TRUE;
}

} // namespace

int main(int argc, char** argv) {
    g_set_prgname(argc > 1 ? argv[1] : "dev.corvanta.MenuFixture");
    gtk_init(nullptr, nullptr);
    Fixture fixture;
    if (argc > 2) {
        g_bus_own_name(G_BUS_TYPE_SESSION, argv[2], G_BUS_NAME_OWNER_FLAGS_NONE, nullptr, nullptr, nullptr, nullptr,
                       nullptr);
    } else {
        GIOChannel* const input = g_io_channel_unix_new(0);
        g_io_add_watch(input, static_cast<GIOCondition>(G_IO_IN | G_IO_HUP), readLine, &fixture);
    }
    say("ready");
    gtk_main();
    return 0;
}
