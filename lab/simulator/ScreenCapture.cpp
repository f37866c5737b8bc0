// SPDX-License-Identifier: MIT
#include "ScreenCapture.h"

#include "GifPicture.h"

#include <gtk/gtk.h>

#include <memory>

namespace corvanta::lab {

namespace {

struct SurfaceFreer {
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
};

struct ContextFreer {
    void operator()(cairo_t* context) const { cairo_destroy(context); }
};

using SurfacePointer = std::unique_ptr<cairo_surface_t, SurfaceFreer>;
using ContextPointer = std::unique_ptr<cairo_t, ContextFreer>;

struct ObjectFreer {
    void operator()(GdkPixbuf* object) const { g_object_unref(object); }
};

QByteArray fileBytes(GdkPixbuf* picture, const QByteArray& format) {
    if (format == "gif") {
        return gifPicture(gdk_pixbuf_read_pixels(picture),
                          {gdk_pixbuf_get_width(picture), gdk_pixbuf_get_height(picture)},
                          gdk_pixbuf_get_rowstride(picture), gdk_pixbuf_get_n_channels(picture));
    }
    gchar* buffer = nullptr;
    gsize size = 0;
    QByteArray result;
    const char* keys[] = {"quality", nullptr};
    const char* values[] = {"85", nullptr};
    const bool isJpeg = format == "jpeg";
    if (gdk_pixbuf_save_to_bufferv(picture, &buffer, &size, format.constData(),
                                   const_cast<char**>(isJpeg ? keys : keys + 1),
                                   const_cast<char**>(isJpeg ? values : values + 1), nullptr) != FALSE) {
        result = QByteArray(buffer, static_cast<qsizetype>(size));
        g_free(buffer);
    }
    return result;
}

/// Draws a widget by way of a picture at its own size: scaled on its way, its edges would mix with nothing.
void drawLayer(cairo_t* context, const ScreenLayer& layer) {
    const int width = gtk_widget_get_allocated_width(layer.widget);
    const int height = gtk_widget_get_allocated_height(layer.widget);
    const SurfacePointer picture(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width, height));
    {
        const ContextPointer own(cairo_create(picture.get()));
        gtk_widget_draw(layer.widget, own.get());
    }
    cairo_save(context);
    cairo_set_antialias(context, CAIRO_ANTIALIAS_NONE);
    cairo_set_source_surface(context, picture.get(), layer.place.x(), layer.place.y());
    cairo_pattern_set_extend(cairo_get_source(context), CAIRO_EXTEND_PAD);
    cairo_rectangle(context, layer.place.x(), layer.place.y(), width, height);
    cairo_fill(context);
    cairo_restore(context);
}

} // namespace

QByteArray captureScreen(GtkWidget* canvas, const std::vector<ScreenLayer>& layers, const DeviceType& type,
                         const DeviceLayout& layout, const DeviceLook& look, const CaptureOptions& options) {
    const QSize held = isLandscape(look.orientation) ? type.screen.transposed() : type.screen;
    const QSize size(qRound(held.width() * options.scale), qRound(held.height() * options.scale));
    if (size.isEmpty() || size.width() > 8192 || size.height() > 8192) {
        return {};
    }
    const SurfacePointer surface(cairo_image_surface_create(
        options.mask == u"alpha" ? CAIRO_FORMAT_ARGB32 : CAIRO_FORMAT_RGB24, size.width(), size.height()));
    {
        const ContextPointer context(cairo_create(surface.get()));
        cairo_scale(context.get(), size.width() / layout.screen.width(), size.height() / layout.screen.height());
        cairo_translate(context.get(), -layout.screen.x(), -layout.screen.y());
        if (options.mask != u"ignored") {
            addScreenOutline(context.get(), type, layout);
            cairo_clip(context.get());
        }
        gtk_widget_draw(canvas, context.get());
        for (const ScreenLayer& layer : layers) {
            drawLayer(context.get(), layer);
        }
        drawOverScreen(context.get(), type, layout, look);
        if (options.mask == u"ignored") {
            drawSquareCorners(context.get(), type, layout, look);
        }
    }
    const std::unique_ptr<GdkPixbuf, ObjectFreer> picture(
        gdk_pixbuf_get_from_surface(surface.get(), 0, 0, size.width(), size.height()));
    return picture ? fileBytes(picture.get(), options.format.toUtf8()) : QByteArray();
}

} // namespace corvanta::lab
