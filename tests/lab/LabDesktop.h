// SPDX-License-Identifier: MIT
#pragma once

#include "PageServer.h"
#include "ToolRun.h"

#include <QString>
#include <QStringList>

#include <gtest/gtest.h>

#include <functional>

namespace corvanta {

/// Serves events until the condition holds, for 20 seconds at most. The condition may itself serve events.
[[nodiscard]] bool waitFor(const std::function<bool()>& condition);

/// Runs a tool without holding up the pages that report here.
ToolRun runServing(const QString& program, const QStringList& arguments);

/// Runs one of the lab's programs in the same way.
ToolRun runLab(const QString& program, const QStringList& arguments);

/// Runs `xcrun simctl` in the same way.
ToolRun simctl(const QStringList& arguments);

/// Programs of this desktop that the lab started.
[[nodiscard]] QStringList labProcesses();

/// A desktop with the lab on it, and a server of pages that report to the test. Every device is shut down in the end.
class Simulator : public ::testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    /// Creates a device of that type, and boots it; answers its identifier.
    static QString create(const QString& type);
    static QString createBooted(const QString& type);

    /// The device's state as the tool lists it.
    static QString stateOf(const QString& udid);

    /// The device's window if it is on the desktop.
    static QString window(const QString& title);

    /// Turns the device: "portrait", "landscapeLeft" or "landscapeRight".
    static void turn(const QString& udid, const QString& orientation);

    PageServer server;
};

} // namespace corvanta
