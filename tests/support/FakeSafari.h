// SPDX-License-Identifier: MIT
#pragma once

#include "CallLog.h"
#include "FakeAccessibilityTree.h"
#include "Script.h"
#include "safari/SafariInspecting.h"

#include <deque>
#include <variant>

namespace corvanta::testing {

enum class SafariOperation { ensureSafariRunning, snapshotTargets, attach };

/// A Safari that records what it is asked to do and lists pages as scripted.
class FakeSafari final : public SafariInspecting {
public:
    FakeSafari(VirtualClock& clock, CallLog& log)
        : script(clock)
        , m_log(log)
        , m_windows(clock) {}

    [[nodiscard]] QCoro::Task<void> ensureSafariRunning() override;
    [[nodiscard]] bool developerFeaturesAvailable() override;
    [[nodiscard]] QCoro::Task<std::vector<SafariTarget>> snapshotTargets(QString deviceName,
                                                                         CancellationToken token = {}) override;
    /// A success leaves a fresh window and the inspector present.
    [[nodiscard]] QCoro::Task<void> attach(SafariTarget target, QString deviceName,
                                           CancellationToken token = {}) override;
    [[nodiscard]] std::optional<AccessibilityElement> managedInspectorWindow() const override;
    [[nodiscard]] bool managedInspectorIsPresent() override;

    /// The next snapshot that has no scripted reply yet lists these pages.
    void willList(std::vector<SafariTarget> targets) { m_snapshots.emplace_back(std::move(targets)); }

    /// The next snapshot that has no scripted reply yet fails.
    template<typename Error>
    void willFailToList(Error error) {
        m_snapshots.emplace_back(std::make_exception_ptr(std::move(error)));
    }

    Script<SafariOperation> script;
    /// What is listed when no scripted snapshot is left.
    std::vector<SafariTarget> listed;
    bool hasDeveloperFeatures = true;
    bool inspectorIsPresent = false;
    bool leavesNoWindow = false;

private:
    CallLog& m_log;
    FakeAccessibilityTree m_windows;
    std::deque<std::variant<std::vector<SafariTarget>, std::exception_ptr>> m_snapshots;
    std::optional<AccessibilityElement> m_managedInspectorWindow;
};

} // namespace corvanta::testing
