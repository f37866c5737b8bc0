// SPDX-License-Identifier: MIT
#include "InspectorSession.h"

#include "ShownText.h"

#include <glib-unix.h>
#include <unistd.h>

#include <array>
#include <cstring>

namespace corvanta::lab {

namespace {

constexpr guint lookInterval = 20;
constexpr int missingWindowStatus = 1;

/// Ends the process without any destructor, since WebKit's would abort it.
[[noreturn]] void leave(int status = 0) {
    _exit(status);
}

/// One byte into a pipe that Safari empties. A full one means that nobody asks there any more.
void answerPresent() {
    [[maybe_unused]] const ssize_t size = write(STDOUT_FILENO, &presentedAnswer, 1);
}

bool isInspectorWindow(gpointer instance) {
    return GTK_IS_WINDOW(instance) && std::strcmp(G_OBJECT_TYPE_NAME(instance), "WebKitInspectorWindow") == 0;
}

/// Presses the button of the target's row, if the row is there. What follows the numbers is the kind of the target.
std::string pressScript(const TargetIdentifier& target) {
    const std::string name = std::to_string(target.connection) + ':' + std::to_string(target.target) + ':';
    return "(() => { for (const button of document.querySelectorAll('input[type=button]')) {"
           "  if ((button.getAttribute('onclick') || '').includes(\"'" +
           name +
           "\")) { button.click(); return true; }"
           "} return false; })()";
}

} // namespace

InspectorSession::InspectorSession(const std::string& serverAddress) {
    // The list's page comes from a built-in handler and leaves nothing behind on disk.
    const GlibPointer<WebKitWebsiteDataManager> dataManager(webkit_website_data_manager_new_ephemeral());
    const GlibPointer<WebKitWebContext> context(webkit_web_context_new_with_website_data_manager(dataManager.get()));
    m_list = WEBKIT_WEB_VIEW(g_object_ref_sink(webkit_web_view_new_with_context(context.get())));
    webkit_web_view_load_uri(m_list, ("inspector://" + serverAddress).c_str());
    watchWindows();
}

void InspectorSession::watchWindows() {
    // WebKit opens the window by itself, so it is caught on its way; realized is before it is seen. Emission hooks run
    // ahead of every handler that is connected to the window, WebKit's own included.
    g_signal_add_emission_hook(
        g_signal_lookup("realize", GTK_TYPE_WIDGET), 0,
        [](GSignalInvocationHint*, guint, const GValue* values, gpointer self) -> gboolean {
            if (gpointer instance = g_value_get_object(values); isInspectorWindow(instance))
                static_cast<InspectorSession*>(self)->adopt(GTK_WINDOW(instance));
            return TRUE;
        },
        this, nullptr);
    for (const char* const signal : {"delete-event", "hide", "unmap"}) {
        g_signal_add_emission_hook(
            g_signal_lookup(signal, GTK_TYPE_WIDGET), 0,
            [](GSignalInvocationHint*, guint, const GValue* values, gpointer) -> gboolean {
                if (isInspectorWindow(g_value_get_object(values)))
                    leave();
                return TRUE;
            },
            nullptr, nullptr);
    }
}

void InspectorSession::readCommands() {
    for (const int pipe : {STDIN_FILENO, STDOUT_FILENO})
        g_unix_set_fd_nonblocking(pipe, TRUE, nullptr);
    g_unix_fd_add(
        STDIN_FILENO, static_cast<GIOCondition>(G_IO_IN | G_IO_HUP | G_IO_ERR),
        [](gint, GIOCondition, gpointer self) -> gboolean {
            static_cast<InspectorSession*>(self)->takeInput();
            return G_SOURCE_CONTINUE;
        },
        this);
}

void InspectorSession::takeInput() {
    std::array<char, 4096> buffer{};
    const ssize_t size = read(STDIN_FILENO, buffer.data(), buffer.size());
    if (size == 0 || (size < 0 && errno != EAGAIN && errno != EINTR))
        leave();
    if (size < 0)
        return;
    m_input.append(buffer.data(), static_cast<std::size_t>(size));
    for (std::size_t end = m_input.find('\n'); end != std::string::npos; end = m_input.find('\n')) {
        const std::string line = m_input.substr(0, end);
        m_input.erase(0, end + 1);
        if (const auto command = parseCommand(line))
            perform(*command);
    }
}

void InspectorSession::perform(const InspectorCommand& command) {
    if (const auto* inspectCommand = std::get_if<InspectCommand>(&command)) {
        inspect(*inspectCommand);
    } else if (const auto* retitle = std::get_if<RetitleCommand>(&command)) {
        m_command.title = retitle->title;
        applyTitle();
    } else {
        if (m_window)
            gtk_window_present(m_window);
        answerPresent();
    }
}

void InspectorSession::inspect(const InspectCommand& command) {
    // One page per process, whatever is asked.
    if (m_command.target.target != 0)
        return;
    m_command = command;
    m_limit.set(g_timeout_add(windowLimit, [](gpointer) -> gboolean { leave(missingWindowStatus); }, nullptr));
    lookForTarget();
}

void InspectorSession::lookForTarget() {
    webkit_web_view_evaluate_javascript(
        m_list, pressScript(m_command.target).c_str(), -1, nullptr, nullptr, nullptr,
        [](GObject* view, GAsyncResult* result, gpointer self) {
            JSCValue* answer = webkit_web_view_evaluate_javascript_finish(WEBKIT_WEB_VIEW(view), result, nullptr);
            const bool isPressed = answer && jsc_value_to_boolean(answer);
            g_clear_object(&answer);
            if (isPressed)
                return;
            g_timeout_add(
                lookInterval,
                [](gpointer session) -> gboolean {
                    static_cast<InspectorSession*>(session)->lookForTarget();
                    return G_SOURCE_REMOVE;
                },
                self);
        },
        this);
}

void InspectorSession::adopt(GtkWindow* window) {
    if (m_window)
        return;
    m_window = window;
    m_limit.clear();
    applyTitle();
    // This signal has no emission hooks; its handlers run ahead of the window's own clean-up.
    g_signal_connect(window, "destroy", G_CALLBACK(+[] { leave(); }), nullptr);
    // WebKit titles its window again now and then.
    g_signal_connect_swapped(window, "notify::title", G_CALLBACK(+[](InspectorSession* self) { self->applyTitle(); }),
                             this);
}

void InspectorSession::applyTitle() {
    if (!m_window)
        return;
    const std::string title = "Web Inspector — " + shownLine(m_command.title);
    if (g_strcmp0(gtk_window_get_title(m_window), title.c_str()) != 0)
        gtk_window_set_title(m_window, title.c_str());
    GtkWidget* const bar = gtk_window_get_titlebar(m_window);
    // Both tell of every setting, also of one that changes nothing.
    if (GTK_IS_HEADER_BAR(bar) && g_strcmp0(gtk_header_bar_get_title(GTK_HEADER_BAR(bar)), title.c_str()) != 0)
        gtk_header_bar_set_title(GTK_HEADER_BAR(bar), title.c_str());
}

} // namespace corvanta::lab
