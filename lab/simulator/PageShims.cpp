// SPDX-License-Identifier: MIT
#include "PageShims.h"

#include <QJsonDocument>
#include <QJsonObject>

using namespace Qt::Literals::StringLiterals;

namespace corvanta::lab {

namespace {

QByteArray news(const char* name, int value) {
    return "window[Symbol.for('corvanta.device')]?.({" + QByteArray(name) + ":" + QByteArray::number(value) + "});";
}

} // namespace

QByteArray pageShims(const DeviceType& type, Orientation orientation) {
    const QJsonObject given{{u"touchPoints"_s, type.touchPoints},
                            {u"platform"_s, type.platform},
                            {u"screenWidth"_s, type.screen.width()},
                            {u"screenHeight"_s, type.screen.height()},
                            {u"angle"_s, orientationAngle(orientation)}};
    return QByteArray(deviceScript).replace("GIVEN", QJsonDocument(given).toJson(QJsonDocument::Compact));
}

QByteArray orientationNews(Orientation orientation) {
    return news("angle", orientationAngle(orientation));
}

QByteArray keyboardNews(int covered) {
    return news("keyboard", covered);
}

QByteArray safeAreaStyle(const QMargins& safeArea) {
    const auto line = [](const char* side, int length) {
        return "--corvanta-safe-area-inset-" + QByteArray(side) + ":" + QByteArray::number(length) + "px;";
    };
    return ":root{" + line("top", safeArea.top()) + line("right", safeArea.right()) +
           line("bottom", safeArea.bottom()) + line("left", safeArea.left()) + "}";
}

} // namespace corvanta::lab
