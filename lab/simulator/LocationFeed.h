// SPDX-License-Identifier: MIT
#pragma once

#include "LocationRoute.h"

#include <chrono>
#include <optional>

typedef struct _WebKitGeolocationManager WebKitGeolocationManager;
typedef struct _WebKitWebContext WebKitWebContext;

namespace corvanta::lab {

/// Gives the pages of one context the device's simulated position. Of the main thread.
class LocationFeed {
public:
    /// Answers the context's geolocation manager from now on. The context must outlive the feed.
    explicit LocationFeed(WebKitWebContext* context);
    LocationFeed(const LocationFeed&) = delete;
    LocationFeed& operator=(const LocationFeed&) = delete;
    ~LocationFeed();

    /// Sets the position in degrees; pages that watch it hear of it at once.
    void set(double latitude, double longitude);

    /// Travels along the route from now on, until another location is set or cleared. A route that does not repeat ends
    /// at its last place.
    void follow(LocationRoute route);

    /// Forgets the position; pages that ask are told that it is unavailable.
    void clear();

    /// Whether pages are told the position at all; without it they hear that there is none.
    void setAllowed(bool isAllowed);

private:
    struct Position {
        double latitude = 0;
        double longitude = 0;
        /// Metres a second and degrees from north, while the device travels.
        double speed = -1;
        double heading = -1;
    };

    static int start(WebKitGeolocationManager* manager, void* feed);
    static void stop(WebKitGeolocationManager* manager, void* feed);
    void tell();
    void stopTravelling();
    [[nodiscard]] bool travel();

    WebKitGeolocationManager* m_manager = nullptr;
    std::optional<Position> m_position;
    std::optional<LocationRoute> m_route;
    std::chrono::steady_clock::time_point m_departure;
    unsigned m_travel = 0;
    bool m_isWanted = false;
    bool m_isAllowed = true;
    /// Held while an answer waits for the event loop; 0 when none does.
    unsigned m_pendingAnswer = 0;
};

} // namespace corvanta::lab
