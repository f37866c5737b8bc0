// SPDX-License-Identifier: MIT
#pragma once

#include "CallLog.h"
#include "layout/WorkspaceArranging.h"

#include <exception>
#include <utility>

namespace corvanta::testing {

/// An arranger that records what it is asked to do and moves nothing.
class FakeArranger final : public WorkspaceArranging {
public:
    explicit FakeArranger(CallLog& log)
        : m_log(log) {}

    void tile(std::shared_ptr<ControlWindow> controlWindow, const QString& simulatorDeviceName,
              const std::optional<AccessibilityElement>& inspectorWindow, const ColumnRatios& ratios) override {
        m_log.add(QStringLiteral("tile ") + simulatorDeviceName);
        tiledControlWindow = controlWindow;
        tiledInspectorWindow = inspectorWindow;
        tiledRatios = ratios;
        if (m_error)
            std::rethrow_exception(m_error);
    }

    void restore() override { m_log.add(QStringLiteral("restore")); }

    /// Every later tiling ends in `error`.
    template<typename Error>
    void fail(Error error) {
        m_error = std::make_exception_ptr(std::move(error));
    }

    /// Later tilings succeed again.
    void succeed() { m_error = nullptr; }

    /// What the last tiling was given.
    std::weak_ptr<ControlWindow> tiledControlWindow;
    std::optional<AccessibilityElement> tiledInspectorWindow;
    ColumnRatios tiledRatios;

private:
    CallLog& m_log;
    std::exception_ptr m_error;
};

} // namespace corvanta::testing
