// SPDX-License-Identifier: MIT
#include "AtspiAccessibilityClient.h"

#include "support/NameOrder.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QPointer>
#include <QTimer>

#include <algorithm>
#include <cmath>
#include <coroutine>
#include <utility>

namespace corvanta {

namespace {

using namespace Qt::Literals::StringLiterals;

/// Suspends the awaiting coroutine until the turn after a signal, or until a limit has passed.
class SignalAwaiter {
public:
    template<class Sender, class Signal>
    SignalAwaiter(const Sender& sender, Signal signal, std::chrono::milliseconds limit) {
        m_timer.setSingleShot(true);
        m_timer.setInterval(limit);
        QObject::connect(&sender, signal, &m_timer, [this] { m_timer.setInterval(0); });
    }

    [[nodiscard]] bool await_ready() const noexcept { return false; }

    void await_suspend(std::coroutine_handle<> handle) {
        QObject::connect(&m_timer, &QTimer::timeout, [handle] { handle.resume(); });
        m_timer.start();
    }

    void await_resume() const noexcept {}

private:
    QTimer m_timer;
};

} // namespace

class AtspiAccessibilityClient::Node final : public AccessibilityNode {
public:
    enum class Kind { application, object, submenu, closeButton };

    Node(Kind kind, AtspiReference reference)
        : m_kind(kind)
        , m_reference(std::move(reference)) {}

    static AccessibilityElement element(Kind kind, AtspiReference reference) {
        return AccessibilityElement(std::make_shared<const Node>(kind, std::move(reference)));
    }

    /// Null for an element that another client has made.
    static const Node* of(const AccessibilityElement& element) { return dynamic_cast<const Node*>(&element.node()); }

    [[nodiscard]] Kind kind() const { return m_kind; }

    /// For an application the bundle identifier stands in the place of the bus name.
    [[nodiscard]] const AtspiReference& reference() const { return m_reference; }

    [[nodiscard]] bool equals(const AccessibilityNode& other) const override {
        const auto* const node = dynamic_cast<const Node*>(&other);
        return node != nullptr && node->m_kind == m_kind && node->m_reference == m_reference;
    }

