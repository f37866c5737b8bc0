// SPDX-License-Identifier: MIT
#include "PageShims.h"

using namespace Qt::Literals::StringLiterals;

namespace corvanta::lab {

QByteArray pageShims(const DeviceType& type) {
    return QString(uR"js((() => {
    const define = (target, values) => {
        for (const [name, value] of Object.entries(values)) {
            Object.defineProperty(target, name, { get: () => value, configurable: true, enumerable: true });
        }
    };
    define(window, { devicePixelRatio: %1, outerWidth: %2, outerHeight: %3 });
    define(Navigator.prototype, { maxTouchPoints: %4, platform: '%5' });
    define(Screen.prototype, { width: %2, height: %3, availWidth: %2, availHeight: %3 });
})();)js"_s)
        .arg(type.scale)
        .arg(type.screen.width())
        .arg(type.screen.height())
        .arg(type.touchPoints)
        .arg(type.platform)
        .toUtf8();
}

} // namespace corvanta::lab
