// SPDX-License-Identifier: MIT
#include "MapTileStore.h"

#include <QBuffer>
#include <QImageReader>
#include <QNetworkDiskCache>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QUrl>

#include <algorithm>
#include <cmath>
#include <utility>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr qint64 fadeTime = 220;
/// A server that failed so often in a row is left alone altogether for a while.
constexpr int patience = 3;

QUrl urlFor(const QString& urlTemplate, const MapTile& tile) {
    QString text = urlTemplate;
    text.replace(u"{z}"_s, QString::number(tile.zoom));
    text.replace(u"{x}"_s, QString::number(tile.column));
    text.replace(u"{y}"_s, QString::number(tile.row));
    return QUrl(text, QUrl::StrictMode);
}

bool isOpenStreetMap(const QString& host) {
    return host == u"openstreetmap.org"_s || host.endsWith(u".openstreetmap.org"_s);
}

/// Turns the lightness round and keeps the hue, somewhat softer than paper is white.
QRgb darkened(QRgb pixel) {
    const int red = 255 - qRed(pixel);
    const int green = 255 - qGreen(pixel);
    const int blue = 255 - qBlue(pixel);
    // Half a turn of the hue by the luminance-keeping matrix, in 256ths.
    const int turnedRed = (-147 * red + 366 * green + 37 * blue) / 256;
    const int turnedGreen = (109 * red + 110 * green + 37 * blue) / 256;
    const int turnedBlue = (109 * red + 366 * green - 219 * blue) / 256;
    const auto soft = [](int value) { return 34 + std::clamp(value, 0, 255) * 188 / 255; };
    return qRgba(soft(turnedRed), soft(turnedGreen), soft(turnedBlue), qAlpha(pixel));
}

/// The format that the first bytes tell of, of those that tile servers send; none of all the others that could be
/// read, so that no server chooses which decoder its bytes go to.
QByteArray formatOf(const QByteArray& bytes) {
    if (bytes.startsWith("\x89PNG\r\n\x1a\n"))
        return "png";
    if (bytes.startsWith("\xff\xd8\xff"))
        return "jpeg";
    if (bytes.startsWith("RIFF") && bytes.mid(8, 4) == "WEBP")
        return "webp";
    return {};
}

bool contains(const std::vector<MapTile>& tiles, const MapTile& tile) {
    return std::ranges::find(tiles, tile) != tiles.end();
}

} // namespace

bool MapTileOptions::isUsable() const {
    const QUrl url = urlFor(urlTemplate, {0, 0, 0});
    const bool isComplete =
        urlTemplate.contains(u"{z}"_s) && urlTemplate.contains(u"{x}"_s) && urlTemplate.contains(u"{y}"_s);
    return isComplete && url.isValid() && !url.host().isEmpty() &&
           (url.scheme() == u"https"_s || url.scheme() == u"http"_s);
}

QString MapTileOptions::attribution() const {
    if (!attributionText.isEmpty())
        return attributionText;
    const QString host = urlFor(urlTemplate, {0, 0, 0}).host();
    return isOpenStreetMap(host) ? u"© OpenStreetMap contributors"_s : u"© %1"_s.arg(host);
}

QUrl MapTileOptions::attributionUrl() const {
    const bool isDefault = attributionAddress.isEmpty() && attributionText.isEmpty() &&
                           isOpenStreetMap(urlFor(urlTemplate, {0, 0, 0}).host());
    const QUrl url(isDefault ? u"https://www.openstreetmap.org/copyright"_s : attributionAddress, QUrl::StrictMode);
    return url.isValid() && (url.scheme() == u"https"_s || url.scheme() == u"http"_s) ? url : QUrl();
}

