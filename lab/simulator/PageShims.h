// SPDX-License-Identifier: MIT
#pragma once

#include "ScreenFigures.h"

#include <QByteArray>

namespace corvanta::lab {

/// What `pageShims` is made of.
extern const char deviceScript[];

/// Lets the style sheets of a page read the safe area.
extern const char safeAreaScript[];

/// Tells the device of a page's viewport and of its text fields; for a world of its own, with the message handlers
/// `corvantaViewport` and `corvantaFocus`, which get JSON texts.
extern const char observerScript[];

/// The script that tells a page what the engine cannot be set to: touch points, platform and orientation.
[[nodiscard]] QByteArray pageShims(const DeviceType& type, Orientation orientation);

/// The script that tells a loaded page that the device is held like that now.
[[nodiscard]] QByteArray orientationNews(Orientation orientation);

/// The script that tells a loaded page how much of its height the keyboard covers, in its CSS pixels.
[[nodiscard]] QByteArray keyboardNews(int covered);

/// The style sheet that holds the safe area for `safeAreaScript`.
[[nodiscard]] QByteArray safeAreaStyle(const QMargins& safeArea);

} // namespace corvanta::lab
