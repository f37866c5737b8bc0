// SPDX-License-Identifier: MIT
#include "layout/AXWorkspaceArranger.h"

#include "layout/WorkspaceLayout.h"
#include "safari/AXSupport.h"
#include "safari/WorkspaceAutomationError.h"
#include "support/NameOrder.h"

#include <algorithm>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr double columnGap = 8;

} // namespace

AXWorkspaceArranger::AXWorkspaceArranger(AccessibilityClient& client, Desktop& desktop)
    : m_client(client)
    , m_desktop(desktop) {}

std::optional<AccessibilityElement> AXWorkspaceArranger::simulatorWindow(const QString& deviceName) {
    const auto application = AXSupport::application(m_client, u"com.apple.iphonesimulator"_s);
    if (!application)
        return std::nullopt;
    const auto windows = AXSupport::windows(m_client, *application);
    if (windows.empty())
        return std::nullopt;
    const auto matching = std::ranges::find_if(windows, [&](const AccessibilityElement& window) {
        return containsName(AXSupport::label(m_client, window), deviceName);
    });
    return matching == windows.end() ? windows.front() : *matching;
}

Rect AXWorkspaceArranger::visibleFrame(const ControlWindow& controlWindow) const {
    if (const auto screen = controlWindow.screen())
        return screen->visibleFrame;
    if (const auto screen = m_desktop.mainScreen())
        return screen->visibleFrame;
    const auto screens = m_desktop.screens();
    return screens.empty() ? Rect{} : screens.front().visibleFrame;
}

void AXWorkspaceArranger::saveFrame(const AccessibilityElement& window, double flipHeight) {
    const bool isSaved = std::ranges::any_of(
        m_savedAXFrames, [&](const SavedAXFrame& saved) { return saved.element.hash() == window.hash(); });
    if (isSaved)
        return;
    if (const auto frame = AXSupport::frame(m_client, window, flipHeight))
        m_savedAXFrames.push_back({window, *frame});
}

void AXWorkspaceArranger::tile(std::shared_ptr<ControlWindow> controlWindow, const QString& simulatorDeviceName,
                               const std::optional<AccessibilityElement>& inspectorWindow, const ColumnRatios& ratios) {
    if (!m_client.isTrusted())
        throw WorkspaceAutomationError::accessibilityPermissionMissing();
    const auto simulator = simulatorWindow(simulatorDeviceName);
    if (!simulator)
        throw WorkspaceAutomationError::simulatorWindowUnavailable(simulatorDeviceName);
    if (!inspectorWindow)
        throw WorkspaceAutomationError::inspectorWindowUnavailable();

    const WorkspaceFrames frames = WorkspaceLayout::frames(visibleFrame(*controlWindow), ratios, columnGap);
    const double flipHeight = AXSupport::flipHeight(m_desktop.screens());

    if (m_savedControlWindow.expired()) {
        m_savedControlWindow = controlWindow;
        m_savedControlFrame = controlWindow->frame();
    }
    saveFrame(*simulator, flipHeight);
    saveFrame(*inspectorWindow, flipHeight);

    controlWindow->setFrame(frames.controls);
    // A window that refuses its column stays where it is; the workspace works all the same.
    AXSupport::setFrame(m_client, frames.simulator, *simulator, flipHeight);
    AXSupport::setFrame(m_client, frames.inspector, *inspectorWindow, flipHeight);
}

void AXWorkspaceArranger::restore() {
    if (const auto controlWindow = m_savedControlWindow.lock(); controlWindow && m_savedControlFrame)
        controlWindow->setFrame(*m_savedControlFrame);
    const double flipHeight = AXSupport::flipHeight(m_desktop.screens());
    for (const SavedAXFrame& saved : m_savedAXFrames)
        AXSupport::setFrame(m_client, saved.frame, saved.element, flipHeight);
    m_savedControlWindow.reset();
    m_savedControlFrame.reset();
    m_savedAXFrames.clear();
}

} // namespace corvanta
