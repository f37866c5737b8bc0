// SPDX-License-Identifier: MIT
#include "map/MapLabels.h"

#include <algorithm>

namespace corvanta {

LabelLayout::LabelLayout(const QRectF& bounds)
    : m_bounds(bounds) {}

bool LabelLayout::place(const QRectF& room) {
    const bool isFree = m_bounds.contains(room) &&
                        std::ranges::none_of(m_taken, [&](const QRectF& taken) { return taken.intersects(room); });
    if (isFree)
        reserve(room);
    return isFree;
}

} // namespace corvanta
