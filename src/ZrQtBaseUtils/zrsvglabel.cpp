#include "zrsvglabel.h"

#include "ZrQtUtilsFunc.h"

#include <QIcon>
#include <QPainter>

struct ZrSvgLabel::Private
{
    QIcon icon;
    int x = 0;
    int y = 0;
    bool hasPosition = false;
};

ZrSvgLabel::ZrSvgLabel(QWidget* parent, Qt::WindowFlags flags) : QLabel(parent, flags), d(new Private) {}
ZrSvgLabel::~ZrSvgLabel() = default;

void ZrSvgLabel::setPixmap(const QString& file)
{
    d->icon = QIcon(file);
    update();
}

void ZrSvgLabel::setPixmap(const QIcon& icon, int x, int y)
{
    d->icon = icon;
    d->x = x;
    d->y = y;
    d->hasPosition = true;
    update();
}

void ZrSvgLabel::setIcon(const QIcon& icon)
{
    d->icon = icon;
    update();
}

void ZrSvgLabel::paintEvent(QPaintEvent* event)
{
    if (!d->icon.isNull()) {
        QPainter painter(this);
        const QPixmap pixmap = d->icon.pixmap(size());
        if (d->hasPosition)
            drawSmoothPixmap(d->x, d->y, pixmap, painter);
        else
            drawSmoothPixmap(0, 0, pixmap, painter);
    }
    QLabel::paintEvent(event);
}
