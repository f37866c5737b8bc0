// SPDX-License-Identifier: MIT
#pragma once

#include "Desktop.h"

namespace corvanta {

/// The desktop by way of AppKit.
class MacDesktop final : public Desktop {
public:
    [[nodiscard]] bool isRunning(const QString& bundleIdentifier) const override;
    void activate(const QString& bundleIdentifier) override;
    void activateSelf() override;
    [[nodiscard]] std::optional<QString> applicationPath(const QString& bundleIdentifier) const override;
    /// Throws NativeError.
    [[nodiscard]] QCoro::Task<void> openApplication(QString path) override;
    bool openURL(const URL& url) override;
    [[nodiscard]] std::vector<Screen> screens() const override;
    [[nodiscard]] std::optional<Screen> mainScreen() const override;
    [[nodiscard]] OperatingSystemVersion operatingSystemVersion() const override;
};

} // namespace corvanta
