// SPDX-License-Identifier: MIT
#pragma once

#include <QSize>
#include <QString>
#include <QVersionNumber>

#include <vector>

namespace corvanta::lab {

/// How a device looks around its screen.
enum class DeviceShape {
    /// Rounded screen with a sensor island.
    island,
    /// Square screen between two broad borders with a round button below.
    homeButton,
    /// Rounded screen with an even border.
    tablet,
};

/// A model that can be simulated. Sizes are CSS pixels in portrait orientation.
struct DeviceType {
    QString identifier;
    QString name;
    /// "iPhone" or "iPad".
    QString productFamily;
    QString modelIdentifier;
    DeviceShape shape = DeviceShape::island;
    QSize screen;
    double scale = 1;
    /// What a page sees as its window while the browser's bars are expanded.
    QSize viewport;
    /// Height of the status bar above the page.
    int statusBar = 0;
    int touchPoints = 5;
    /// The value of `navigator.platform`.
    QString platform;
    /// The oldest system that runs on the model.
    QVersionNumber minimumVersion;

    [[nodiscard]] bool isTablet() const { return shape == DeviceShape::tablet; }
};

/// A version of the simulated system.
struct Runtime {
    QString identifier;
    QString name;
    QVersionNumber version;
    QString build;

    bool operator==(const Runtime&) const = default;
};

/// Every model, in the order of the tool's list.
[[nodiscard]] const std::vector<DeviceType>& deviceTypes();

/// Every runtime that the lab can play, oldest first. Which of them are installed says the SystemDescription.
[[nodiscard]] const std::vector<Runtime>& runtimes();

/// The model with that identifier or name; null when there is none. Static lifetime.
[[nodiscard]] const DeviceType* findDeviceType(const QString& identifierOrName);

/// The runtime with that identifier, or with that name or version ("iOS 18.2", "iOS18.2", "18.2"); null when there is
/// none.
[[nodiscard]] const Runtime* findRuntime(const QString& identifierOrName);

/// Whether the model runs that system.
[[nodiscard]] bool isSupported(const DeviceType& type, const Runtime& runtime);

/// What the device's browser sends as its user agent.
[[nodiscard]] QString userAgent(const DeviceType& type, const Runtime& runtime);

} // namespace corvanta::lab
