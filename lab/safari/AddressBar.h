// SPDX-License-Identifier: MIT
#pragma once

#include <gtk/gtk.h>

#include <functional>
#include <string>

namespace corvanta::lab {

/// The row with the address, the buttons beside it and the progress of loading. Main thread only.
class AddressBar {
public:
    struct Handlers {
        std::function<void()> goBack;
        std::function<void()> goForward;
        std::function<void()> reload;
        std::function<void()> stop;
        std::function<void()> newTab;
        /// An address that can be loaded.
        std::function<void(const std::string& address)> open;
        /// The keyboard goes back to the page.
        std::function<void()> leave;
    };

    /// What is said of the page in front.
    struct State {
        std::string address;
        bool isLoading = false;
        double progress = 0;
        bool canGoBack = false;
        bool canGoForward = false;
    };

    explicit AddressBar(Handlers handlers);
    AddressBar(const AddressBar&) = delete;
    AddressBar& operator=(const AddressBar&) = delete;

    /// Belongs to the window that it is put into.
    [[nodiscard]] GtkWidget* widget() const { return m_row; }

    [[nodiscard]] GtkWidget* entry() const { return m_entry; }

    /// A text that is being edited stays as it is.
    void show(const State& state);

    /// Gives the address the keyboard, with all of its text selected.
    void focus();

private:
    GtkWidget* addButton(const char* icon, const char* name, std::function<void()> AddressBar::Handlers::* action);
    void watchEntry();
    void openText();
    void showText();

    Handlers m_handlers;
    State m_state;
    /// What the field shows of which address.
    std::string m_shown;
    std::string m_shownAddress;
    GtkWidget* m_row;
    GtkWidget* m_entry = nullptr;
    GtkWidget* m_back = nullptr;
    GtkWidget* m_forward = nullptr;
    GtkWidget* m_reload = nullptr;
    bool m_isEdited = false;
    bool m_selectsAtRelease = false;
};

} // namespace corvanta::lab
