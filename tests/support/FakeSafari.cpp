// SPDX-License-Identifier: MIT
#include "FakeSafari.h"

namespace corvanta::testing {

using namespace Qt::Literals::StringLiterals;

QCoro::Task<void> FakeSafari::ensureSafariRunning() {
    m_log.add(u"ensureSafariRunning"_s);
    co_await script.play(SafariOperation::ensureSafariRunning);
}

bool FakeSafari::developerFeaturesAvailable() {
    m_log.add(u"developerFeaturesAvailable"_s);
    return hasDeveloperFeatures;
}

QCoro::Task<std::vector<SafariTarget>> FakeSafari::snapshotTargets(QString deviceName, CancellationToken token) {
    m_log.add(u"snapshotTargets "_s + deviceName);
    co_await script.play(SafariOperation::snapshotTargets, token);
    if (m_snapshots.empty())
        co_return std::vector(listed); // Returning the member itself would move from it.
    const auto snapshot = m_snapshots.front();
    m_snapshots.pop_front();
    if (const auto* const error = std::get_if<std::exception_ptr>(&snapshot))
        std::rethrow_exception(*error);
    co_return std::vector(std::get<std::vector<SafariTarget>>(snapshot));
}

QCoro::Task<void> FakeSafari::attach(SafariTarget target, QString deviceName, CancellationToken token) {
    m_log.add(u"attach "_s + target.title + u" on "_s + deviceName);
    co_await script.play(SafariOperation::attach, token);
    inspectorIsPresent = true;
    if (!leavesNoWindow)
        m_managedInspectorWindow = m_windows.add(u"Web Inspector"_s).handle();
}

std::optional<AccessibilityElement> FakeSafari::managedInspectorWindow() const {
    return m_managedInspectorWindow;
}

bool FakeSafari::managedInspectorIsPresent() {
    return inspectorIsPresent;
}

} // namespace corvanta::testing
