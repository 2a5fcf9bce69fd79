#include "zrhosticons.h"

#include <QGuiApplication>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>
#include <QPixmap>
#include <QtMath>

#include <functional>

namespace ZrHostIcons {

namespace {

constexpr int kSize = 16;

// Paints on a 16 x 16 logical canvas at the screen's pixel ratio.
QIcon drawn(const std::function<void(QPainter&)>& paint)
{
    const qreal ratio = qMax<qreal>(1.0, qApp->devicePixelRatio());
    QPixmap pixmap(QSize(kSize, kSize) * ratio);
    pixmap.setDevicePixelRatio(ratio);
    pixmap.fill(Qt::transparent);
    QPainter p(&pixmap);
    p.setRenderHint(QPainter::Antialiasing);
    paint(p);
    p.end();
    return QIcon(pixmap);
}

QPen roundPen(const QColor& color, qreal width)
{
    return QPen(color, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
}

QIcon curvedArrow(const QPalette& palette, bool mirrored)
{
    const QColor color = palette.color(QPalette::ButtonText);
    return drawn([&](QPainter& p) {
        if (mirrored)
            p.setTransform(QTransform(-1, 0, 0, 1, kSize, 0));
        QPainterPath bend;
        bend.moveTo(13.5, 13);
        bend.cubicTo(13.5, 7.5, 10, 5.5, 5, 5.5);
        p.setPen(roundPen(color, 1.8));
        p.drawPath(bend);
        p.setPen(Qt::NoPen);
        p.setBrush(color);
        p.drawPolygon(QPolygonF({QPointF(1.5, 5.5), QPointF(6.5, 1.5), QPointF(6.5, 9.5)}));
    });
}

} // namespace

QIcon undo(const QPalette& palette)
{
    return curvedArrow(palette, false);
}

QIcon redo(const QPalette& palette)
{
    return curvedArrow(palette, true);
}

QIcon layerOn(bool on, const QPalette& palette)
{
    const QColor line = on ? QColor(0xb0, 0x82, 0x10) : palette.color(QPalette::Disabled, QPalette::Text);
    return drawn([&](QPainter& p) {
        p.setPen(roundPen(line, 1.2));
        p.setBrush(on ? QColor(0xff, 0xd0, 0x4a) : Qt::transparent);
        p.drawEllipse(QPointF(8, 6.5), 4.5, 4.5);
        p.setBrush(Qt::NoBrush);
        p.drawLine(QPointF(6, 12.5), QPointF(10, 12.5));
        p.drawLine(QPointF(6.5, 14.5), QPointF(9.5, 14.5));
    });
}

QIcon layerFrozen(bool frozen)
{
    return drawn([&](QPainter& p) {
        p.translate(8, 8);
        if (frozen) {
            p.setPen(roundPen(QColor(0x3a, 0x8f, 0xd6), 1.3));
            for (int arm = 0; arm < 6; ++arm) {
                p.drawLine(QPointF(0, 0), QPointF(0, -6.5));
                p.drawLine(QPointF(0, -4), QPointF(-2, -5.8));
                p.drawLine(QPointF(0, -4), QPointF(2, -5.8));
                p.rotate(60);
            }
            return;
        }
        const QColor sun(0xe8, 0x8a, 0x1a);
        p.setPen(roundPen(sun, 1.3));
        for (int ray = 0; ray < 8; ++ray) {
            p.drawLine(QPointF(0, -5), QPointF(0, -7));
            p.rotate(45);
        }
        p.setBrush(QColor(0xff, 0xb8, 0x3a));
        p.drawEllipse(QPointF(0, 0), 3.2, 3.2);
    });
}

QIcon layerLocked(bool locked, const QPalette& palette)
{
    const QColor color = locked ? palette.color(QPalette::Text) : palette.color(QPalette::Disabled, QPalette::Text);
    return drawn([&](QPainter& p) {
        p.setPen(roundPen(color, 1.4));
        QPainterPath shackle;
        // An open lock lifts its shackle and swings it aside.
        const qreal lift = locked ? 0 : 2;
        shackle.moveTo(5, 7.5 - lift);
        shackle.lineTo(5, 5 - lift);
        shackle.arcTo(QRectF(5, 1.5 - lift, 6, 6), 180, -180);
        shackle.lineTo(11, locked ? 7.5 : 4);
        p.drawPath(shackle);
        p.setBrush(color);
        p.setPen(Qt::NoPen);
        p.drawRoundedRect(QRectF(3, 7.5, 10, 7), 1.5, 1.5);
    });
}

QIcon swatch(const QColor& color, const QPalette& palette)
{
    QColor frame = palette.color(QPalette::Text);
    frame.setAlphaF(0.55);
    return drawn([&](QPainter& p) {
        p.setRenderHint(QPainter::Antialiasing, false);
        p.setPen(frame);
        p.setBrush(color);
        p.drawRect(QRect(2, 2, 11, 11));
    });
}

} // namespace ZrHostIcons
