// SPDX-License-Identifier: MIT
#pragma once

#include <QPointF>

#include <chrono>
#include <optional>

namespace corvanta {

/// Decides whether a turn of the wheel over the map is meant for the map or for what the map stands in.
///
/// Whoever scrolls the window and comes by the map goes on scrolling the window; whoever has moved the pointer on the
/// map itself, has pressed it, has come to it by keyboard or holds Control means the map. One turn of the wheel,
/// however long, is one meaning.
class WheelClaim {
public:
    using Time = std::chrono::milliseconds;

    /// The pointer is on the map, at that point of the screen: a map that moves beneath a pointer does not move it.
    void pointerMoved(QPointF point);
    void pointerLeft();
    void pressed();

    /// Whether the map takes a turn of the wheel at that time, of any clock that never goes backwards.
    [[nodiscard]] bool takes(Time now, bool isModified, bool hasKeyboard);

private:
    std::optional<QPointF> m_entered;
    bool m_isMeant = false;
    bool m_wasTaken = false;
    std::optional<Time> m_last;
};

} // namespace corvanta
