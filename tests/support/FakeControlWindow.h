// SPDX-License-Identifier: MIT
#pragma once

#include "CallLog.h"
#include "ControlWindow.h"

#include <vector>

namespace corvanta::testing {

/// A window of the application's own that remembers where it has been put.
class FakeControlWindow final : public ControlWindow {
public:
    explicit FakeControlWindow(const Rect& frame = {10, 20, 430, 860})
        : m_frame(frame) {}

    [[nodiscard]] Rect frame() const override { return m_frame; }

    void setFrame(const Rect& frame) override {
        m_frame = frame;
        m_frames.push_back(frame);
        if (log != nullptr)
            log->add(
                QStringLiteral("setFrame %1,%2 %3,%4").arg(frame.x).arg(frame.y).arg(frame.width).arg(frame.height));
    }

    [[nodiscard]] std::optional<Screen> screen() const override { return shownOn; }

    /// Every frame that was set, in order.
    [[nodiscard]] const std::vector<Rect>& frames() const { return m_frames; }

    std::optional<Screen> shownOn;
    /// Where each frame that is set is recorded too, as "setFrame 0,25 356,875".
    CallLog* log = nullptr;

private:
    Rect m_frame;
    std::vector<Rect> m_frames;
};

} // namespace corvanta::testing
