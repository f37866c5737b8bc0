// SPDX-License-Identifier: MIT
#include "SettingsWindow.h"

namespace corvanta::lab {

SettingsWindow::SettingsWindow(SafariSettings& settings)
    : m_settings(settings) {}

SettingsWindow::~SettingsWindow() {
    if (m_window)
        gtk_widget_destroy(m_window);
}

void SettingsWindow::present(GtkWindow* over) {
    if (!m_window)
        build(over);
    refresh();
    gtk_widget_grab_focus(m_switch);
    gtk_window_present(GTK_WINDOW(m_window));
}

void SettingsWindow::refresh() {
    if (m_window)
        gtk_switch_set_active(GTK_SWITCH(m_switch), m_settings.values().developerFeatures);
}

void SettingsWindow::build(GtkWindow* over) {
    m_window = gtk_window_new(GTK_WINDOW_TOPLEVEL);
    gtk_window_set_title(GTK_WINDOW(m_window), "Settings");
    gtk_window_set_transient_for(GTK_WINDOW(m_window), over);
    gtk_window_set_type_hint(GTK_WINDOW(m_window), GDK_WINDOW_TYPE_HINT_DIALOG);
    gtk_window_set_resizable(GTK_WINDOW(m_window), FALSE);
    g_signal_connect(m_window, "delete-event", G_CALLBACK(gtk_widget_hide_on_delete), nullptr);
    g_signal_connect(m_window, "key-press-event", G_CALLBACK(+[](GtkWidget* window, GdkEventKey* event) -> gboolean {
                         if (event->keyval != GDK_KEY_Escape)
                             return FALSE;
                         gtk_widget_hide(window);
                         return TRUE;
                     }),
                     nullptr);

    GtkWidget* const title = gtk_label_new_with_mnemonic("_Show features for web developers");
    GtkWidget* const explanation = gtk_label_new("Adds the Develop menu, which opens the Web Inspector on the pages of "
                                                 "booted devices.");
    m_problem = gtk_label_new(nullptr);
    for (GtkWidget* const label : {title, explanation, m_problem}) {
        gtk_label_set_xalign(GTK_LABEL(label), 0);
        gtk_label_set_line_wrap(GTK_LABEL(label), TRUE);
        gtk_label_set_max_width_chars(GTK_LABEL(label), 44);
    }
    gtk_style_context_add_class(gtk_widget_get_style_context(explanation), GTK_STYLE_CLASS_DIM_LABEL);
    gtk_style_context_add_class(gtk_widget_get_style_context(m_problem), "error");

    m_switch = gtk_switch_new();
    gtk_widget_set_valign(m_switch, GTK_ALIGN_CENTER);
    gtk_label_set_mnemonic_widget(GTK_LABEL(title), m_switch);
    atk_object_set_name(gtk_widget_get_accessible(m_switch), "Show features for web developers");
    refresh();
    g_signal_connect_swapped(m_switch, "notify::active", G_CALLBACK(+[](SettingsWindow* self) {
                                 self->store(gtk_switch_get_active(GTK_SWITCH(self->m_switch)) != FALSE);
                             }),
                             this);

    GtkWidget* const grid = gtk_grid_new();
    gtk_container_set_border_width(GTK_CONTAINER(grid), 20);
    gtk_grid_set_column_spacing(GTK_GRID(grid), 32);
    gtk_grid_set_row_spacing(GTK_GRID(grid), 4);
    gtk_grid_attach(GTK_GRID(grid), title, 0, 0, 1, 1);
    gtk_grid_attach(GTK_GRID(grid), explanation, 0, 1, 1, 1);
    gtk_grid_attach(GTK_GRID(grid), m_switch, 1, 0, 1, 2);
    gtk_grid_attach(GTK_GRID(grid), m_problem, 0, 2, 2, 1);

    GtkWidget* const panes = gtk_notebook_new();
    gtk_notebook_set_show_border(GTK_NOTEBOOK(panes), FALSE);
    gtk_notebook_append_page(GTK_NOTEBOOK(panes), grid, gtk_label_new("Advanced"));
    gtk_container_add(GTK_CONTAINER(m_window), panes);
    gtk_widget_show_all(panes);
    gtk_widget_hide(m_problem);
}

void SettingsWindow::store(bool enabled) {
    SafariSettingsValues values = m_settings.values();
    values.developerFeatures = enabled;
    const std::string problem = m_settings.set(values);
    gtk_label_set_text(GTK_LABEL(m_problem), problem.c_str());
    gtk_widget_set_visible(m_problem, !problem.empty());
}

} // namespace corvanta::lab
