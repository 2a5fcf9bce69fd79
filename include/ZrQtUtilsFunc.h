#pragma once
// Texts and images shared by the module's widgets.

#include "zrqtbaseutils_export.h"

#include <QString>

class QPainter;
class QPixmap;
class QPoint;
class QPointF;
class QRect;
class QRectF;

// The text of `key` in the user's language, `def` when the language service has none.
ZRQTBASEUTILS_EXPORT QString zrUiText(const char* key, const QString& def);

// The full path of an image of the current theme, under "<ResRootPath>/ImageRes/<theme>/";
// `raw` looks in "ImageRes/" without the theme folder. Empty when the image is not there.
ZRQTBASEUTILS_EXPORT QString zrutGetImageFullPath(const QString& name, const bool& raw = false);

// Pixmaps drawn with smooth scaling.
ZRQTBASEUTILS_EXPORT void drawSmoothPixmap(const QRectF& target, const QPixmap& pixmap, const QRectF& source, QPainter& painter);
ZRQTBASEUTILS_EXPORT void drawSmoothPixmap(const QRect& target, const QPixmap& pixmap, const QRect& source, QPainter& painter);
ZRQTBASEUTILS_EXPORT void drawSmoothPixmap(const QPointF& point, const QPixmap& pixmap, QPainter& painter);
ZRQTBASEUTILS_EXPORT void drawSmoothPixmap(const QPoint& point, const QPixmap& pixmap, QPainter& painter);
ZRQTBASEUTILS_EXPORT void drawSmoothPixmap(const QRect& target, const QPixmap& pixmap, QPainter& painter);
ZRQTBASEUTILS_EXPORT void drawSmoothPixmap(int x, int y, const QPixmap& pixmap, QPainter& painter);
ZRQTBASEUTILS_EXPORT void drawSmoothPixmap(int x, int y, int w, int h, const QPixmap& pixmap, QPainter& painter);
ZRQTBASEUTILS_EXPORT void drawSmoothPixmap(int x, int y, int w, int h, const QPixmap& pixmap, int sx, int sy, int sw,
                                           int sh, QPainter& painter);
ZRQTBASEUTILS_EXPORT void drawSmoothPixmap(int x, int y, const QPixmap& pixmap, int sx, int sy, int sw, int sh,
                                           QPainter& painter);
ZRQTBASEUTILS_EXPORT void drawSmoothPixmap(const QPointF& point, const QPixmap& pixmap, const QRectF& source,
                                           QPainter& painter);
ZRQTBASEUTILS_EXPORT void drawSmoothPixmap(const QPoint& point, const QPixmap& pixmap, const QRect& source,
                                           QPainter& painter);
