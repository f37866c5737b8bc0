// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace corvanta {

/// The text as a tooltip that shows it letter by letter; tooltips take anything that looks like mark-up for mark-up.
[[nodiscard]] QString plainToolTip(const QString& text);

} // namespace corvanta
