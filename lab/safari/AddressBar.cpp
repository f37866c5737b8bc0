// SPDX-License-Identifier: MIT
#include "AddressBar.h"

#include "AddressText.h"
#include "ShownText.h"

#include <utility>

namespace corvanta::lab {

namespace {

/// A page may have an address of megabytes, which the field would lay out at every change.
constexpr std::size_t longestAddress = 2'000;

void name(GtkWidget* button, const char* icon, const char* text) {
    gtk_button_set_image(GTK_BUTTON(button), gtk_image_new_from_icon_name(icon, GTK_ICON_SIZE_BUTTON));
    gtk_widget_set_tooltip_text(button, text);
    atk_object_set_name(gtk_widget_get_accessible(button), text);
}

} // namespace

AddressBar::AddressBar(Handlers handlers)
    : m_handlers(std::move(handlers))
    , m_row(gtk_box_new(GTK_ORIENTATION_HORIZONTAL, 4)) {
    gtk_container_set_border_width(GTK_CONTAINER(m_row), 6);
    m_back = addButton("go-previous-symbolic", "Back", &Handlers::goBack);
    m_forward = addButton("go-next-symbolic", "Forward", &Handlers::goForward);

    m_entry = gtk_entry_new();
    gtk_entry_set_placeholder_text(GTK_ENTRY(m_entry), "Enter an address");
    gtk_entry_set_input_purpose(GTK_ENTRY(m_entry), GTK_INPUT_PURPOSE_URL);
    atk_object_set_name(gtk_widget_get_accessible(m_entry), "Address");
    gtk_box_pack_start(GTK_BOX(m_row), m_entry, TRUE, TRUE, 0);
    watchEntry();

    m_reload = gtk_button_new();
    gtk_button_set_relief(GTK_BUTTON(m_reload), GTK_RELIEF_NONE);
    name(m_reload, "view-refresh-symbolic", "Reload");
    g_signal_connect_swapped(m_reload, "clicked", G_CALLBACK(+[](AddressBar* self) {
                                 (self->m_state.isLoading ? self->m_handlers.stop : self->m_handlers.reload)();
                             }),
                             this);
    gtk_box_pack_start(GTK_BOX(m_row), m_reload, FALSE, FALSE, 0);
    addButton("tab-new-symbolic", "New Tab", &Handlers::newTab);
}

GtkWidget* AddressBar::addButton(const char* icon, const char* text, std::function<void()> Handlers::* action) {
    GtkWidget* const button = gtk_button_new();
    gtk_button_set_relief(GTK_BUTTON(button), GTK_RELIEF_NONE);
    name(button, icon, text);
    // The handlers stay where they are.
    g_signal_connect_swapped(button, "clicked", G_CALLBACK(+[](std::function<void()>* run) { (*run)(); }),
                             &(m_handlers.*action));
    gtk_box_pack_start(GTK_BOX(m_row), button, FALSE, FALSE, 0);
    return button;
}

void AddressBar::watchEntry() {
    g_signal_connect_swapped(m_entry, "activate", G_CALLBACK(+[](AddressBar* self) { self->openText(); }), this);
    g_signal_connect_swapped(m_entry, "changed", G_CALLBACK(+[](AddressBar* self) {
                                 self->m_isEdited = self->m_shown != gtk_entry_get_text(GTK_ENTRY(self->m_entry));
                                 gtk_style_context_remove_class(gtk_widget_get_style_context(self->m_entry),
                                                                GTK_STYLE_CLASS_ERROR);
                                 gtk_widget_set_tooltip_text(self->m_entry, nullptr);
                             }),
                             this);
    g_signal_connect_swapped(m_entry, "focus-in-event", G_CALLBACK(+[](AddressBar* self) -> gboolean {
                                 self->m_selectsAtRelease = true;
                                 return FALSE;
                             }),
                             this);
    // The first click selects everything, unless it has selected a part; the next ones place the cursor.
    g_signal_connect_swapped(m_entry, "button-release-event", G_CALLBACK(+[](AddressBar* self) -> gboolean {
                                 GtkEditable* const text = GTK_EDITABLE(self->m_entry);
                                 if (std::exchange(self->m_selectsAtRelease, false) &&
                                     gtk_editable_get_selection_bounds(text, nullptr, nullptr) == FALSE)
                                     gtk_editable_select_region(text, 0, -1);
                                 return FALSE;
                             }),
                             this);
    g_signal_connect(m_entry, "key-press-event",
                     G_CALLBACK(+[](GtkWidget*, GdkEventKey* event, AddressBar* self) -> gboolean {
                         self->m_selectsAtRelease = false;
                         if (event->keyval != GDK_KEY_Escape)
                             return FALSE;
                         self->showText();
                         self->m_handlers.leave();
                         return TRUE;
                     }),
                     this);
}

void AddressBar::openText() {
    const std::string text = gtk_entry_get_text(GTK_ENTRY(m_entry));
    const std::string address = text == m_shown ? m_shownAddress : addressFromText(text);
    if (address.empty()) {
        gtk_style_context_add_class(gtk_widget_get_style_context(m_entry), GTK_STYLE_CLASS_ERROR);
        gtk_widget_set_tooltip_text(m_entry, "This is no address. Safari of the device lab does not search the web.");
        gtk_widget_error_bell(m_entry);
        return;
    }
    m_isEdited = false;
    m_handlers.open(address);
    m_handlers.leave();
}

void AddressBar::showText() {
    m_shownAddress = m_state.address;
    m_shown = shownLine(m_shownAddress, longestAddress);
    if (m_shown != gtk_entry_get_text(GTK_ENTRY(m_entry)))
        gtk_entry_set_text(GTK_ENTRY(m_entry), m_shown.c_str());
    m_isEdited = false;
}

void AddressBar::show(const State& state) {
    const bool wasLoading = std::exchange(m_state, state).isLoading;
    if (!m_isEdited || !gtk_widget_has_focus(m_entry))
        showText();
    if (wasLoading != state.isLoading) {
        name(m_reload, state.isLoading ? "process-stop-symbolic" : "view-refresh-symbolic",
             state.isLoading ? "Stop" : "Reload");
    }
    gtk_entry_set_progress_fraction(GTK_ENTRY(m_entry), state.isLoading ? state.progress : 0);
    const bool isSecure = state.address.starts_with("https:");
    gtk_entry_set_icon_from_icon_name(GTK_ENTRY(m_entry), GTK_ENTRY_ICON_PRIMARY,
                                      isSecure ? "channel-secure-symbolic" : nullptr);
    gtk_widget_set_sensitive(m_back, state.canGoBack);
    gtk_widget_set_sensitive(m_forward, state.canGoForward);
}

void AddressBar::focus() {
    gtk_widget_grab_focus(m_entry);
    gtk_editable_select_region(GTK_EDITABLE(m_entry), 0, -1);
}

} // namespace corvanta::lab
