// SPDX-License-Identifier: MIT
#pragma once

#include "DeviceLayout.h"

#include <QByteArray>
#include <QPoint>
#include <QString>

#include <vector>

typedef struct _GtkWidget GtkWidget;

namespace corvanta::lab {

/// A widget that is part of the screen, with its place in the window's area.
struct ScreenLayer {
    GtkWidget* widget = nullptr;
    QPoint place;
};

/// What a picture is to be.
struct CaptureOptions {
    /// "png", "jpeg", "tiff" or "bmp".
    QString format;
    /// "ignored" leaves the corners square, "alpha" leaves them out, "black" makes them black.
    QString mask;
    /// Pixels of the picture per CSS pixel of the device.
    double scale = 1;
};

/// A picture of the screen as the bytes of a file; empty for a format that cannot be written.
///
/// The layers are drawn in their order as they are in the window, and brought to the picture's size.
[[nodiscard]] QByteArray captureScreen(const std::vector<ScreenLayer>& layers, const DeviceType& type,
                                       const DeviceLayout& layout, const CaptureOptions& options);

} // namespace corvanta::lab
