// SPDX-License-Identifier: MIT
#include "PageShims.h"

#include "TextStyles.h"

#include <QJsonArray>
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

bool namesTextStyles(const QByteArray& sheet) {
    return sheet.contains("-apple-system-");
}

QByteArray sheetNews(const QByteArray& address, const QByteArray& text) {
    const QJsonArray values{QString::fromUtf8(address), QString::fromUtf8(text)};
    return "window[Symbol.for('corvanta.styles')]?.(..." + QJsonDocument(values).toJson(QJsonDocument::Compact) + ");";
}

QByteArray deviceStyles(const QMargins& safeArea, const QString& contentSize) {
    const auto inset = [](const char* side, int length) {
        return "--corvanta-safe-area-inset-" + QByteArray(side) + ":" + QByteArray::number(length) + "px;";
    };
    QByteArray style = ":root{" + inset("top", safeArea.top()) + inset("right", safeArea.right()) +
                       inset("bottom", safeArea.bottom()) + inset("left", safeArea.left());
    for (const TextStyle& text : textStyles()) {
        style +=
            "--corvanta-font-" + QByteArray(text.name) + ":" + QByteArray::number(text.sizeAt(contentSize)) + "px;";
    }
    return style + "}";
}

} // namespace corvanta::lab
