// SPDX-License-Identifier: MIT
#pragma once

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
    }

    [[nodiscard]] std::optional<Screen> screen() const override { return shownOn; }

    /// Every frame that was set, in order.
    [[nodiscard]] const std::vector<Rect>& frames() const { return m_frames; }

    std::optional<Screen> shownOn;

private:
    Rect m_frame;
    std::vector<Rect> m_frames;
};

} // namespace corvanta::testing
