// SPDX-License-Identifier: MIT
#pragma once

#include "AccessibilityClient.h"
#include "AtspiApplications.h"
#include "AtspiBus.h"
#include "AtspiMirror.h"
#include "AtspiWindows.h"
#include "X11Windows.h"

#include <QElapsedTimer>
#include <QObject>
#include <QStringList>

#include <functional>
#include <map>
#include <memory>

namespace corvanta {

/// Tells that the objects of a program are here.
class AtspiArrivals final : public QObject {
    Q_OBJECT

Q_SIGNALS:
    void arrived();
};

/// The accessibility client on the desktop's accessibility bus (AT-SPI), under the names of macOS.
///
/// An application element stands for every program on the bus that carries the bundle identifier as its name. Reads
/// come from a mirror of each program's objects that is fetched in one go and is at most a tenth of a second old.
/// Programs that do not answer hold a turn of the event loop for 80 ms, all together; they read as they were for five
/// seconds more and are then absent until they answer. Pages inside them have an allowance of their own, so that a slow
/// page hides no window. Windows are measured and placed by way of the X server, in device pixels.
class AtspiAccessibilityClient final : public AccessibilityClient {
public:
    /// `primaryOrigin` is the top-left corner of the primary screen on the X root window.
    AtspiAccessibilityClient(X11Windows& windows, std::function<Point()> primaryOrigin);
    ~AtspiAccessibilityClient() override;

    [[nodiscard]] bool isTrusted() override;
    bool requestTrust() override;
    [[nodiscard]] QCoro::Task<void> lookAhead(QString bundleIdentifier) override;
    [[nodiscard]] std::optional<AccessibilityElement> application(const QString& bundleIdentifier) override;
    [[nodiscard]] std::optional<AccessibilityValue> attribute(const AccessibilityElement& element,
                                                              QStringView name) override;
    bool setAttribute(const AccessibilityElement& element, QStringView name, const AccessibilityValue& value) override;
    bool performAction(const AccessibilityElement& element, QStringView name) override;

    /// Whether the application shows a menu bar on the bus; answered without the person's permission as well.
    [[nodiscard]] bool hasMenuBar(const QString& bundleIdentifier);

    /// Whether it is known if the bus may be used; until then `isTrusted()` is false.
    [[nodiscard]] bool isSettled();

    /// Keeps what is known of the application recent whenever any application is looked at, so that a first look at it
    /// finds something even when it is busy.
    void keepReady(const QString& bundleIdentifier);

private:
    class Node;
    using Value = std::optional<AccessibilityValue>;

    static constexpr std::chrono::milliseconds hangLimit{80};
    /// Longer, since this waiting holds nobody up but the look itself.
    static constexpr std::chrono::milliseconds lookAheadLimit{1000};

    bool connect();
    void refreshKeptReady();
    [[nodiscard]] bool isExpected(const QStringList& processes) const;
    AtspiMirror& mirror(const QString& process);
    void await(const std::vector<AtspiMirror*>& mirrors);
    const AtspiItem* item(const AtspiReference& reference);

    [[nodiscard]] Value applicationAttribute(const QString& bundleIdentifier, QStringView name);
    [[nodiscard]] Value itemAttribute(const AtspiReference& reference, QStringView name);
    [[nodiscard]] std::vector<AccessibilityElement> windowsOf(const QString& bundleIdentifier);
    [[nodiscard]] std::optional<AtspiReference> menuBarOf(const QString& bundleIdentifier);
    [[nodiscard]] std::vector<AccessibilityElement> children(const AtspiItem& item);
    [[nodiscard]] std::optional<X11Windows::Window> windowBehind(const AtspiReference& reference);
    bool press(const AtspiReference& reference);

    X11Windows& m_windows;
    std::function<Point()> m_primaryOrigin;
    HangAllowance m_allowance{hangLimit};
    QStringList m_keptReady;
    QElapsedTimer m_keptReadyAge;
    HangAllowance m_pageAllowance{std::chrono::milliseconds(20)};
    AtspiBus m_bus;
    AtspiApplications m_applications;
    AtspiWindows m_windowsBehind;
    unsigned m_generation = 0;
    AtspiArrivals m_arrivals;
    std::map<QString, std::unique_ptr<AtspiMirror>> m_mirrors;
};

} // namespace corvanta
