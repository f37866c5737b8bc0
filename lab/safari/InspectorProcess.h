// SPDX-License-Identifier: MIT
#pragma once

#include "GlibPointers.h"
#include "InspectableTarget.h"

#include <functional>
#include <memory>
#include <string>
#include <utility>

namespace corvanta::lab {

/// One SafariInspector process, steered by lines on its standard input (see InspectorCommands.h).
///
/// Destroying this object closes that pipe, and the process leaves by itself at once. Main thread only.
class InspectorProcess {
public:
    /// Starts a process that readies itself for the device's server and shows nothing yet; null when it cannot be
    /// started.
    [[nodiscard]] static std::unique_ptr<InspectorProcess> start(const std::string& serverAddress);
    InspectorProcess(const InspectorProcess&) = delete;
    InspectorProcess& operator=(const InspectorProcess&) = delete;
    ~InspectorProcess();

    /// Called from the main loop when the process has ended, unless this object has gone before; it may drop this
    /// object.
    void setExitHandler(std::function<void()> onExit) { m_onExit = std::move(onExit); }

    /// Opens the inspector of `target`; once per process.
    void inspect(const TargetIdentifier& target, const std::string& title);
    /// Brings the window forward.
    void present();
    /// Whether a wish to bring the window forward has reached nobody so far. Of a process that has ended, it never
    /// will.
    [[nodiscard]] bool hasUnansweredPresent();
    void retitle(const std::string& title);

private:
    explicit InspectorProcess(GlibPointer<GSubprocess> process);
    void send(const std::string& line);
    void countAnswers();

    GlibPointer<GSubprocess> m_process;
    GlibPointer<GCancellable> m_cancellable;
    std::function<void()> m_onExit;
    int m_unansweredPresents = 0;
};

} // namespace corvanta::lab
