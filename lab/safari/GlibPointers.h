// SPDX-License-Identifier: MIT
#pragma once

#include <gio/gio.h>

#include <memory>

namespace corvanta::lab {

struct GlibDeleter {
    void operator()(char* text) const { g_free(text); }

    void operator()(GError* error) const { g_error_free(error); }

    void operator()(GVariant* value) const { g_variant_unref(value); }

    void operator()(GUri* uri) const { g_uri_unref(uri); }

    void operator()(GBytes* bytes) const { g_bytes_unref(bytes); }

    template<typename Object>
    void operator()(Object* object) const {
        g_object_unref(object);
    }
};

/// One owned reference of a GObject, GVariant, GError, GUri or GLib string; released when it goes.
template<typename T>
using GlibPointer = std::unique_ptr<T, GlibDeleter>;

/// A further reference of an object that somebody else owns too.
template<typename Object>
[[nodiscard]] GlibPointer<Object> retain(Object* object) {
    return GlibPointer<Object>(static_cast<Object*>(g_object_ref(object)));
}

/// The owner's hold on one source of the main loop: removing the guard removes the source.
class SourceGuard {
public:
    SourceGuard() = default;
    SourceGuard(const SourceGuard&) = delete;
    SourceGuard& operator=(const SourceGuard&) = delete;

    ~SourceGuard() { clear(); }

    void set(guint identifier) {
        clear();
        m_identifier = identifier;
    }

    void clear() {
        if (m_identifier != 0)
            g_source_remove(m_identifier);
        m_identifier = 0;
    }

    /// For the source's own callback that answers G_SOURCE_REMOVE.
    void forget() { m_identifier = 0; }

    [[nodiscard]] bool isSet() const { return m_identifier != 0; }

private:
    guint m_identifier = 0;
};

} // namespace corvanta::lab
