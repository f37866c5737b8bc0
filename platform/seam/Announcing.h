// SPDX-License-Identifier: MIT
#pragma once

class QString;
class QWidget;

namespace corvanta {

/// Has `text` read out to whoever has the screen read, whatever has the focus, in the name of the widget that shows it.
/// Does nothing where nobody listens. Main thread only.
void announceOnPlatform(QWidget& source, const QString& text);

} // namespace corvanta
