// SPDX-License-Identifier: MIT
#pragma once

#include "ControlWindow.h"
#include "layout/Geometry.h"

#include <QByteArray>
#include <QString>
#include <QStringView>

#import <AppKit/AppKit.h>
#import <Foundation/Foundation.h>

/// The system's values and ours, without a judgement about any of them.
namespace corvanta {

[[nodiscard]] NSString* nativeText(QStringView text);
[[nodiscard]] QString textOf(NSString* text);

[[nodiscard]] NSData* nativeData(const QByteArray& data);
[[nodiscard]] QByteArray bytesOf(NSData* data);

/// Both sides have the origin at the bottom-left of the primary screen.
[[nodiscard]] NSRect nativeRect(const Rect& rect);
[[nodiscard]] Rect rectOf(NSRect rect);

[[nodiscard]] Screen screenOf(NSScreen* screen);

} // namespace corvanta
