// SPDX-License-Identifier: MIT
#include "safari/SafariAXInspector.h"

#include "safari/AXSupport.h"
#include "safari/SafariMenuTargetParser.h"
#include "safari/WorkspaceAutomationError.h"
#include "support/CancelledError.h"
#include "support/NameOrder.h"

#include <algorithm>
#include <utility>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto menuPressPause = 120ms;
constexpr auto inspectorWindowInterval = 200ms;
constexpr int inspectorWindowLooks = 30;
constexpr int deviceItemDepth = 5;

} // namespace

SafariAXInspector::SafariAXInspector(AccessibilityClient& client, Desktop& desktop, Clock& clock,
                                     QString safariBundleIdentifier)
    : m_client(client)
    , m_desktop(desktop)
    , m_clock(clock)
    , m_safariBundleIdentifier(std::move(safariBundleIdentifier)) {}

QCoro::Task<void> SafariAXInspector::ensureSafariRunning() {
    if (m_desktop.isRunning(m_safariBundleIdentifier))
        co_return;
    QString failure;
    try {
        co_await m_desktop.openApplication(u"/Applications/Safari.app"_s);
        co_return;
    } catch (...) {
        failure = errorTexts(std::current_exception()).description;
    }
    throw WorkspaceAutomationError::safariCouldNotLaunch(failure);
}

std::optional<std::vector<AccessibilityElement>> SafariAXInspector::menuBarItems() {
    const auto application = AXSupport::application(m_client, m_safariBundleIdentifier);
    if (!application)
        return std::nullopt;
    const auto menuBar = AXSupport::element(m_client, *application, u"AXMenuBar");
    return menuBar ? std::optional(AXSupport::children(m_client, *menuBar)) : std::nullopt;
}

bool SafariAXInspector::isDevelopItem(const AccessibilityElement& item) {
    return compareNames(AXSupport::label(m_client, item), u"Develop") == 0;
}

bool SafariAXInspector::developerFeaturesAvailable() {
    const auto items = menuBarItems();
    return items && std::ranges::any_of(*items, [this](const auto& item) { return isDevelopItem(item); });
}

QCoro::Task<void> SafariAXInspector::pause(Clock::Duration duration, CancellationToken token) {
    if (co_await m_clock.sleepFor(duration, token) == SleepResult::cancelled)
        throw CancelledError();
}

QCoro::Task<void> SafariAXInspector::pauseInMenu(AccessibilityElement developItem, CancellationToken token) {
    if (co_await m_clock.sleepFor(menuPressPause, token) == SleepResult::elapsed)
        co_return;
    m_client.performAction(developItem, u"AXCancel");
    throw CancelledError();
}

QCoro::Task<SafariAXInspector::DeviceMenu> SafariAXInspector::openDeviceMenu(QString deviceName,
                                                                             CancellationToken token) {
    if (!token.isCancelled())
        co_await m_client.lookAhead(m_safariBundleIdentifier);
    if (token.isCancelled())
        throw CancelledError();
    if (!m_client.isTrusted())
        throw WorkspaceAutomationError::accessibilityPermissionMissing();
    const auto items = menuBarItems();
    if (!items)
        throw WorkspaceAutomationError::developMenuUnavailable();

    const auto found = std::ranges::find_if(*items, [this](const auto& item) { return isDevelopItem(item); });
    if (found == items->end())
        throw WorkspaceAutomationError::safariDeveloperFeaturesMissing();
    const AccessibilityElement developItem = *found;

    m_client.performAction(developItem, u"AXPress");
    co_await pauseInMenu(developItem, token);

    const auto deviceItem =
        AXSupport::firstDescendant(m_client, developItem, deviceItemDepth, [&](const AccessibilityElement& element) {
            return containsName(AXSupport::label(m_client, element), deviceName);
        });
    if (!deviceItem) {
        m_client.performAction(developItem, u"AXCancel");
        throw WorkspaceAutomationError::simulatorMenuUnavailable(deviceName);
    }
    m_client.performAction(*deviceItem, u"AXPress");
    co_await pauseInMenu(developItem, token);
    co_return DeviceMenu{developItem, *deviceItem};
}

AccessibilityMenuNode SafariAXInspector::readDeviceMenu(const AccessibilityElement& deviceItem) {
    m_targetElements.clear();
    return makeNode(deviceItem, {}, m_targetElements);
}

