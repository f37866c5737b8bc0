// SPDX-License-Identifier: MIT
#pragma once

#include <QSize>

namespace corvanta::testing {

/// Gives the X server's screen another size, no larger than it was made with. Throws when the server refuses.
void setDisplaySize(const QSize& size);

} // namespace corvanta::testing
