// SPDX-License-Identifier: MIT
#pragma once

#include "GlibPointers.h"

#include <functional>
#include <map>
#include <string>

namespace corvanta::lab {

/// The switches at the end of a device's menu, and where the device was when it was last seen.
struct DeviceSwitches {
    /// "Automatically Show Web Inspector for JSContexts"
    bool showsInspectors = false;
    /// "Automatically Pause Connecting to JSContexts"
    bool pausesContexts = false;
    /// "Connect via Network"; the texts below are kept only then.
    bool connectsViaNetwork = false;
    std::string name;
    std::string runtimeName;
    /// "127.0.0.1:PORT".
    std::string inspectorAddress;

    bool operator==(const DeviceSwitches&) const = default;
};

/// What Safari keeps in its file.
struct SafariSettingsValues {
    /// "Show features for web developers"
    bool developerFeatures = true;
    /// Whether every booted device has an app with a JavaScript context.
    bool sampleContext = false;
    /// Whether every booted device has a web extension.
    bool sampleExtension = false;
    /// By the device's identifier. A device whose switches are all off is not in it.
    std::map<std::string, DeviceSwitches> devices;

    /// All off for a device that is not in the map.
    [[nodiscard]] DeviceSwitches device(const std::string& identifier) const;
    void setDevice(const std::string& identifier, const DeviceSwitches& switches);

    bool operator==(const SafariSettingsValues&) const = default;
};

/// Reads the text of the file. What is missing, damaged or of another type reads as the default.
[[nodiscard]] SafariSettingsValues parseSafariSettings(const std::string& text);

/// The text of the file: what `present` holds beside these settings is kept.
[[nodiscard]] std::string formatSafariSettings(const SafariSettingsValues& values, const std::string& present);

/// Safari's settings, kept in the lab home's `safari.json`. Main thread only.
///
/// Changes that others make to the file take effect at once.
class SafariSettings {
public:
    explicit SafariSettings(std::function<void()> onChange);
    SafariSettings(const SafariSettings&) = delete;
    SafariSettings& operator=(const SafariSettings&) = delete;
    ~SafariSettings();

    [[nodiscard]] const SafariSettingsValues& values() const { return m_values; }

    /// Takes effect and is written at once. Answers what went wrong when it could not be written, else an empty text.
    [[nodiscard]] std::string set(const SafariSettingsValues& values);

private:
    void read();
    [[nodiscard]] std::string fileText() const;

    std::string m_path;
    std::function<void()> m_onChange;
    SafariSettingsValues m_values;
    GlibPointer<GFileMonitor> m_monitor;
};

} // namespace corvanta::lab
