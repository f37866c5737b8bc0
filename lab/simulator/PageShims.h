// SPDX-License-Identifier: MIT
#pragma once

#include "ScreenFigures.h"

#include <QByteArray>

namespace corvanta::lab {

/// What `pageShims` is made of.
extern const char deviceScript[];

/// Lets the style sheets of a page read the safe area and name the fonts of the system's text styles.
extern const char deviceStylesScript[];

/// Tells the device of a page's viewport and of its text fields; for a world of its own, with the message handlers
/// `corvantaViewport` and `corvantaFocus`, which get JSON texts.
extern const char observerScript[];

/// The script that tells a page what the engine cannot be set to: touch points, platform and orientation.
[[nodiscard]] QByteArray pageShims(const DeviceType& type, Orientation orientation);

/// The script that tells a loaded page that the device is held like that now.
[[nodiscard]] QByteArray orientationNews(Orientation orientation);

/// The script that tells a loaded page how much of its height the keyboard covers, in its CSS pixels.
[[nodiscard]] QByteArray keyboardNews(int covered);

/// Whether the text of a style sheet names a font of the system's text styles, which only `sheetNews` can add.
[[nodiscard]] bool namesTextStyles(const QByteArray& sheet);

/// The script that tells a loaded page the text of the style sheet at that address.
[[nodiscard]] QByteArray sheetNews(const QByteArray& address, const QByteArray& text);

/// The style sheet that holds safe area and fonts for `deviceStylesScript`; the size is one of `contentSizes()`.
[[nodiscard]] QByteArray deviceStyles(const QMargins& safeArea, const QString& contentSize);

} // namespace corvanta::lab
