// SPDX-License-Identifier: MIT
#include "LocationFeed.h"

#include <webkit2/webkit2.h>

#include <utility>

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
    stopTravelling();
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
    stopTravelling();
    m_position = {.latitude = latitude, .longitude = longitude};
    tell();
}

void LocationFeed::follow(LocationRoute route) {
    stopTravelling();
    m_departure = std::chrono::steady_clock::now();
    const auto step = +[](gpointer feed) -> gboolean {
        auto* self = static_cast<LocationFeed*>(feed);
        if (self->travel()) {
            return G_SOURCE_CONTINUE;
        }
        self->m_travel = 0;
        self->m_route.reset();
        return G_SOURCE_REMOVE;
    };
    m_travel = g_timeout_add(static_cast<guint>(route.interval.count()), step, this);
    m_route = std::move(route);
    if (!travel()) {
        stopTravelling();
    }
}

void LocationFeed::stopTravelling() {
    m_route.reset();
    if (m_travel != 0) {
        g_source_remove(m_travel);
        m_travel = 0;
    }
}

bool LocationFeed::travel() {
    if (!m_route) {
        return false;
    }
    const auto elapsed =
        std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - m_departure);
    const LocationRoute::Point point = m_route->at(elapsed);
    m_position = {.latitude = point.position.latitude,
                  .longitude = point.position.longitude,
                  .speed = point.isLast ? 0 : m_route->speed,
                  .heading = point.heading};
    tell();
    return !point.isLast;
}

void LocationFeed::setAllowed(bool isAllowed) {
    if (std::exchange(m_isAllowed, isAllowed) != isAllowed) {
        tell();
    }
}

void LocationFeed::clear() {
    stopTravelling();
    m_position.reset();
    tell();
}

void LocationFeed::tell() {
    if (!m_isWanted) {
        return;
    }
    if (!m_isAllowed) {
        webkit_geolocation_manager_failed(m_manager, "The device's browser may not tell where it is.");
        return;
    }
    if (!m_position) {
        webkit_geolocation_manager_failed(m_manager, "The device has no location.");
        return;
    }
    WebKitGeolocationPosition* position =
        webkit_geolocation_position_new(m_position->latitude, m_position->longitude, accuracy);
    if (m_position->speed >= 0) {
        webkit_geolocation_position_set_speed(position, m_position->speed);
        webkit_geolocation_position_set_heading(position, m_position->heading);
    }
    webkit_geolocation_manager_update_position(m_manager, position);
    webkit_geolocation_position_free(position);
}

} // namespace corvanta::lab
