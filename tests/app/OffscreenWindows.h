// SPDX-License-Identifier: MIT
#pragma once

#include "TestMessages.h"

#include <gtest/gtest.h>

namespace corvanta::testing {

/// Lets a test show windows and tray icons: the offscreen platform complains about each hint that it cannot hand on,
/// and that it has no tray (seen in Qt 6.4). Every other message still fails the test, at its end.
class OffscreenWindows {
public:
    OffscreenWindows() = default;
    OffscreenWindows(const OffscreenWindows&) = delete;
    OffscreenWindows& operator=(const OffscreenWindows&) = delete;

    ~OffscreenWindows() {
        for (const std::string& message : m_collector.messages())
            EXPECT_TRUE(message.starts_with("warning: This plugin does not support ") ||
                        message.find("systemTrayWindowChanged") != std::string::npos)
                << message;
    }

private:
    MessageCollector m_collector;
};

} // namespace corvanta::testing
