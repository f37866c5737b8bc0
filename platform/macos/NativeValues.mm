// SPDX-License-Identifier: MIT
#include "NativeValues.h"

namespace corvanta {

NSString* nativeText(QStringView text) {
    return [NSString stringWithCharacters:reinterpret_cast<const unichar*>(text.utf16())
                                   length:static_cast<NSUInteger>(text.size())];
}

QString textOf(NSString* text) {
    QString result(static_cast<qsizetype>(text.length), Qt::Uninitialized);
    [text getCharacters:reinterpret_cast<unichar*>(result.data()) range:NSMakeRange(0, text.length)];
    return result;
}

NSData* nativeData(const QByteArray& data) {
    return [NSData dataWithBytes:data.constData() length:static_cast<NSUInteger>(data.size())];
}

QByteArray bytesOf(NSData* data) {
    return QByteArray(static_cast<const char*>(data.bytes), static_cast<qsizetype>(data.length));
}

NSRect nativeRect(const Rect& rect) {
    return NSMakeRect(rect.x, rect.y, rect.width, rect.height);
}

Rect rectOf(NSRect rect) {
    return {rect.origin.x, rect.origin.y, rect.size.width, rect.size.height};
}

Screen screenOf(NSScreen* screen) {
    return {rectOf(screen.frame), rectOf(screen.visibleFrame)};
}

} // namespace corvanta
