// SPDX-License-Identifier: MIT
#pragma once

#include "GlibPointers.h"
#include "InspectorCommands.h"

#include <gtk/gtk.h>
#include <webkit2/webkit2.h>

#include <string>

namespace corvanta::lab {

/// Opens WebKit's own inspector window for one page of a device, and ends the process when that window is to go.
///
/// WebKit's list of the server's pages is loaded in a view that no window ever holds; its Inspect button is what opens
/// the inspector. Disposing of a remote inspector's view aborts the process (WebKitGTK 2.50), so nothing here is ever
/// disposed of: whatever closes the window ends the process first, and WebKit's own helper processes follow it.
class InspectorSession {
public:
    /// How long the window may take to appear before the process ends with status 1.
    static constexpr guint windowLimit = 10'000;

    explicit InspectorSession(const std::string& serverAddress);
    InspectorSession(const InspectorSession&) = delete;
    InspectorSession& operator=(const InspectorSession&) = delete;

    /// Takes commands from standard input; its end ends the process.
    void readCommands();

    void inspect(const InspectCommand& command);

private:
    void watchWindows();
    void perform(const InspectorCommand& command);
    void takeInput();
    void lookForTarget();
    void adopt(GtkWindow* window);
    void applyTitle();

    WebKitWebView* m_list = nullptr;
    GtkWindow* m_window = nullptr;
    InspectCommand m_command;
    std::string m_input;
    SourceGuard m_limit;
};

} // namespace corvanta::lab
