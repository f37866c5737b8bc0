// SPDX-License-Identifier: MIT
#include "LocationFeed.h"

#include <webkit2/webkit2.h>

namespace corvanta::lab {

namespace {

/// Metres; the accuracy of a simulated position.
constexpr double accuracy = 5;

} // namespace

LocationFeed::LocationFeed(WebKitWebContext* context)
    : m_manager(webkit_web_context_get_geolocation_manager(context)) {
    g_signal_connect(m_manager, "start", G_CALLBACK(start), this);
    g_signal_connect(m_manager, "stop", G_CALLBACK(stop), this);
}

LocationFeed::~LocationFeed() {
    if (m_pendingAnswer != 0) {
        g_source_remove(m_pendingAnswer);
    }
    g_signal_handlers_disconnect_by_data(m_manager, this);
}

int LocationFeed::start(WebKitGeolocationManager*, void* feed) {
    auto* self = static_cast<LocationFeed*>(feed);
    self->m_isWanted = true;
    if (self->m_pendingAnswer == 0) {
        // The manager takes a position only after this signal has returned.
        self->m_pendingAnswer = g_idle_add(
            [](gpointer data) -> gboolean {
                auto* waiting = static_cast<LocationFeed*>(data);
                waiting->m_pendingAnswer = 0;
                waiting->tell();
                return G_SOURCE_REMOVE;
            },
            self);
    }
    return TRUE;
}

void LocationFeed::stop(WebKitGeolocationManager*, void* feed) {
    static_cast<LocationFeed*>(feed)->m_isWanted = false;
}

void LocationFeed::set(double latitude, double longitude) {
    m_position = {latitude, longitude};
    tell();
}

void LocationFeed::clear() {
    m_position.reset();
    tell();
}

void LocationFeed::tell() {
    if (!m_isWanted) {
        return;
    }
    if (!m_position) {
        webkit_geolocation_manager_failed(m_manager, "The device has no location.");
        return;
    }
    WebKitGeolocationPosition* position =
        webkit_geolocation_position_new(m_position->latitude, m_position->longitude, accuracy);
    webkit_geolocation_manager_update_position(m_manager, position);
    webkit_geolocation_position_free(position);
}

} // namespace corvanta::lab
