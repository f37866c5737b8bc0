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

QByteArray startPage(const DeviceType& type, const Runtime& runtime) {
    return QString(uR"html(<!doctype html><html lang="en"><meta charset="utf-8"><title>Start Page</title>
<meta name="viewport" content="width=device-width">
<style>
html { height: 100%; background: #f2f2f7; color: #1c1c1e; font: 17px -apple-system, system-ui, sans-serif; }
body { min-height: 100%; margin: 0; display: flex; flex-direction: column; align-items: center; justify-content: center;
       text-align: center; }
h1 { font-size: 24px; margin: 0 24px 8px; } p { margin: 0 24px; color: #636366; }
</style><h1>%1</h1><p>%2</p><p>No page is open.</p></html>)html"_s)
        .arg(type.name.toHtmlEscaped(), runtime.name.toHtmlEscaped())
        .toUtf8();
}

} // namespace corvanta::lab
