// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

struct _GDBusConnection;

namespace corvanta::lab {

/// What a device may have for the Web Inspector beside its pages: an app with a JavaScript context, and a web extension
/// with a background page. Both are real and run in this process and the engine's; neither can be seen on the screen.
///
/// They are switched on and off over the bus, at the device's object: `SetPresent(s sample, b isPresent)` of the
/// interface `dev.corvanta.Lab.DeviceSamples1`, where `sample` is "JSContext" or "WebExtension". Both are off at first.
/// A context that is switched off while an inspector has paused it goes when the script goes on. WebKit's inspector
/// server must have been set up before. Main thread only.
class InspectorSamples {
public:
    explicit InspectorSamples(_GDBusConnection* bus);
    InspectorSamples(const InspectorSamples&) = delete;
    InspectorSamples& operator=(const InspectorSamples&) = delete;
    ~InspectorSamples();

    /// Whether an inspector has paused an app's script, which then runs a main loop of its own until it goes on. Asked
    /// from within the main loop.
    [[nodiscard]] static bool isPaused();

private:
    class Context;
    class Extension;

    bool setPresent(const char* sample, bool isPresent);

    _GDBusConnection* m_bus;
    unsigned m_object = 0;
    std::unique_ptr<Context> m_context;
    std::unique_ptr<Extension> m_extension;
};

} // namespace corvanta::lab
