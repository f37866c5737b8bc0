// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QIcon>

/// The control window's own symbols, drawn, so that they are sharp at every scale.
namespace corvanta::Symbols {

/// Three columns in a window: the program's mark.
[[nodiscard]] QIcon workspace(const QColor& colour);

/// An arrow that turns back to its beginning, with a paler one for the disabled state.
[[nodiscard]] QIcon refresh(const QColor& colour, const QColor& disabled);

} // namespace corvanta::Symbols