QImage MapTileDecoder::decode(const QByteArray& bytes, int mostPixels, bool isDark) {
    const QByteArray format = formatOf(bytes);
    if (format.isEmpty())
        return {};
    QBuffer buffer;
    buffer.setData(bytes);
    QImageReader reader(&buffer, format);
    reader.setAutoDetectImageFormat(false);
    const QSize size = reader.size();
    if (size.isEmpty() || size.width() > mostPixels || size.height() > mostPixels)
        return {};
    QImage image = reader.read().convertToFormat(isDark ? QImage::Format_ARGB32 : QImage::Format_ARGB32_Premultiplied);
    if (image.isNull() || !isDark)
        return image;
    for (int row = 0; row < image.height(); ++row) {
        auto* const line = reinterpret_cast<QRgb*>(image.scanLine(row));
        std::transform(line, line + image.width(), line, darkened);
    }
    return image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

void MapTileDecoder::work(const MapTile& tile, const QByteArray& bytes, bool isDark, int generation) {
    Q_EMIT decoded(tile, decode(bytes, m_mostPixels, isDark), generation);
}

MapTileStore::MapTileStore(const MapTileOptions& options, QObject* parent)
    : QObject(parent)
    , m_options(options) {
    qRegisterMetaType<MapTile>();
    m_clock.start();
    m_retry.setSingleShot(true);
    connect(&m_retry, &QTimer::timeout, this, &MapTileStore::requestNext);
    if (!isActive())
        return;
    if (!m_options.cacheFolder.isEmpty()) {
        auto* const cache = new QNetworkDiskCache(this);
        cache->setCacheDirectory(m_options.cacheFolder);
        cache->setMaximumCacheSize(m_options.cacheBytes);
        m_network.setCache(cache);
    }
    auto* const decoder = new MapTileDecoder(m_options.mostPixels);
    decoder->moveToThread(&m_thread);
    connect(&m_thread, &QThread::finished, decoder, &QObject::deleteLater);
    connect(this, &MapTileStore::decodingWanted, decoder, &MapTileDecoder::work);
    connect(decoder, &MapTileDecoder::decoded, this, &MapTileStore::keep);
    m_thread.setObjectName(u"map tiles"_s);
    m_thread.start(QThread::LowPriority);
}

MapTileStore::~MapTileStore() {
    const auto drop = [this](QNetworkReply* reply) {
        reply->disconnect(this);
        reply->abort();
    };
    for (const auto& [tile, request] : std::exchange(m_requests, {}))
        drop(request.reply);
    for (const auto& [tile, reply] : std::exchange(m_lookUps, {}))
        drop(reply);
    m_thread.quit();
    m_thread.wait();
}

void MapTileStore::show(const std::vector<MapTile>& tiles) {
    if (!isActive())
        return;
    ++m_frame;
    for (const MapTile& tile : tiles) {
        if (const auto kept = m_kept.find(tile); kept != m_kept.end())
            kept->second.lastShown = m_frame;
    }
    if (tiles == m_wanted)
        return;
    m_wanted = tiles;
    const auto isPast = [this](const MapTile& tile) { return !contains(m_wanted, tile) && !m_kept.contains(tile); };
    std::erase_if(m_lookedUp, isPast);
    std::erase_if(m_answered, isPast);
    std::vector<QNetworkReply*> unwanted;
    for (const auto& [tile, request] : m_requests) {
        if (!contains(m_wanted, tile))
            unwanted.push_back(request.reply);
    }
    for (QNetworkReply* const reply : unwanted)
        reply->abort();
    requestNext();
}

void MapTileStore::pause() {
    m_wanted.clear();
    m_retry.stop();
}

void MapTileStore::setDark(bool isDark) {
    if (std::exchange(m_isDark, isDark) == isDark)
        return;
    m_kept.clear();
    m_keptBytes = 0;
    m_decoding.clear();
    m_lookedUp.clear();
    // The answers are still on disk otherwise.
    if (m_network.cache() == nullptr)
        m_answered.clear();
    ++m_generation;
    requestNext();
}

MapTileStore::Picture MapTileStore::picture(const MapTile& tile) const {
    const auto kept = m_kept.find(tile);
    if (kept == m_kept.end())
        return {};
    const double age = static_cast<double>(m_clock.elapsed() - kept->second.arrival) / fadeTime;
    return {&kept->second.image, m_fades ? std::clamp(age, 0.0, 1.0) : 1.0};
}

bool MapTileStore::isFading() const {
    return m_fades && std::ranges::any_of(m_wanted, [this](const MapTile& tile) {
               const Picture shown = picture(tile);
               return shown.image != nullptr && shown.opacity < 1;
           });
}

void MapTileStore::requestNext() {
    lookUp();
    if (m_clock.elapsed() >= m_nextTry) {
        for (const MapTile& tile : m_wanted) {
            if (static_cast<int>(m_requests.size()) >= m_options.mostRequests)
                return;
            const auto failure = m_failures.find(tile);
            const bool mustWait = failure != m_failures.end() && failure->second.nextTry > m_clock.elapsed();
            const bool isUnderWay = m_requests.contains(tile) || m_lookUps.contains(tile) || m_decoding.contains(tile);
            if (!mustWait && !isUnderWay && !m_answered.contains(tile))
                request(tile);
        }
    }
    wakeForRetry();
}

void MapTileStore::lookUp() {
    if (m_network.cache() == nullptr)
        return;
    for (const MapTile& tile : m_wanted) {
        const bool isThere = m_kept.contains(tile) || m_decoding.contains(tile) || m_requests.contains(tile);
        if (!isThere && !m_lookUps.contains(tile) && m_lookedUp.insert(tile).second)
            lookUp(tile);
    }
}

void MapTileStore::lookUp(const MapTile& tile) {
    QNetworkRequest request = requestFor(tile);
    request.setAttribute(QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::AlwaysCache);
    QNetworkReply* const reply = m_network.get(request);
    m_lookUps[tile] = reply;
    connect(reply, &QNetworkReply::finished, this, [this, reply, tile] {
        reply->deleteLater();
        m_lookUps.erase(tile);
        if (reply->error() == QNetworkReply::NoError)
            decode(tile, *reply);
        else
            m_answered.erase(tile);
        requestNext();
    });
}

QNetworkRequest MapTileStore::requestFor(const MapTile& tile) const {
    QNetworkRequest request(urlFor(m_options.urlTemplate, tile));
    request.setHeader(QNetworkRequest::UserAgentHeader, m_options.userAgent);
    // Nobody needs to be recognised for a map.
    request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::AuthenticationReuseAttribute, QNetworkRequest::Manual);
    return request;
}

