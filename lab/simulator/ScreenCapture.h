// SPDX-License-Identifier: MIT
#pragma once

#include "DeviceDrawing.h"

#include <QByteArray>
#include <QPoint>
#include <QString>

#include <vector>

typedef struct _GtkWidget GtkWidget;

namespace corvanta::lab {

/// A widget on the screen, with its place in the window's area.
struct ScreenLayer {
    GtkWidget* widget = nullptr;
    QPoint place;
};

/// What a picture is to be.
struct CaptureOptions {
    /// "png", "jpeg", "tiff", "bmp" or "gif".
    QString format;
    /// "ignored" leaves the corners square, "alpha" leaves them out, "black" makes them black.
    QString mask;
    /// Pixels of the picture per CSS pixel of the device.
    double scale = 1;
};

/// A picture of the screen as the bytes of a file; empty for a format that cannot be written.
///
/// The canvas, which covers the window's area, is drawn at the picture's size; the layers are drawn over it in their
/// order as they are in the window, and brought to that size.
[[nodiscard]] QByteArray captureScreen(GtkWidget* canvas, const std::vector<ScreenLayer>& layers,
                                       const DeviceType& type, const DeviceLayout& layout, const DeviceLook& look,
                                       const CaptureOptions& options);

} // namespace corvanta::lab
