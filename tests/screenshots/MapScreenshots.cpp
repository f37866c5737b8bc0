// SPDX-License-Identifier: MIT
// Renders the map at five zooms, turned and tilted, without a network and with tiles from a server of its own, light
// and dark, at the scale of QT_SCALE_FACTOR.
#include "MapSetup.h"
#include "WebServer.h"
#include "WidgetMapSurface.h"
#include "locations/LocationMapView.h"
#include "window/Appearance.h"

#include <QApplication>
#include <QBuffer>
#include <QDir>
#include <QElapsedTimer>
#include <QPainter>
#include <QPalette>
#include <QPixmap>
#include <QVBoxLayout>

#include <cmath>
#include <cstdio>
#include <vector>

namespace {

using namespace corvanta;
using namespace Qt::Literals::StringLiterals;

constexpr Coordinate barcelona{41.403626, 2.174356};

struct Shot {
    QString name;
    Coordinate center;
    double zoom;
    double bearing = 0;
    double pitch = 0;
    QSize size{398, 250};
};

std::vector<Shot> shots() {
    return {{u"zoom-00"_s, {20, 10}, 0},
            {u"zoom-03"_s, {45, 10}, 3},
            {u"zoom-06"_s, {41.8, 2.2}, 6},
            {u"zoom-09"_s, {41.45, 2.1}, 9},
            {u"zoom-11"_s, {41.3874, 2.1686}, 11.44},
            {u"zoom-15"_s, {41.4, 2.17}, 15},
            {u"turned"_s, {41.45, 2.1}, 8.2, 35, 50},
            {u"world-tilted"_s, {30, 10}, 2.4, -20, 60},
            {u"alaska"_s, {60, 179.99}, 3.3},
            {u"antarctica"_s, {-75, 0}, 2, 30},
            {u"norway"_s, {62, 6}, 5.3},
            {u"lakes"_s, {45, -85}, 5},
            {u"tokyo"_s, {35.6, 139.7}, 8},
            {u"aegean"_s, {38, 25}, 7},
            {u"narrow"_s, {40.7, -74}, 9, 0, 0, {236, 250}},
            {u"wide"_s, {51.5, 0}, 7, 0, 0, {638, 250}}};
}

/// A picture that says which tile it is, on streets of its own.
QByteArray tilePicture(int zoom, int column, int row) {
    QImage image(256, 256, QImage::Format_RGB32);
    image.fill(QColor(u"#f2efe9"_s));
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(QRectF(150, 20, 80, 90), QColor(u"#c8dfb6"_s));
    painter.setPen(QPen(Qt::white, 9));
    painter.drawLine(0, 128, 256, 128);
    painter.drawLine(128, 0, 128, 256);
    painter.setPen(QPen(QColor(u"#f6d99a"_s), 6));
    painter.drawLine(0, 40, 256, 210);
    painter.setPen(QPen(QColor(u"#aad3df"_s), 12));
    painter.drawArc(QRect(-60, 150, 240, 160), 0, 180 * 16);
    painter.setPen(QColor(u"#555"_s));
    painter.drawText(QRect(6, 6, 240, 20), Qt::AlignLeft, u"%1/%2/%3"_s.arg(zoom).arg(column).arg(row));
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return bytes;
}

void serveTiles(testing::WebServer& server, const MapProjection& projection, double ratio) {
    const int zoom = MapTiles::zoomFor(projection.camera(), ratio, 19);
    for (const ShownMapTile& shown : MapTiles::visible(projection, zoom, 200)) {
        const MapTile& tile = shown.tile;
        // One is missing, as happens.
        if (tile.column % 5 == 3 && tile.row % 3 == 1)
            continue;
        testing::WebAnswer answer;
        answer.headers = "Content-Type: image/png\r\n";
        answer.body = tilePicture(tile.zoom, tile.column, tile.row);
        server.answer(u"/%1/%2/%3.png"_s.arg(tile.zoom).arg(tile.column).arg(tile.row), answer);
    }
}

QPalette paletteFor(const QString& look) {
    QPalette palette;
    const auto set = [&palette](const QColor& ground, const QColor& text) {
        palette = QPalette(ground);
        palette.setColor(QPalette::Window, ground);
        palette.setColor(QPalette::WindowText, text);
    };
    if (look == u"dark")
        set(u"#2d2d2d"_s, u"#f5f5f5"_s);
    else if (look == u"contrast")
        set(Qt::black, Qt::white);
    else
        set(u"#efefef"_s, u"#101010"_s);
    return palette;
}

void wait(const std::function<bool()>& isOver) {
    QElapsedTimer timer;
    timer.start();
    while (!isOver() && timer.elapsed() < 3000)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 20);
}

bool render(const Shot& shot, MapData& data, bool hasTiles, const QString& file) {
    testing::WebServer server(testing::WebServer::Scheme::http);
    MapTileOptions tiles;
    tiles.userAgent = u"Corvanta screenshots"_s;
    if (hasTiles)
        tiles.urlTemplate = server.url(u"/{z}/{x}/{y}.png"_s);
    tiles.attributionText = u"© OpenStreetMap contributors"_s;
    QWidget window;
    window.resize(shot.size);
    WidgetMapSurface surface(data.sources(tiles), window);
    surface.widget().setGeometry(QRect(QPoint(), shot.size));
    LocationMapView view;
    view.selectedCoordinate = [] { return std::optional(barcelona); };
    view.onCoordinateSelected = [](Coordinate) {};
    LocationMapView::Coordinator coordinator(surface, view);
    LocationMapView::makeMap(surface, coordinator);
    view.updateMap(surface, coordinator);
    auto& map = static_cast<MapView&>(surface.widget());
    map.tiles().setFades(false);
    window.show();
    map.setCamera({Mercator::project(shot.center), shot.zoom, shot.bearing, shot.pitch}, MapMotion::immediate);
    if (hasTiles) {
        serveTiles(server, map.projection(), map.devicePixelRatioF());
        wait([&] {
            QCoreApplication::processEvents();
            const auto shown =
                MapTiles::visible(map.projection(), MapTiles::zoomFor(map.camera(), map.devicePixelRatioF(), 19), 200);
            return std::ranges::all_of(shown, [&](const ShownMapTile& one) {
                return one.tile.column % 5 == 3 && one.tile.row % 3 == 1
                           ? true
                           : map.tiles().picture(one.tile).image != nullptr;
            });
        });
    }
    QCoreApplication::processEvents();
    surface.setDelegate(nullptr);
    window.grab();
    QCoreApplication::processEvents();
    return window.grab().save(file);
}

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s FOLDER\n", argv[0]);
        return 64;
    }
    const QDir folder(QString::fromLocal8Bit(argv[1]));
    if (!folder.mkpath(u"."_s))
        return 73;
    corvanta::applyAppearance(application);
    MapData data;
    const QString scale = QString::number(application.devicePixelRatio());
    for (const QString& look : {u"light"_s, u"dark"_s, u"contrast"_s}) {
        QApplication::setPalette(paletteFor(look));
        for (const Shot& shot : shots()) {
            for (const bool hasTiles : {false, true}) {
                const QString file = folder.filePath(
                    u"map-%1-%2-%3@%4x.png"_s.arg(shot.name, hasTiles ? u"tiles"_s : u"offline"_s, look, scale));
                if (!render(shot, data, hasTiles, file)) {
                    std::fprintf(stderr, "%s: cannot be written\n", qUtf8Printable(file));
                    return 73;
                }
                std::printf("%s\n", qUtf8Printable(file));
            }
        }
    }
    return 0;
}
