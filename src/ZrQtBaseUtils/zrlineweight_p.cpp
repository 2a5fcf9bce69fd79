#include "zrlineweight_p.h"

#include "zrresbuf.h"

#include <QPainter>
#include <algorithm>

namespace ZrLineWeights {

bool isStandard(int weight) { return std::find(kStandard.begin(), kStandard.end(), weight) != kStandard.end(); }

int thickness(int weight, double scale, int rowHeight)
{
    if (weight < 1)
        return 1;
    // Thin weights at a small scale stay hairlines; the bounds are the drawing program's own.
    if (scale <= 0.20000000010000002 && weight <= 90)
        return 1;
    if (weight <= 25)
        return scale >= 0.9999999999 ? 2 : 1;
    const int pen = static_cast<int>(2.0 * rowHeight * (scale + 0.1) * weight / 211.0);
    if (pen <= 1)
        return 2;
    // The line keeps two pixels of air above and below.
    if (pen >= rowHeight - 3)
        return rowHeight - 4;
    return pen;
}

QPixmap linePixmap(int width, int height, int penWidth, const QColor& color, qreal pixelRatio)
{
    width = std::max(width, 1);
    height = std::max(height, 1);
    QPixmap pixmap(qRound(width * pixelRatio), qRound(height * pixelRatio));
    pixmap.setDevicePixelRatio(pixelRatio);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    QPen pen(color, std::max(penWidth, 1));
    pen.setCapStyle(Qt::FlatCap);
    painter.setPen(pen);
    const qreal middle = height / 2.0;
    painter.drawLine(QPointF(0, middle), QPointF(width, middle));
    return pixmap;
}

bool inchesInUse()
{
    ZrResBuf value;
    return zredGetVar(L"LWUNITS", &value) == RTNORM && value.restype == RTSHORT && value.resval.rint == 0;
}

} // namespace ZrLineWeights