void MapTileStore::request(const MapTile& tile) {
    QNetworkRequest request = requestFor(tile);
    request.setAttribute(QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::PreferNetwork);
    request.setAttribute(QNetworkRequest::Http2AllowedAttribute, true);
    request.setMaximumRedirectsAllowed(3);
    request.setTransferTimeout(static_cast<int>(m_options.timeout.count()));
    QNetworkReply* const reply = m_network.get(request);
    m_requests[tile] = {reply};
    // A server that sends a byte now and then keeps the other limit from ever being reached.
    QTimer::singleShot(m_options.deadline, reply, &QNetworkReply::abort);
    // Not by its progress, which is told of ten times a second only.
    reply->setReadBufferSize(m_options.mostBytes + 1);
    const auto refuseTooMuch = [this, reply] {
        const qint64 promised = reply->header(QNetworkRequest::ContentLengthHeader).toLongLong();
        if (std::max(promised, reply->bytesAvailable()) > m_options.mostBytes)
            reply->abort();
    };
    connect(reply, &QNetworkReply::metaDataChanged, this, refuseTooMuch);
    connect(reply, &QNetworkReply::readyRead, this, refuseTooMuch);
    connect(reply, &QNetworkReply::requestSent, this, [this, tile] {
        if (const auto request = m_requests.find(tile); request != m_requests.end())
            request->second.hasLeft = true;
    });
    connect(reply, &QNetworkReply::finished, this, [this, tile] { receive(tile); });
}

