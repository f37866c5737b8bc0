// SPDX-License-Identifier: MIT
#pragma once

#include "GlibPointers.h"

namespace corvanta::lab {

/// Draws this program's windows and pages dark or light as the desktop wishes, from now on: by the desktop portal's
/// "color-scheme", or GNOME's setting of that name where there is no portal. Where neither is there, the toolkit's
/// theme decides. Main thread only.
class ColorScheme {
public:
    /// `bus` is the session bus; may be null.
    explicit ColorScheme(GDBusConnection* bus);
    ColorScheme(const ColorScheme&) = delete;
    ColorScheme& operator=(const ColorScheme&) = delete;
    ~ColorScheme();

private:
    void askPortal();
    void followSettings();

    GlibPointer<GDBusConnection> m_bus;
    GlibPointer<GCancellable> m_cancellable;
    GlibPointer<GSettings> m_settings;
    guint m_subscription = 0;
};

} // namespace corvanta::lab
