// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QUrl>

#include <chrono>

namespace corvanta {

/// Where map tiles come from, and how politely they are asked for.
struct MapTileOptions {
    /// With {z}, {x} and {y}; no tiles are asked for when it is empty.
    QString urlTemplate;
    /// Whose data the tiles are, as has to be shown, and where more is said about that. Where they are empty, those of
    /// OpenStreetMap for its own server, and for any other its name and no address.
    QString attributionText;
    QString attributionAddress;
    /// Who asks, as the tile server sees it.
    QString userAgent;
    /// The folder of answers that may be used again; none when it is empty.
    QString cacheFolder;
    qint64 cacheBytes = 64 << 20;
    int highestZoom = 19;
    int mostRequests = 2;
    qint64 mostBytes = 1 << 20;
    int mostPixels = 1024;
    /// How much memory the pictures may take that are out of sight.
    qint64 mostKeptBytes = 48 << 20;
    /// How long nothing may come of an answer, and how long all of it may take.
    std::chrono::milliseconds timeout = std::chrono::seconds(15);
    std::chrono::milliseconds deadline = std::chrono::seconds(45);
    /// The pause after a failure; each further one doubles it.
    std::chrono::milliseconds firstPause = std::chrono::seconds(4);
    std::chrono::milliseconds longestPause = std::chrono::minutes(5);

    /// Whether the template is one: http or https with all three parts.
    [[nodiscard]] bool isUsable() const;
    /// What is shown of whose data the tiles are.
    [[nodiscard]] QString attribution() const;
    /// Where that leads to, http or https; empty where it leads nowhere.
    [[nodiscard]] QUrl attributionUrl() const;

    bool operator==(const MapTileOptions&) const = default;
};

} // namespace corvanta
