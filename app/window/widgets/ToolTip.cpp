// SPDX-License-Identifier: MIT
#include "window/widgets/ToolTip.h"

#include "window/DisplayText.h"

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

QString plainToolTip(const QString& text) {
    return u"<span>"_s + displayText(text).toHtmlEscaped() + u"</span>"_s;
}

} // namespace corvanta
