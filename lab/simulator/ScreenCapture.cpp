// SPDX-License-Identifier: MIT
#include "ScreenCapture.h"

#include "DeviceDrawing.h"

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

struct ObjectFreer {
    void operator()(GdkPixbuf* object) const { g_object_unref(object); }
};

QByteArray fileBytes(GdkPixbuf* picture, const QByteArray& format) {
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

} // namespace

QByteArray captureScreen(const std::vector<ScreenLayer>& layers, const DeviceType& type, const DeviceLayout& layout,
                         const CaptureOptions& options) {
    const QSize size(qRound(type.screen.width() * options.scale), qRound(type.screen.height() * options.scale));
    if (size.isEmpty() || size.width() > 8192 || size.height() > 8192) {
        return {};
    }
    const std::unique_ptr<cairo_surface_t, SurfaceFreer> surface(cairo_image_surface_create(
        options.mask == u"alpha" ? CAIRO_FORMAT_ARGB32 : CAIRO_FORMAT_RGB24, size.width(), size.height()));
    {
        const std::unique_ptr<cairo_t, ContextFreer> context(cairo_create(surface.get()));
        cairo_scale(context.get(), size.width() / layout.screen.width(), size.height() / layout.screen.height());
        cairo_translate(context.get(), -layout.screen.x(), -layout.screen.y());
        if (options.mask != u"ignored") {
            addScreenOutline(context.get(), type, layout);
            cairo_clip(context.get());
        }
        for (const ScreenLayer& layer : layers) {
            cairo_save(context.get());
            cairo_translate(context.get(), layer.place.x(), layer.place.y());
            gtk_widget_draw(layer.widget, context.get());
            cairo_restore(context.get());
        }
    }
    const std::unique_ptr<GdkPixbuf, ObjectFreer> picture(
        gdk_pixbuf_get_from_surface(surface.get(), 0, 0, size.width(), size.height()));
    return picture ? fileBytes(picture.get(), options.format.toUtf8()) : QByteArray();
}

} // namespace corvanta::lab
