// SPDX-License-Identifier: MIT
#pragma once

#include "Desktop.h"
#include "safari/AccessibilityMenuNode.h"
#include "safari/SafariInspecting.h"
#include "support/Clock.h"
#include "support/TurnQueue.h"

#include <QHash>
#include <QSet>

namespace corvanta {

/// Drives Safari through the accessibility interface: its Develop menu and its Web Inspector windows.
///
/// Menu operations take turns, so that two of them never press into the same menu.
class SafariAXInspector final : public SafariInspecting {
public:
    /// All three outlive the inspector.
    SafariAXInspector(AccessibilityClient& client, Desktop& desktop, Clock& clock,
                      QString safariBundleIdentifier = QStringLiteral("com.apple.Safari"));

    [[nodiscard]] QCoro::Task<void> ensureSafariRunning() override;
    [[nodiscard]] bool developerFeaturesAvailable() override;
    [[nodiscard]] QCoro::Task<std::vector<SafariTarget>> snapshotTargets(QString deviceName,
                                                                         CancellationToken token = {}) override;
    [[nodiscard]] QCoro::Task<void> attach(SafariTarget target, QString deviceName,
                                           CancellationToken token = {}) override;
    [[nodiscard]] std::optional<AccessibilityElement> managedInspectorWindow() const override;
    [[nodiscard]] bool managedInspectorIsPresent() override;

private:
    /// Live menu elements by the id of the node that was read from them.
    using ElementMap = QHash<QString, AccessibilityElement>;

    struct DeviceMenu {
        AccessibilityElement developItem;
        AccessibilityElement deviceItem;
    };

    [[nodiscard]] QCoro::Task<DeviceMenu> openDeviceMenu(QString deviceName, CancellationToken token);
    /// Presses the page's item and returns the hashes of the inspector windows from before.
    [[nodiscard]] QCoro::Task<QSet<std::size_t>> pressTarget(SafariTarget target, QString deviceName,
                                                             CancellationToken token);
    [[nodiscard]] QCoro::Task<std::optional<AccessibilityElement>> waitForInspectorWindow(QSet<std::size_t> excluding,
                                                                                          CancellationToken token);
    /// Sleeps; throws CancelledError when the token is cancelled meanwhile.
    [[nodiscard]] QCoro::Task<void> pause(Clock::Duration duration, CancellationToken token);

    /// The pause after a press; closes the menu before it throws CancelledError.
    [[nodiscard]] QCoro::Task<void> pauseInMenu(AccessibilityElement developItem, CancellationToken token);

    /// Nothing when Safari or its menu bar cannot be read.
    [[nodiscard]] std::optional<std::vector<AccessibilityElement>> menuBarItems();
    [[nodiscard]] bool isDevelopItem(const AccessibilityElement& item);
    [[nodiscard]] AccessibilityMenuNode readDeviceMenu(const AccessibilityElement& deviceItem);
    [[nodiscard]] AccessibilityMenuNode makeNode(const AccessibilityElement& element, const std::vector<int>& path,
                                                 ElementMap& elementMap);
    [[nodiscard]] std::vector<AccessibilityElement> safariWindows();
    [[nodiscard]] QSet<std::size_t> inspectorWindowHashes();
    void closeWindow(const AccessibilityElement& window);

    AccessibilityClient& m_client;
    Desktop& m_desktop;
    Clock& m_clock;
    const QString m_safariBundleIdentifier;
    TurnQueue m_menuTurns;
    ElementMap m_targetElements;
    std::optional<AccessibilityElement> m_managedInspectorWindow;
};

} // namespace corvanta
