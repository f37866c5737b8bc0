// SPDX-License-Identifier: MIT
#pragma once

#include "CallLog.h"
#include "Desktop.h"
#include "Script.h"

#include <QHash>
#include <QSet>

#include <functional>

namespace corvanta::testing {

enum class DesktopOperation { openApplication };

/// A desktop that records what it is asked to do. At first nothing runs and nothing is installed.
class FakeDesktop final : public Desktop {
public:
    FakeDesktop(VirtualClock& clock, CallLog& log)
        : script(clock)
        , m_log(log) {}

    [[nodiscard]] bool isRunning(const QString& bundleIdentifier) const override;
    void activate(const QString& bundleIdentifier) override;
    void activateSelf() override;
    [[nodiscard]] std::optional<QString> applicationPath(const QString& bundleIdentifier) const override;
    /// A success makes the application run that is installed under that path.
    [[nodiscard]] QCoro::Task<void> openApplication(QString path) override;
    bool openURL(const URL& url) override;

    [[nodiscard]] std::vector<Screen> screens() const override { return allScreens; }

    [[nodiscard]] std::optional<Screen> mainScreen() const override { return focusedScreen; }

    [[nodiscard]] OperatingSystemVersion operatingSystemVersion() const override { return version; }

    Script<DesktopOperation> script;
    QSet<QString> running;
    /// What happens once the application under that path has been opened.
    std::function<void(const QString& path)> whenOpened;
    /// The paths of what is installed, by bundle identifier.
    QHash<QString, QString> paths;
    bool takesURLs = true;
    std::vector<Screen> allScreens;
    std::optional<Screen> focusedScreen;
    OperatingSystemVersion version{15, 1};

private:
    CallLog& m_log;
};

} // namespace corvanta::testing
