// SPDX-License-Identifier: MIT
#include "MapControls.h"

#include "MapText.h"

#include <QFontMetrics>
#include <QPainter>
#include <QPainterPath>

#include <cmath>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr QSizeF pinSize(30, 40);

/// A balloon that comes to a point at the bottom.
QPainterPath balloon(const QRectF& room) {
    const double radius = room.width() / 2;
    const QPointF middle(room.center().x(), room.top() + radius);
    const QPointF tip(middle.x(), room.bottom());
    QPainterPath path;
    path.arcMoveTo(QRectF(room.topLeft(), QSizeF(room.width(), room.width())), -32);
    path.arcTo(QRectF(room.topLeft(), QSizeF(room.width(), room.width())), -32, 244);
    const QPointF left = path.currentPosition();
    path.quadTo(QPointF(left.x() + radius * 0.42, left.y() + radius * 0.6), tip);
    const QPointF right(2 * middle.x() - left.x(), left.y());
    path.quadTo(QPointF(right.x() - radius * 0.42, right.y() + radius * 0.6), right);
    path.closeSubpath();
    return path;
}

/// The arrow of the symbol "location.fill", around the origin.
QPainterPath arrow(double size) {
    QPainterPath path;
    path.moveTo(size * 0.5, -size * 0.5);
    path.lineTo(size * 0.06, size * 0.5);
    path.lineTo(-size * 0.02, size * 0.02);
    path.lineTo(-size * 0.5, -size * 0.06);
    path.closeSubpath();
    return path;
}

} // namespace

MapCompass::MapCompass(QWidget* parent)
    : QAbstractButton(parent) {
    setAccessibleName(tr("Compass"));
    setToolTip(tr("Turn the map to north"));
    setFocusPolicy(Qt::TabFocus);
    setAttribute(Qt::WA_Hover);
    resize(sizeHint());
    hide();
}

void MapCompass::show(double bearing, double pitch, const MapPalette& palette) {
    m_bearing = bearing;
    m_pitch = pitch;
    m_palette = palette;
    const QString heading = tr("Heading %1°").arg(std::lround(bearing < 0 ? bearing + 360 : bearing) % 360);
    if (accessibleDescription() != heading)
        setAccessibleDescription(heading);
    const bool isTurned = std::abs(bearing) > 0.05 || pitch > 0.05;
    // Otherwise the keyboard would be sent on to whatever comes after the map. Only the keyboard leads here.
    if (!isTurned && hasFocus())
        parentWidget()->setFocus(Qt::TabFocusReason);
    setVisible(isTurned);
    update();
}

void MapCompass::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF disc = rect().toRectF().adjusted(2, 2, -2, -2);
    QColor ground = m_palette.control;
    ground.setAlpha(isDown() ? 255 : underMouse() ? 245 : 225);
    painter.setBrush(ground);
    painter.setPen(hasFocus() ? QPen(m_palette.accent, 2) : QPen(m_palette.controlBorder, 1));
    painter.drawEllipse(disc);
    painter.translate(disc.center());
    painter.scale(1, std::cos(m_pitch * 3.14159265358979 / 180 * 0.8));
    painter.rotate(-m_bearing);
    painter.setPen(Qt::NoPen);
    const double length = 11;
    const double width = 4.2;
    painter.setBrush(m_palette.compassNorth);
    painter.drawPolygon(QPolygonF{QPointF(0, -length), QPointF(width, 0), QPointF(-width, 0)});
    painter.setBrush(m_palette.secondaryText);
    painter.drawPolygon(QPolygonF{QPointF(0, length), QPointF(width, 0), QPointF(-width, 0)});
}

MapAttribution::MapAttribution(QWidget* parent)
    : QAbstractButton(parent) {
    setFocusPolicy(Qt::NoFocus);
    setCursor(Qt::PointingHandCursor);
    hide();
}

QFont MapAttribution::smallFont() const {
    QFont font = this->font();
    font.setPixelSize(9);
    return font;
}

QSize MapAttribution::sizeHint() const {
    const QFontMetrics metrics(smallFont());
    return {metrics.horizontalAdvance(text()) + 8, metrics.height() + 2};
}

void MapAttribution::show(const QString& text, const MapPalette& palette) {
    m_palette = palette;
    setText(text);
    setAccessibleName(text);
    setVisible(!text.isEmpty());
    resize(sizeHint());
    update();
}

void MapAttribution::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QColor ground = m_palette.control;
    ground.setAlpha(200);
    painter.setPen(Qt::NoPen);
    painter.setBrush(ground);
    painter.drawRoundedRect(rect(), 3, 3);
    painter.setFont(smallFont());
    painter.setPen(m_palette.secondaryText);
    painter.drawText(rect(), Qt::AlignCenter, text());
}

MapPin::MapPin(const MapAnnotation& annotation, const MapMarkerStyle& style, QWidget* parent)
    : QWidget(parent)
    , m_style(style) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAccessibleName(annotation.title);
    resize(pinSize.toSize() + QSize(4, 4));
}

QRectF MapPin::roomAround(QPointF tip) {
    return {tip - QPointF(pinSize.width() / 2, pinSize.height()), pinSize};
}

void MapPin::standAt(QPointF point) {
    const QPointF corner = point - QPointF(pinSize.width() / 2 + 2, pinSize.height() + 2);
    move(QPointF(std::round(corner.x()), std::round(corner.y())).toPoint());
    setVisible(parentWidget()->rect().intersects(geometry()));
}

void MapPin::setPalette(const MapPalette& palette) {
    m_palette = palette;
    update();
}

void MapPin::describe(const Coordinate& coordinate) {
    const QString description = u"%1, %2"_s.arg(m_style.glyphAccessibilityDescription, coordinateText(coordinate));
    if (accessibleDescription() != description)
        setAccessibleDescription(description);
}

void MapPin::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(2, 2);
    const QRectF room(QPointF(1, 1), pinSize - QSizeF(2, 1));
    QPainterPath shape = balloon(room);
    painter.setPen(QPen(QColor(255, 255, 255, 230), 1.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(m_palette.systemBlue);
    painter.drawPath(shape);
    painter.translate(room.center().x(), room.top() + room.width() / 2);
    painter.setPen(Qt::NoPen);
    painter.setBrush(m_palette.onSystemBlue);
    painter.translate(-0.8, 0.8);
    painter.drawPath(arrow(13));
}

} // namespace corvanta
