// SPDX-License-Identifier: MIT
#pragma once

#include "DeviceCatalogue.h"

namespace corvanta::lab {

/// Lets the web engine take this process's screen and input devices for those of the model.
///
/// The engine asks the toolkit for the pixel ratio, the size of the screen and the pointing devices, and answers pages,
/// style sheets and media queries with them: `devicePixelRatio`, `resolution`, `screen.width`, `device-width`,
/// `pointer`, `hover` and whether there are touch events. This program has those few functions of the toolkit itself;
/// called by the engine they tell of the model, called by anything else they do what the toolkit does. Call once,
/// before the first page is made. Of the main thread.
void presentAs(const DeviceType& type);

} // namespace corvanta::lab