void MapTileStore::receive(const MapTile& tile) {
    const Request request = m_requests[tile];
    QNetworkReply& reply = *request.reply;
    reply.deleteLater();
    m_requests.erase(tile);
    const bool isFromDisk = reply.attribute(QNetworkRequest::SourceIsFromCacheAttribute).toBool();
    const bool isMissing = reply.error() == QNetworkReply::ContentNotFoundError;
    const bool hasAnswered = reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt() != 0 &&
                             (reply.error() == QNetworkReply::NoError || isMissing);
    // An answer that was kept says nothing about the server, unless that was asked whether it still holds.
    if (hasAnswered && (request.hasLeft || !isFromDisk))
        m_failuresInARow = 0;
    if (reply.error() == QNetworkReply::NoError) {
        m_answered.insert(tile);
        if (!isFromDisk || !m_kept.contains(tile))
            decode(tile, reply);
    } else if (contains(m_wanted, tile)) {
        if (!isMissing && ++m_failuresInARow >= patience)
            m_nextTry = m_clock.elapsed() + pauseAfter(m_failuresInARow - patience + 1).count();
        failed(tile);
    }
    requestNext();
}

void MapTileStore::decode(const MapTile& tile, QNetworkReply& reply) {
    m_decoding.insert(tile);
    Q_EMIT decodingWanted(tile, reply.read(m_options.mostBytes), m_isDark, m_generation);
}

void MapTileStore::keep(const MapTile& tile, const QImage& image, int generation) {
    if (generation != m_generation)
        return;
    m_decoding.erase(tile);
    if (!image.isNull()) {
        if (m_answered.contains(tile))
            m_failures.erase(tile);
        const auto old = m_kept.find(tile);
        // What replaces an older picture of the same place has no need to fade in again.
        m_keptBytes += image.sizeInBytes() - (old == m_kept.end() ? 0 : old->second.image.sizeInBytes());
        m_kept[tile] = {image, old == m_kept.end() ? m_clock.elapsed() : old->second.arrival, m_frame};
        forgetUnseen();
        Q_EMIT tileArrived();
    } else if (m_answered.erase(tile) != 0) {
        failed(tile);
    }
    requestNext();
}

std::chrono::milliseconds MapTileStore::pauseAfter(int failures) const {
    const auto pause = m_options.firstPause * std::exp2(std::min(failures - 1, 20));
    return std::min(std::chrono::duration_cast<std::chrono::milliseconds>(pause), m_options.longestPause);
}

void MapTileStore::failed(const MapTile& tile) {
    Failure& failure = m_failures[tile];
    failure.nextTry = m_clock.elapsed() + pauseAfter(++failure.count).count();
}

void MapTileStore::wakeForRetry() {
    qint64 next = -1;
    for (const MapTile& tile : m_wanted) {
        const auto failure = m_failures.find(tile);
        if (failure != m_failures.end() && !m_answered.contains(tile) && !m_requests.contains(tile))
            next = next < 0 ? failure->second.nextTry : std::min(next, failure->second.nextTry);
    }
    if (m_nextTry > m_clock.elapsed())
        next = std::max(next, m_nextTry);
    if (next >= 0)
        m_retry.start(static_cast<int>(std::max<qint64>(50, next - m_clock.elapsed())));
}

void MapTileStore::forgetUnseen() {
    while (m_keptBytes > m_options.mostKeptBytes) {
        const auto oldest =
            std::ranges::min_element(m_kept, {}, [](const auto& entry) { return entry.second.lastShown; });
        // What is in sight would only be asked for again.
        if (oldest->second.lastShown == m_frame)
            return;
        m_keptBytes -= oldest->second.image.sizeInBytes();
        m_lookedUp.erase(oldest->first);
        m_answered.erase(oldest->first);
        m_kept.erase(oldest);
    }
}

} // namespace corvanta