AccessibilityMenuNode SafariAXInspector::makeNode(const AccessibilityElement& element, const std::vector<int>& path,
                                                  ElementMap& elementMap) {
    AccessibilityMenuNode node;
    node.title = AXSupport::label(m_client, element);
    node.id = accessibilityMenuNodeID(path, node.title);
    elementMap.insert(node.id, element);

    const auto children = AXSupport::children(m_client, element);
    node.children.reserve(children.size());
    std::vector<int> childPath = path;
    childPath.push_back(0);
    for (const AccessibilityElement& child : children) {
        node.children.push_back(makeNode(child, childPath, elementMap));
        ++childPath.back();
    }

    const auto enabled = m_client.attribute(element, u"AXEnabled");
    const auto* const flag = enabled ? std::get_if<bool>(&*enabled) : nullptr;
    const auto* const number = enabled ? std::get_if<double>(&*enabled) : nullptr;
    node.isEnabled = flag ? *flag : !number || *number != 0;
    return node;
}

QCoro::Task<std::vector<SafariTarget>> SafariAXInspector::snapshotTargets(QString deviceName, CancellationToken token) {
    const auto turn = co_await m_menuTurns.next();
    const DeviceMenu menu = co_await openDeviceMenu(deviceName, token);
    const AccessibilityMenuNode root = readDeviceMenu(menu.deviceItem);
    auto targets = SafariMenuTargetParser::targets(root, deviceName);
    m_client.performAction(menu.developItem, u"AXCancel");
    co_return targets;
}

std::vector<AccessibilityElement> SafariAXInspector::safariWindows() {
    const auto application = AXSupport::application(m_client, m_safariBundleIdentifier);
    return application ? AXSupport::windows(m_client, *application) : std::vector<AccessibilityElement>();
}

QSet<std::size_t> SafariAXInspector::inspectorWindowHashes() {
    QSet<std::size_t> hashes;
    for (const AccessibilityElement& window : safariWindows()) {
        if (AXSupport::isWebInspectorWindow(m_client, window))
            hashes.insert(window.hash());
    }
    return hashes;
}

QCoro::Task<std::optional<AccessibilityElement>> SafariAXInspector::waitForInspectorWindow(QSet<std::size_t> excluding,
                                                                                           CancellationToken token) {
    for (int look = 0; look < inspectorWindowLooks; ++look) {
        co_await m_client.lookAhead(m_safariBundleIdentifier);
        // Telling whether a window is an inspector may mean reading a whole page.
        for (const AccessibilityElement& window : safariWindows()) {
            if (!excluding.contains(window.hash()) && AXSupport::isWebInspectorWindow(m_client, window))
                co_return window;
        }
        co_await pause(inspectorWindowInterval, token);
    }
    co_return std::nullopt;
}

QCoro::Task<QSet<std::size_t>> SafariAXInspector::pressTarget(SafariTarget target, QString deviceName,
                                                              CancellationToken token) {
    const auto turn = co_await m_menuTurns.next();
    co_await m_client.lookAhead(m_safariBundleIdentifier);
    QSet<std::size_t> existing = inspectorWindowHashes();
    const DeviceMenu menu = co_await openDeviceMenu(deviceName, token);
    [[maybe_unused]] const AccessibilityMenuNode root = readDeviceMenu(menu.deviceItem);
    const auto element = m_targetElements.constFind(target.id);
    if (element == m_targetElements.cend() || !m_client.performAction(*element, u"AXPress")) {
        m_client.performAction(menu.developItem, u"AXCancel");
        throw WorkspaceAutomationError::targetUnavailable(target.title);
    }
    co_return existing;
}

void SafariAXInspector::closeWindow(const AccessibilityElement& window) {
    if (const auto closeButton = AXSupport::element(m_client, window, u"AXCloseButton"))
        m_client.performAction(*closeButton, u"AXPress");
}

QCoro::Task<void> SafariAXInspector::attach(SafariTarget target, QString deviceName, CancellationToken token) {
    const QSet<std::size_t> existing = co_await pressTarget(target, deviceName, token);
    const auto window = co_await waitForInspectorWindow(existing, token);
    if (token.isCancelled())
        throw CancelledError();
    if (!window)
        throw WorkspaceAutomationError::inspectorWindowUnavailable();
    if (m_managedInspectorWindow && m_managedInspectorWindow->hash() != window->hash())
        closeWindow(*m_managedInspectorWindow);
    m_managedInspectorWindow = window;
}

std::optional<AccessibilityElement> SafariAXInspector::managedInspectorWindow() const {
    return m_managedInspectorWindow;
}

bool SafariAXInspector::managedInspectorIsPresent() {
    if (!m_managedInspectorWindow)
        return false;
    const auto windows = safariWindows();
    return std::ranges::any_of(windows, [this](const AccessibilityElement& window) {
        return window.hash() == m_managedInspectorWindow->hash() && AXSupport::isWebInspectorWindow(m_client, window);
    });
}

} // namespace corvanta
