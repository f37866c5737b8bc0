// SPDX-License-Identifier: MIT
#pragma once

#include "window/Appearance.h"

#include <QIcon>

namespace corvanta {

/// The control window's own symbols, one family on a grid of 16.
enum class Symbol {
    workspace,
    checklist,
    seal,
    passed,
    failed,
    blocked,
    play,
    refresh,
    search,
    columns,
    stop,
    compass,
    chevronRight,
    chevronUpDown,
    star,
    location,
    locationOff,
    trash,
    clock,
    phaseIdle,
    phaseWorking,
    phaseRunning,
    phaseFailed,
};

/// The last one, for those who walk through all of them.
inline constexpr Symbol lastSymbol = Symbol::phaseFailed;

} // namespace corvanta

namespace corvanta::Symbols {

/// Makes the pictures available; idempotent.
void initialise();

/// A symbol that is drawn in the palette's colour of that tint at the moment when it is drawn, sharp at every scale.
[[nodiscard]] QIcon icon(Symbol symbol, Tint tint = Tint::text);

/// A symbol in a colour of its own.
[[nodiscard]] QIcon icon(Symbol symbol, const QColor& colour);

/// Three columns in a window: the program's mark.
[[nodiscard]] QIcon workspace(const QColor& colour);

} // namespace corvanta::Symbols
