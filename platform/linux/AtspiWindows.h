// SPDX-License-Identifier: MIT
#pragma once

#include "AtspiApplications.h"
#include "AtspiBus.h"
#include "AtspiItem.h"
#include "AtspiWindowMatch.h"
#include "X11Windows.h"

#include <optional>

namespace corvanta {

/// Where accessible objects are on the X screen: windows by way of the X window behind them, everything else by what
/// its program says.
class AtspiWindows {
public:
    AtspiWindows(X11Windows& windows, const AtspiBus& bus, HangAllowance& allowance, AtspiApplications& applications);

    [[nodiscard]] static bool isWindowRole(AtspiRole role);

    /// Whether the object is a top-level window of its program.
    [[nodiscard]] static bool isWindow(const AtspiItem& item);

    /// The area that a person sees of it; nothing where the window or the answer is missing.
    [[nodiscard]] std::optional<PixelRect> frame(const AtspiItem& item);

    /// Nothing for what is no window.
    [[nodiscard]] std::optional<X11Windows::Window> windowBehind(const AtspiItem& item);

    /// Forgets the windows of a process that has left the bus.
    void forget(const QString& process) { m_match.forget(process); }

    void clear() { m_match.clear(); }

private:
    [[nodiscard]] std::optional<PixelRect> extents(const AtspiReference& reference);

    X11Windows& m_windows;
    const AtspiBus& m_bus;
    HangAllowance& m_allowance;
    AtspiApplications& m_applications;
    AtspiWindowMatch m_match;
};

} // namespace corvanta
