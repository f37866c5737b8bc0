// SPDX-License-Identifier: MIT
#pragma once

#include "support/Clock.h"

#include <QWidget>

#include <optional>

namespace corvanta {

/// A turning ring for work that is under way, which tells on request for how long. Hidden while there is none.
class ProgressIndicator final : public QWidget {
    Q_OBJECT

public:
    /// `clock` outlives the indicator.
    explicit ProgressIndicator(const Clock& clock, QWidget* parent = nullptr);

    void setActive(bool isActive);

    [[nodiscard]] bool isActive() const { return m_since.has_value(); }

    /// Turns the ring one step further and brings the texts up to date; the indicator's own timer does so while it is
    /// active.
    void turn();

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    void tellTime();

    const Clock& m_clock;
    std::optional<Clock::TimePoint> m_since;
    int m_timer = 0;
    int m_angle = 0;
};

} // namespace corvanta
