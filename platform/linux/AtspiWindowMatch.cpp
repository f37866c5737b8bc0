// SPDX-License-Identifier: MIT
#include "AtspiWindowMatch.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <utility>

namespace corvanta {

namespace {

/// Extents are whatever a program says, so they are compared where their differences have room.
std::int64_t distance(const PixelRect& left, const PixelRect& right) {
    const auto between = [](std::int64_t one, std::int64_t other) { return std::abs(one - other); };
    return between(left.x, right.x) + between(left.y, right.y) + between(left.width, right.width) +
           between(left.height, right.height);
}

} // namespace

std::optional<AtspiWindowMatch::Window> AtspiWindowMatch::windowBehind(const AtspiReference& reference,
                                                                       const QString& title,
                                                                       std::vector<Window> candidates,
                                                                       const Facts& facts) {
    const auto told = m_told.constFind(reference);
    if (told != m_told.cend() && std::ranges::find(candidates, *told) != candidates.end())
        return *told;
    std::vector<Window> titled = candidates;
    std::erase_if(titled, [&](Window window) { return facts.title(window) != title; });
    const bool isTitled = !titled.empty();
    if (isTitled)
        candidates = std::move(titled);
    if (candidates.empty())
        return std::nullopt;
    Window best = candidates.front();
    if (candidates.size() > 1) {
        const PixelRect wanted = facts.extents();
        best = *std::ranges::min_element(candidates, {},
                                         [&](Window window) { return distance(facts.frame(window), wanted); });
    }
    // One of another title may be only the first that the window manager knows.
    if (isTitled)
        m_told.insert(reference, best);
    return best;
}

void AtspiWindowMatch::forget(const QString& process) {
    m_told.removeIf([&](const auto& entry) { return entry.key().bus == process; });
}

} // namespace corvanta
