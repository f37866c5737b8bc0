// SPDX-License-Identifier: MIT
#include "SettingsWindow.h"

#include "ShownText.h"

namespace corvanta::lab {

namespace {

constexpr int textWidth = 46;

GtkWidget* paragraph(GtkWidget* label) {
    gtk_label_set_xalign(GTK_LABEL(label), 0);
    gtk_label_set_line_wrap(GTK_LABEL(label), TRUE);
    gtk_label_set_width_chars(GTK_LABEL(label), textWidth);
    gtk_label_set_max_width_chars(GTK_LABEL(label), textWidth);
    return label;
}

} // namespace

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
    gtk_widget_grab_focus(m_developerFeatures.widget);
    gtk_window_present(GTK_WINDOW(m_window));
}

void SettingsWindow::refresh() {
    if (!m_window)
        return;
    for (const Switch& known : {m_developerFeatures, m_sampleContext, m_sampleExtension})
        gtk_switch_set_active(GTK_SWITCH(known.widget), m_settings.values().*known.value);
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

    GtkWidget* const panes = gtk_notebook_new();
    gtk_notebook_set_show_border(GTK_NOTEBOOK(panes), FALSE);
    addSwitch(addPane(panes, "Advanced"), m_developerFeatures, "_Show features for web developers",
              "Adds the Develop menu, which opens the Web Inspector on the pages of booted devices.");
    GtkWidget* const samples = addPane(panes, "Samples");
    addSwitch(samples, m_sampleContext, "An _app with a JSContext",
              "Every booted device runs a small app without any page, which is listed below its pages.");
    addSwitch(samples, m_sampleExtension, "A web _extension",
              "Every booted device has an extension with a background page, listed in the group Extensions.");

    m_problem = paragraph(gtk_label_new(nullptr));
    gtk_widget_set_margin_start(m_problem, 20);
    gtk_widget_set_margin_bottom(m_problem, 16);
    gtk_style_context_add_class(gtk_widget_get_style_context(m_problem), GTK_STYLE_CLASS_ERROR);
    GtkWidget* const column = gtk_box_new(GTK_ORIENTATION_VERTICAL, 0);
    gtk_box_pack_start(GTK_BOX(column), panes, TRUE, TRUE, 0);
    gtk_box_pack_start(GTK_BOX(column), m_problem, FALSE, FALSE, 0);
    gtk_container_add(GTK_CONTAINER(m_window), column);
    gtk_widget_show_all(column);
    gtk_widget_hide(m_problem);
}

GtkWidget* SettingsWindow::addPane(GtkWidget* panes, const char* title) {
    GtkWidget* const pane = gtk_grid_new();
    gtk_container_set_border_width(GTK_CONTAINER(pane), 20);
    gtk_grid_set_column_spacing(GTK_GRID(pane), 32);
    gtk_grid_set_row_spacing(GTK_GRID(pane), 4);
    gtk_notebook_append_page(GTK_NOTEBOOK(panes), pane, gtk_label_new(title));
    return pane;
}

void SettingsWindow::addSwitch(GtkWidget* pane, Switch& added, const char* title, const char* explanation) {
    constexpr int rowsPerSwitch = 2;
    int row = 0;
    while (gtk_grid_get_child_at(GTK_GRID(pane), 0, row))
        row += rowsPerSwitch;
    GtkWidget* const label = paragraph(gtk_label_new_with_mnemonic(title));
    GtkWidget* const text = paragraph(gtk_label_new(explanation));
    gtk_style_context_add_class(gtk_widget_get_style_context(text), GTK_STYLE_CLASS_DIM_LABEL);
    if (row > 0)
        gtk_widget_set_margin_top(label, 14);

    added.widget = gtk_switch_new();
    gtk_widget_set_valign(added.widget, GTK_ALIGN_CENTER);
    gtk_label_set_mnemonic_widget(GTK_LABEL(label), added.widget);
    AtkObject* const accessible = gtk_widget_get_accessible(added.widget);
    atk_object_set_name(accessible, gtk_label_get_text(GTK_LABEL(label)));
    atk_object_set_description(accessible, explanation);
    gtk_switch_set_active(GTK_SWITCH(added.widget), m_settings.values().*added.value);
    g_signal_connect_swapped(added.widget, "notify::active",
                             G_CALLBACK(+[](Switch* changed) { changed->window->store(*changed); }), &added);

    gtk_grid_attach(GTK_GRID(pane), label, 0, row, 1, 1);
    gtk_grid_attach(GTK_GRID(pane), text, 0, row + 1, 1, 1);
    gtk_grid_attach(GTK_GRID(pane), added.widget, 1, row, 1, rowsPerSwitch);
}

void SettingsWindow::store(const Switch& changed) {
    SafariSettingsValues values = m_settings.values();
    values.*changed.value = gtk_switch_get_active(GTK_SWITCH(changed.widget)) != FALSE;
    const std::string problem = m_settings.set(values);
    gtk_label_set_text(GTK_LABEL(m_problem), shownText(problem).c_str());
    gtk_widget_set_visible(m_problem, !problem.empty());
}

} // namespace corvanta::lab
