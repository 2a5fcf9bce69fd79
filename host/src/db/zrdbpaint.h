#pragma once
// Entities on screen. Private to the host library; exported for its control library.

#include "zrcmcolor.h"
#include "zrdbobjectid.h"
#include "zrhost_export.h"

#include <QColor>
#include <QTransform>
#include <vector>

class QImage;
class QPainter;
class ZrDbEntity;

// The colour a drawing colour shows in: index 7 and the by-rule colours take `foreground`.
QColor zrdbDisplayColor(const ZrCmColor& color, const QColor& foreground);
// The extents of an entity in drawing units; false for one with no extent.
ZRHOST_EXPORT bool zrdbEntityExtents(const ZrDbEntity* entity, double& minX, double& minY, double& maxX,
                                     double& maxY);
// Paints an entity with its colour (resolved through its layer), line type and lineweight.
// `toDevice` maps drawing units to the device; `foreground` stands for colour 7.
ZRHOST_EXPORT void zrdbPaintEntity(QPainter& painter, const ZrDbEntity* entity, const QTransform& toDevice,
                                   const QColor& foreground, bool highlighted = false);
// The direct road for a lone line on a picture: a hairline along a row, drawn left to right into a
// premultiplied picture, gets the pixels the painter of zrdbPaintEntity would give it, without one.
// False, with nothing drawn, for anything else.
ZRHOST_EXPORT bool zrdbPaintLevelLine(QImage& image, const ZrDbEntity* entity, const QTransform& toDevice,
                                      const QColor& foreground);
// Whether a layer's entities are drawn: not off, not frozen.
ZRHOST_EXPORT bool zrdbIsLayerVisible(ZrDbObjectId layer);
// Entities of the space in use, in drawing order.
ZRHOST_EXPORT std::vector<ZrDbObjectId> zrdbEntitiesOfCurrentSpace();
