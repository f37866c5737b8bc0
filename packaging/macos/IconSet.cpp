// SPDX-License-Identifier: MIT
//
// Renders the program's icon in the sizes of an icon set.
//
// usage: IconSet ICON.svg FOLDER.iconset
#include <QDir>
#include <QImage>
#include <QPainter>
#include <QString>
#include <QSvgRenderer>

#include <array>
#include <cstdio>

namespace {

constexpr std::array sizes{16, 32, 128, 256, 512};

bool render(QSvgRenderer& icon, int size, int scale, const QDir& folder) {
    QImage picture(size * scale, size * scale, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    icon.render(&painter);
    painter.end();
    const QString suffix = scale == 1 ? QString() : QStringLiteral("@%1x").arg(scale);
    return picture.save(folder.filePath(QStringLiteral("icon_%1x%1%2.png").arg(size).arg(suffix)), "PNG");
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fputs("usage: IconSet ICON.svg FOLDER.iconset\n", stderr);
        return 64;
    }
    QSvgRenderer icon(QString::fromLocal8Bit(argv[1]));
    const QDir folder(QString::fromLocal8Bit(argv[2]));
    if (!icon.isValid() || !folder.mkpath(QStringLiteral("."))) {
        std::fputs("IconSet: the icon cannot be read, or the folder cannot be made\n", stderr);
        return 1;
    }
    for (const int size : sizes) {
        if (!render(icon, size, 1, folder) || !render(icon, size, 2, folder)) {
            std::fputs("IconSet: a picture could not be written\n", stderr);
            return 1;
        }
    }
    return 0;
}
