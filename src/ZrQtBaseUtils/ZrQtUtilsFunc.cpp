#include "ZrQtUtilsFunc.h"

#include "zrconfig.h"
#include "zrsystem.h"
#include "zrui.h"

#include <QFile>
#include <QPainter>
#include <QPixmap>

QString zrUiText(const char* key, const QString& def)
{
    ZrRxObjectPtr object = CXuSystem::instance()->serviceManager()->getService(ZrString(L"ZrUiLanguageSvr"));
    const ZrUiLanguageSvr* language = ZrUiLanguageSvr::cast(object.get());
    if (!language)
        return def;
    return language->getText(ZrString::fromUtf8(key), ZrString(def)).toQString();
}

QString zrutGetImageFullPath(const QString& name, const bool& raw)
{
    if (name.isEmpty())
        return QString();
    ZrJsonPtr rootValue = zr_runtime_config("ResRootPath");
    if (rootValue.isNullOrNoDef())
        return QString();
    const QString theme = zredGetCurrentTheme() == 1 ? QStringLiteral("light/") : QStringLiteral("dark/");
    const QString root = rootValue->safeStrValue().toQString();

    QString path = root + QStringLiteral("/ImageRes/") + (raw ? QString() : theme) + name;
    if (!QFile::exists(path)) {
        if (!raw)
            path = root + QStringLiteral("/RibbonIcon/") + theme + name;
        if (raw || !QFile::exists(path))
            return QString();
    }
    return path.replace(QLatin1Char('\\'), QLatin1Char('/'));
}

void drawSmoothPixmap(const QRectF& target, const QPixmap& pixmap, const QRectF& source, QPainter& painter)
{
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawPixmap(target, pixmap, source);
}

void drawSmoothPixmap(const QPointF& point, const QPixmap& pixmap, QPainter& painter)
{
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawPixmap(point, pixmap);
}

void drawSmoothPixmap(const QRect& target, const QPixmap& pixmap, const QRect& source, QPainter& painter)
{
    drawSmoothPixmap(QRectF(target), pixmap, QRectF(source), painter);
}

void drawSmoothPixmap(const QPoint& point, const QPixmap& pixmap, QPainter& painter)
{
    drawSmoothPixmap(QPointF(point), pixmap, painter);
}

void drawSmoothPixmap(const QRect& target, const QPixmap& pixmap, QPainter& painter)
{
    drawSmoothPixmap(QRectF(target), pixmap, QRectF(pixmap.rect()), painter);
}

void drawSmoothPixmap(int x, int y, const QPixmap& pixmap, QPainter& painter)
{
    drawSmoothPixmap(QPointF(x, y), pixmap, painter);
}

void drawSmoothPixmap(int x, int y, int w, int h, const QPixmap& pixmap, QPainter& painter)
{
    drawSmoothPixmap(QRectF(x, y, w, h), pixmap, QRectF(pixmap.rect()), painter);
}

void drawSmoothPixmap(int x, int y, int w, int h, const QPixmap& pixmap, int sx, int sy, int sw, int sh,
                      QPainter& painter)
{
    drawSmoothPixmap(QRectF(x, y, w, h), pixmap, QRectF(sx, sy, sw, sh), painter);
}

void drawSmoothPixmap(int x, int y, const QPixmap& pixmap, int sx, int sy, int sw, int sh, QPainter& painter)
{
    drawSmoothPixmap(QRectF(x, y, sw, sh), pixmap, QRectF(sx, sy, sw, sh), painter);
}

void drawSmoothPixmap(const QPointF& point, const QPixmap& pixmap, const QRectF& source, QPainter& painter)
{
    drawSmoothPixmap(QRectF(point, source.size()), pixmap, source, painter);
}

void drawSmoothPixmap(const QPoint& point, const QPixmap& pixmap, const QRect& source, QPainter& painter)
{
    drawSmoothPixmap(QRectF(QPointF(point), QSizeF(source.size())), pixmap, QRectF(source), painter);
}
