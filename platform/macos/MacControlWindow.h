// SPDX-License-Identifier: MIT
#pragma once

#include "ControlWindow.h"

#include <memory>

class QWidget;

namespace corvanta {

/// The window of a top-level widget, which outlives it.
[[nodiscard]] std::shared_ptr<ControlWindow> makeMacControlWindow(QWidget& widget);

} // namespace corvanta
