#include "zrdrawingview.h"

#include "zrappenv.h"
#include "zrui.h"

#include <QPainter>

#include <algorithm>

namespace {

struct ViewColors
{
    QColor paper, minorGrid, majorGrid, walls, detail, dimension, axisX, axisY;
};

ViewColors viewColors()
{
    if (zredGetCurrentTheme() == ZrApp::kLightTheme)
        return {QColor(0xfb, 0xfb, 0xf9), QColor(0xee, 0xef, 0xf1), QColor(0xdc, 0xdf, 0xe4), QColor(0x2b, 0x30, 0x38),
                QColor(0x2f, 0x6f, 0xb7), QColor(0xb0, 0x5a, 0x1e), QColor(0xd0, 0x3b, 0x3b), QColor(0x2e, 0x9a, 0x4a)};
    return {QColor(0x21, 0x24, 0x29), QColor(0x2a, 0x2e, 0x34), QColor(0x34, 0x39, 0x41), QColor(0xe6, 0xe8, 0xeb),
            QColor(0x5c, 0xc8, 0xe6), QColor(0xe8, 0xb0, 0x4a), QColor(0xe8, 0x5a, 0x5a), QColor(0x5a, 0xd0, 0x78)};
}

void drawGrid(QPainter& p, const QRect& area, const ViewColors& c)
{
    constexpr int kStep = 20;
    for (int x = 0; x < area.width(); x += kStep) {
        p.setPen(x % (kStep * 5) ? c.minorGrid : c.majorGrid);
        p.drawLine(x, 0, x, area.height());
    }
    for (int y = area.height(); y > 0; y -= kStep) {
        p.setPen((area.height() - y) % (kStep * 5) ? c.minorGrid : c.majorGrid);
        p.drawLine(0, y, area.width(), y);
    }
}

// A small floor plan in a 600 x 400 frame: two rooms, a door, a window, furniture and one dimension.
void drawSamplePlan(QPainter& p, const ViewColors& c)
{
    p.setPen(QPen(c.walls, 3));
    p.drawPolyline(QPolygon({QPoint(120, 40), QPoint(40, 40), QPoint(40, 340), QPoint(560, 340), QPoint(560, 40),
                             QPoint(240, 40)}));
    p.drawLine(330, 40, 330, 190);
    p.drawLine(330, 250, 330, 340);

    p.setPen(QPen(c.detail, 1.5));
    for (int y : {36, 40, 44})
        p.drawLine(120, y, 240, y);
    p.drawLine(330, 190, 390, 190);
    p.drawArc(QRect(270, 130, 120, 120), 0, -90 * 16);
    p.drawEllipse(QPointF(170, 220), 40, 40);
    p.drawRect(420, 230, 100, 70);
    p.drawRect(470, 70, 70, 110);

    p.setPen(c.walls);
    p.drawText(QRect(40, 270, 290, 40), Qt::AlignCenter, QStringLiteral("客厅"));
    p.drawText(QRect(330, 100, 130, 40), Qt::AlignCenter, QStringLiteral("卧室"));

    p.setPen(QPen(c.dimension, 1));
    p.drawLine(40, 372, 560, 372);
    p.drawLine(40, 348, 40, 380);
    p.drawLine(560, 348, 560, 380);
    p.drawText(QRect(40, 352, 520, 18), Qt::AlignCenter, QStringLiteral("6000"));
}

void drawAxes(QPainter& p, const QRect& area, const ViewColors& c)
{
    const QPoint origin(24, area.height() - 24);
    p.setPen(QPen(c.axisX, 2));
    p.drawLine(origin, origin + QPoint(44, 0));
    p.drawText(origin + QPoint(48, 4), QStringLiteral("X"));
    p.setPen(QPen(c.axisY, 2));
    p.drawLine(origin, origin - QPoint(0, 44));
    p.drawText(origin - QPoint(4, 50), QStringLiteral("Y"));
}

} // namespace

ZrDrawingView::ZrDrawingView(QWidget* parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("drawingView"));
    setFocusPolicy(Qt::StrongFocus);
}

QSize ZrDrawingView::sizeHint() const
{
    return {800, 520};
}

void ZrDrawingView::paintEvent(QPaintEvent*)
{
    const ViewColors colors = viewColors();
    QPainter p(this);
    p.fillRect(rect(), colors.paper);
    drawGrid(p, rect(), colors);

    p.setRenderHint(QPainter::Antialiasing);
    p.save();
    const qreal scale = std::min(width() / 700.0, height() / 480.0);
    p.translate((width() - 600 * scale) / 2, (height() - 400 * scale) / 2);
    p.scale(scale, scale);
    drawSamplePlan(p, colors);
    p.restore();
    drawAxes(p, rect(), colors);
}
