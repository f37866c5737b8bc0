// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

class QWidget;

namespace corvanta {

/// Whose data the program contains, and under which licences: one paragraph for each.
[[nodiscard]] QString dataCredits();

/// Opens the box that tells what program this is, or brings it forward if it is open. It belongs to `window`.
void openAboutBox(QWidget& window);

} // namespace corvanta
