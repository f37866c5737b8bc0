// SPDX-License-Identifier: MIT
#pragma once

#include "GlibPointers.h"

#include <functional>
#include <string>

namespace corvanta::lab {

/// Safari's settings, kept in the lab home's `safari.json`. Main thread only.
///
/// A missing or damaged file reads as the defaults; what it holds beside these settings is kept. Changes that others
/// make to the file take effect at once.
class SafariSettings {
public:
    explicit SafariSettings(std::function<void()> onChange);
    SafariSettings(const SafariSettings&) = delete;
    SafariSettings& operator=(const SafariSettings&) = delete;
    ~SafariSettings();

    /// "Show features for web developers"; on unless the user has turned it off.
    [[nodiscard]] bool developerFeatures() const { return m_developerFeatures; }

    /// Takes effect and is written at once. Answers what went wrong when it could not be written, else an empty text.
    [[nodiscard]] std::string setDeveloperFeatures(bool enabled);

private:
    void read();

    std::string m_path;
    std::function<void()> m_onChange;
    bool m_developerFeatures = true;
    GlibPointer<GFileMonitor> m_monitor;
};

} // namespace corvanta::lab