    [[nodiscard]] std::size_t hash() const override { return qHash(m_reference, static_cast<std::size_t>(m_kind)); }

private:
    Kind m_kind;
    AtspiReference m_reference;
};

AtspiAccessibilityClient::AtspiAccessibilityClient(X11Windows& windows, std::function<Point()> primaryOrigin)
    : m_windows(windows)
    , m_primaryOrigin(std::move(primaryOrigin))
    , m_bus(m_allowance)
    , m_applications(m_bus, m_allowance)
    , m_windowsBehind(windows, m_bus, m_allowance, m_applications) {
    QObject::connect(&m_bus, &AtspiBus::processLeft, &m_bus, [this](const QString& process) {
        m_mirrors.erase(process);
        m_windowsBehind.forget(process);
        m_applications.expire();
    });
}

AtspiAccessibilityClient::~AtspiAccessibilityClient() = default;

bool AtspiAccessibilityClient::isTrusted() {
    if (!m_bus.isEnabled() || !connect() || !m_applications.answers())
        return false;
    refreshKeptReady();
    return true;
}

bool AtspiAccessibilityClient::isSettled() {
    return isTrusted() || (!m_bus.isEnabled() && m_bus.knowsWhetherEnabled());
}

bool AtspiAccessibilityClient::requestTrust() {
    m_bus.enable();
    return isTrusted();
}

QCoro::Task<void> AtspiAccessibilityClient::lookAhead(QString bundleIdentifier) {
    // This client may be gone when the waiting ends.
    const QPointer<AtspiArrivals> arrivals(&m_arrivals);
    const auto end = std::chrono::steady_clock::now() + lookAheadLimit;
    const auto left = [end] {
        return std::chrono::ceil<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
    };
    for (const auto& [process, known] : m_mirrors)
        known->takeUnread();
    if (connect()) {
        for (std::optional<QDBusPendingCall> question : {m_bus.askWhetherEnabled(), m_applications.ask()}) {
            if (!question || left() <= std::chrono::milliseconds::zero())
                continue;
            const QDBusPendingCallWatcher watcher(*question);
            co_await SignalAwaiter(watcher, &QDBusPendingCallWatcher::finished, left());
            if (!arrivals)
                co_return;
        }
    }
    if (!isTrusted())
        co_return;
    QStringList processes;
    for (const AtspiReference& root : m_applications.named(bundleIdentifier)) {
        processes.append(root.bus);
        if (AtspiMirror& known = mirror(root.bus); !known.isRecent())
            known.refresh();
    }
    while (arrivals && isExpected(processes) && left() > std::chrono::milliseconds::zero())
        co_await SignalAwaiter(*arrivals, &AtspiArrivals::arrived, left());
}

bool AtspiAccessibilityClient::isExpected(const QStringList& processes) const {
    return std::ranges::any_of(processes, [this](const QString& process) {
        const auto known = m_mirrors.find(process);
        return known != m_mirrors.end() && known->second->isExpected();
    });
}

std::optional<AccessibilityElement> AtspiAccessibilityClient::application(const QString& bundleIdentifier) {
    if (!connect())
        return std::nullopt;
    refreshKeptReady();
    if (m_applications.named(bundleIdentifier).isEmpty())
        return std::nullopt;
    return Node::element(Node::Kind::application, {bundleIdentifier, {}});
}

AtspiAccessibilityClient::Value AtspiAccessibilityClient::attribute(const AccessibilityElement& element,
                                                                    QStringView name) {
    const Node* const node = Node::of(element);
    if (node == nullptr || !isTrusted())
        return std::nullopt;
    switch (node->kind()) {
    case Node::Kind::application:
        return applicationAttribute(node->reference().bus, name);
    case Node::Kind::object:
        return itemAttribute(node->reference(), name);
    case Node::Kind::submenu: {
        const AtspiItem* const holder = item(node->reference());
        if (holder == nullptr)
            return std::nullopt;
        if (name == u"AXTitle" || name == u"AXDescription")
            return QString();
        if (name == u"AXEnabled")
            return true;
        if (name == u"AXChildren")
            return children(*holder);
        return std::nullopt;
    }
    case Node::Kind::closeButton:
        if (item(node->reference()) == nullptr)
            return std::nullopt;
        if (name == u"AXTitle" || name == u"AXDescription")
            return QString();
        return name == u"AXEnabled" ? Value(true) : std::nullopt;
    }
    return std::nullopt;
}

bool AtspiAccessibilityClient::setAttribute(const AccessibilityElement& element, QStringView name,
                                            const AccessibilityValue& value) {
    const Node* const node = Node::of(element);
    if (node == nullptr || node->kind() != Node::Kind::object || !isTrusted())
        return false;
    const std::optional<X11Windows::Window> window = windowBehind(node->reference());
    if (!window)
        return false;
    PixelPlacement placement;
    if (name == u"AXPosition" && std::holds_alternative<Point>(value)) {
        const Point origin = m_primaryOrigin();
        const Point position = std::get<Point>(value);
        placement.position = {static_cast<int>(std::lround(position.x + origin.x)),
                              static_cast<int>(std::lround(position.y + origin.y))};
    } else if (name == u"AXSize" && std::holds_alternative<Size>(value)) {
        const Size size = std::get<Size>(value);
        placement.extent = {static_cast<int>(std::lround(size.width)), static_cast<int>(std::lround(size.height))};
    } else {
        return false;
    }
    return m_windows.place(*window, placement);
}

bool AtspiAccessibilityClient::performAction(const AccessibilityElement& element, QStringView name) {
    const Node* const node = Node::of(element);
    if (node == nullptr || node->kind() == Node::Kind::application || !isTrusted())
        return false;
    if (name == u"AXCancel")
        return item(node->reference()) != nullptr;
    if (name != u"AXPress")
        return false;
    if (node->kind() == Node::Kind::object)
        return press(node->reference());
    if (node->kind() != Node::Kind::closeButton)
        return false;
    const std::optional<X11Windows::Window> window = windowBehind(node->reference());
    if (window)
        m_windows.close(*window);
    return window.has_value();
}

bool AtspiAccessibilityClient::hasMenuBar(const QString& bundleIdentifier) {
    return connect() && menuBarOf(bundleIdentifier).has_value();
}

void AtspiAccessibilityClient::keepReady(const QString& bundleIdentifier) {
    m_keptReady.append(bundleIdentifier);
}

void AtspiAccessibilityClient::refreshKeptReady() {
    if (!m_keptReadyAge.hasExpired(AtspiMirror::lifetime.count()))
        return;
    m_keptReadyAge.start();
    for (const QString& bundleIdentifier : std::as_const(m_keptReady)) {
        for (const AtspiReference& root : m_applications.named(bundleIdentifier)) {
            if (AtspiMirror& known = mirror(root.bus); !known.isFresh())
                known.refresh();
        }
    }
}

bool AtspiAccessibilityClient::connect() {
    const bool isConnected = m_bus.isConnected();
    if (m_generation != m_bus.generation() || !isConnected) {
        m_generation = m_bus.generation();
        m_mirrors.clear();
        m_windowsBehind.clear();
        m_applications.clear();
    }
    return isConnected;
}

AtspiMirror& AtspiAccessibilityClient::mirror(const QString& process) {
    std::unique_ptr<AtspiMirror>& mirror = m_mirrors[process];
    if (!mirror) {
        const bool isProgram = m_applications.contains(process);
        mirror = std::make_unique<AtspiMirror>(
            m_bus, process, isProgram ? AtspiMirror::Extent::everything : AtspiMirror::Extent::onDemand,
            [this] { Q_EMIT m_arrivals.arrived(); });
    }
    return *mirror;
}

void AtspiAccessibilityClient::await(const std::vector<AtspiMirror*>& mirrors) {
    std::vector<AtspiMirror*> waiting;
    for (AtspiMirror* const mirror : mirrors) {
        if (!mirror->settle() && mirror->isHopeful())
            waiting.push_back(mirror);
    }
    const bool arePages = std::ranges::all_of(waiting, &AtspiMirror::isPage);
    const bool settled = (arePages ? m_pageAllowance : m_allowance).wait([&] {
        bool all = true;
        for (AtspiMirror* const mirror : waiting)
            all = mirror->settle() && all;
        return all;
    });
    if (settled)
        return;
    for (AtspiMirror* const mirror : waiting) {
        if (!mirror->settle())
            mirror->giveUp();
    }
}

const AtspiItem* AtspiAccessibilityClient::item(const AtspiReference& reference) {
    AtspiMirror& mirror = this->mirror(reference.bus);
    const AtspiItem* known = mirror.item(reference.path);
    if (mirror.isFresh() && known != nullptr && known->areChildrenKnown)
        return known;
    mirror.request(reference.path);
    await({&mirror});
    // An addition to a tree of a page may have been under way for another of its objects.
    if (mirror.isFresh() && mirror.item(reference.path) == nullptr) {
        mirror.request(reference.path);
        await({&mirror});
    }
    return mirror.item(reference.path);
}

AtspiAccessibilityClient::Value AtspiAccessibilityClient::applicationAttribute(const QString& bundleIdentifier,
                                                                               QStringView name) {
    if (m_applications.named(bundleIdentifier).isEmpty())
        return std::nullopt;
    if (name == u"AXTitle")
        return bundleIdentifier;
    if (name == u"AXWindows" || name == u"AXChildren")
        return windowsOf(bundleIdentifier);
    if (name == u"AXMenuBar") {
        if (const std::optional<AtspiReference> menuBar = menuBarOf(bundleIdentifier))
            return Node::element(Node::Kind::object, *menuBar);
    }
    return std::nullopt;
}

AtspiAccessibilityClient::Value AtspiAccessibilityClient::itemAttribute(const AtspiReference& reference,
                                                                        QStringView name) {
    const AtspiItem* const known = item(reference);
    if (known == nullptr)
        return std::nullopt;
    if (name == u"AXTitle")
        return known->name;
    if (name == u"AXDescription")
        return known->description;
    if (name == u"AXEnabled")
        return known->has(AtspiState::sensitive);
    if (name == u"AXChildren") {
        if (mirror(reference.bus).tree().opensSubmenu(*known))
            return std::vector{Node::element(Node::Kind::submenu, reference)};
        return children(*known);
    }
    if (name == u"AXPosition" || name == u"AXSize") {
        const std::optional<PixelRect> rect = m_windowsBehind.frame(*known);
        if (!rect)
            return std::nullopt;
        if (name == u"AXSize")
            return Size{static_cast<double>(rect->width), static_cast<double>(rect->height)};
        const Point origin = m_primaryOrigin();
        return Point{rect->x - origin.x, rect->y - origin.y};
    }
    if (name == u"AXCloseButton" && AtspiWindows::isWindow(*known))
        return Node::element(Node::Kind::closeButton, reference);
    return std::nullopt;
}

std::vector<AccessibilityElement> AtspiAccessibilityClient::windowsOf(const QString& bundleIdentifier) {
    const QList<AtspiReference> roots = m_applications.named(bundleIdentifier);
    std::vector<AtspiMirror*> mirrors;
    for (const AtspiReference& root : roots) {
        mirrors.push_back(&mirror(root.bus));
        mirrors.back()->request(root.path);
    }
    await(mirrors);

    struct Window {
        QString title;
        AtspiReference reference;
    };

    std::vector<Window> found;
    const auto precedes = [](const QString& left, const QString& right) { return compareNames(left, right) < 0; };
    for (const AtspiReference& root : roots) {
        const AtspiItem* const application = item(root);
        if (application == nullptr)
            continue;
        const AtspiTree& tree = mirror(root.bus).tree();
        for (const AtspiReference& child : application->children) {
            const AtspiItem* const window = tree.item(child.path);
            if (window == nullptr || !AtspiWindows::isWindowRole(window->role) ||
                (!window->has(AtspiState::showing) && !window->has(AtspiState::iconified)))
                continue;
            const auto place = std::ranges::upper_bound(found, window->name, precedes, &Window::title);
            found.insert(place, {window->name, child});
        }
    }
    std::vector<AccessibilityElement> windows;
    windows.reserve(found.size());
    for (const Window& window : found)
        windows.push_back(Node::element(Node::Kind::object, window.reference));
    return windows;
}

std::optional<AtspiReference> AtspiAccessibilityClient::menuBarOf(const QString& bundleIdentifier) {
    const QList<AtspiReference> roots = m_applications.named(bundleIdentifier);
    std::vector<AtspiMirror*> mirrors;
    for (const AtspiReference& root : roots) {
        mirrors.push_back(&mirror(root.bus));
        mirrors.back()->request(root.path);
    }
    await(mirrors);
    for (const AtspiReference& root : roots) {
        const AtspiItem* const application = item(root);
        if (application == nullptr)
            continue;
        if (const AtspiItem* const menuBar = mirror(root.bus).tree().firstWithRole(*application, AtspiRole::menuBar))
            return menuBar->reference;
    }
    return std::nullopt;
}

std::vector<AccessibilityElement> AtspiAccessibilityClient::children(const AtspiItem& item) {
    std::vector<AccessibilityElement> elements;
    elements.reserve(static_cast<std::size_t>(item.children.size()));
    for (const AtspiReference& child : item.children)
        elements.push_back(Node::element(Node::Kind::object, child));
    return elements;
}

std::optional<X11Windows::Window> AtspiAccessibilityClient::windowBehind(const AtspiReference& reference) {
    const AtspiItem* const known = item(reference);
    return known == nullptr ? std::nullopt : m_windowsBehind.windowBehind(*known);
}

bool AtspiAccessibilityClient::press(const AtspiReference& reference) {
    const AtspiItem* const known = item(reference);
    if (known == nullptr)
        return false;
    AtspiMirror& mirror = this->mirror(reference.bus);
    if (mirror.tree().opensSubmenu(*known)) {
        // The entries are on the bus without the menu being shown. Who presses it is about to read them, and the
        // windows of the program's other processes as well.
        for (const AtspiReference& root : m_applications.namedLike(reference.bus))
            this->mirror(root.bus).refreshForLater();
        (void)m_applications.ask();
        (void)m_bus.askWhetherEnabled();
        return true;
    }
    // GTK 3 reports success for an insensitive entry and does nothing.
    if (!known->has(AtspiState::sensitive))
        return false;
    HangAllowance::Call call{
        m_bus.call(reference, u"org.a11y.atspi.Action"_s, u"DoAction"_s, {QVariant::fromValue(qint32{0})})};
    const bool answered = m_allowance.wait(call);
    mirror.expire();
    m_applications.expire();
    // A busy program has the press all the same and carries it out when it goes on; what follows shows whether it did.
    if (!answered)
        return true;
    const QDBusMessage reply = call.pending.reply();
    return reply.type() == QDBusMessage::ReplyMessage && !reply.arguments().isEmpty() &&
           reply.arguments().constFirst().toBool();
}

} // namespace corvanta
