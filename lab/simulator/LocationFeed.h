// SPDX-License-Identifier: MIT
#pragma once

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

    /// Forgets the position; pages that ask are told that it is unavailable.
    void clear();

private:
    struct Position {
        double latitude = 0;
        double longitude = 0;
    };

    static int start(WebKitGeolocationManager* manager, void* feed);
    static void stop(WebKitGeolocationManager* manager, void* feed);
    void tell();

    WebKitGeolocationManager* m_manager = nullptr;
    std::optional<Position> m_position;
    bool m_isWanted = false;
    /// Held while an answer waits for the event loop; 0 when none does.
    unsigned m_pendingAnswer = 0;
};

} // namespace corvanta::lab
