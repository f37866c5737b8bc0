// SPDX-License-Identifier: MIT
#pragma once

#include "MapTileOptions.h"
#include "map/MapTiles.h"

#include <QElapsedTimer>
#include <QImage>
#include <QNetworkAccessManager>
#include <QObject>
#include <QThread>
#include <QTimer>

#include <map>
#include <set>
#include <vector>

class QNetworkReply;
class QNetworkRequest;

namespace corvanta {

/// Makes pictures of what a server sent, in a thread of its own.
class MapTileDecoder final : public QObject {
    Q_OBJECT

public:
    explicit MapTileDecoder(int mostPixels)
        : m_mostPixels(mostPixels) {}

    /// A null image when the bytes are no picture or too large a one. Dark pictures keep their hues and turn their
    /// lightness round.
    [[nodiscard]] static QImage decode(const QByteArray& bytes, int mostPixels, bool isDark);

    void work(const corvanta::MapTile& tile, const QByteArray& bytes, bool isDark, int generation);

Q_SIGNALS:
    void decoded(const corvanta::MapTile& tile, const QImage& image, int generation);

private:
    const int m_mostPixels;
};

/// The map tiles that are seen, as they arrive from a server. Main thread only, and never keeps it waiting.
///
/// Only what is seen is asked for, as the answers' own rules about keeping them allow, and a server that fails is left
/// alone for longer and longer. What was kept on disk is shown first, however old and whatever the server does. Nothing
/// is ever said about a tile that does not come: the base map is there.
class MapTileStore final : public QObject {
    Q_OBJECT

public:
    explicit MapTileStore(const MapTileOptions& options, QObject* parent = nullptr);
    ~MapTileStore() override;

    [[nodiscard]] const MapTileOptions& options() const { return m_options; }

    [[nodiscard]] bool isActive() const { return m_options.isUsable(); }

    /// What is seen from now on, the most wanted first. What else was asked for is not waited for any more.
    void show(const std::vector<MapTile>& tiles);

    /// Asks for nothing more until the next `show`: the map moves by itself, or nobody sees it. What was asked for may
    /// still arrive.
    void pause();

    void setDark(bool isDark);

    struct Picture {
        /// Null while it is not there.
        const QImage* image = nullptr;
        /// From 0, just arrived, to 1.
        double opacity = 0;
    };

    [[nodiscard]] Picture picture(const MapTile& tile) const;

    /// Whether a picture is still becoming opaque.
    [[nodiscard]] bool isFading() const;

    /// Tiles that have just arrived are opaque at once.
    void setFades(bool fades) { m_fades = fades; }

Q_SIGNALS:
    void tileArrived();

    /// For the decoder.
    void decodingWanted(const corvanta::MapTile& tile, const QByteArray& bytes, bool isDark, int generation);

private:
    struct Kept {
        QImage image;
        qint64 arrival = 0;
        quint64 lastShown = 0;
    };

    struct Request {
        QNetworkReply* reply = nullptr;
        /// Whether the server was asked, rather than the disk alone.
        bool hasLeft = false;
    };

    struct Failure {
        int count = 0;
        qint64 nextTry = 0;
    };

    void requestNext();
    [[nodiscard]] QNetworkRequest requestFor(const MapTile& tile) const;
    void lookUp();
    void lookUp(const MapTile& tile);
    void request(const MapTile& tile);
    void receive(const MapTile& tile);
    void decode(const MapTile& tile, QNetworkReply& reply);
    void keep(const MapTile& tile, const QImage& image, int generation);
    void failed(const MapTile& tile);
    void wakeForRetry();
    void forgetUnseen();
    [[nodiscard]] std::chrono::milliseconds pauseAfter(int failures) const;

    MapTileOptions m_options;
    QNetworkAccessManager m_network;
    QThread m_thread;
    QElapsedTimer m_clock;
    QTimer m_retry;
    std::vector<MapTile> m_wanted;
    std::map<MapTile, Kept> m_kept;
    std::map<MapTile, Failure> m_failures;
    std::map<MapTile, Request> m_requests;
    /// What is being looked for on disk, and what has been.
    std::map<MapTile, QNetworkReply*> m_lookUps;
    std::set<MapTile> m_lookedUp;
    std::set<MapTile> m_decoding;
    /// What the server, or its own rules about keeping, has answered for.
    std::set<MapTile> m_answered;
    /// Failures of the server as a whole, one after the other.
    int m_failuresInARow = 0;
    qint64 m_nextTry = 0;
    quint64 m_frame = 0;
    qint64 m_keptBytes = 0;
    int m_generation = 0;
    bool m_isDark = false;
    bool m_fades = true;
};

} // namespace corvanta
