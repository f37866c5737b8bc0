// SPDX-License-Identifier: MIT
#pragma once

#include "AccessibilityClient.h"
#include "TaskWaiting.h"

#include <QProcess>
#include <QString>
#include <QStringList>

#include <optional>

namespace corvanta::testing {

/// Turns the event loop for as long as the driver sleeps after a press.
void pauseAsTheDriver();

/// The menu fixture as a child process, named on the accessibility bus as it is told.
class FixtureProcess {
public:
    explicit FixtureProcess(const QString& name);
    FixtureProcess(const FixtureProcess&) = delete;
    FixtureProcess& operator=(const FixtureProcess&) = delete;
    ~FixtureProcess();

    /// Sends a line and waits for its answer; false when none came.
    bool command(const QString& line);

    /// What the fixture has reported so far, answers left out.
    [[nodiscard]] QStringList reports();

    void sendSignal(int number);

    /// Ends the process at once and waits for it.
    void kill();

private:
    void read();

    QProcess m_process;
    QStringList m_reports;
    int m_answers = 0;
};

/// The label of an element: its title.
[[nodiscard]] QString titleOf(AccessibilityClient& client, const AccessibilityElement& element);

[[nodiscard]] std::vector<AccessibilityElement> childrenOf(AccessibilityClient& client,
                                                           const AccessibilityElement& element);

[[nodiscard]] QStringList titlesOf(AccessibilityClient& client, const std::vector<AccessibilityElement>& elements);

/// The first element below `top` with that title, `top` included.
[[nodiscard]] std::optional<AccessibilityElement> findTitled(AccessibilityClient& client,
                                                             const AccessibilityElement& top, const QString& title);

[[nodiscard]] std::vector<AccessibilityElement> windowsOf(AccessibilityClient& client, const QString& application);

[[nodiscard]] std::optional<AccessibilityElement> menuBarOf(AccessibilityClient& client, const QString& application);

} // namespace corvanta::testing
