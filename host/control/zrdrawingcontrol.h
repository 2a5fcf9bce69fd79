#pragma once
// Drawings for apps and tests: files, the built-in sample, the selection, painting, undo.

#include "zrdbdatabase.h"
#include "zrdbobjectid.h"
#include "zrhost_export.h"
#include "zrjson.h"

#include <QColor>
#include <QString>
#include <QTransform>
#include <functional>
#include <vector>

class QPainter;
class ZrDbEntity;

namespace ZrHostControl {

// Reads a drawing file (JSON) into a new database and makes it the current document's. On error
// the open drawing stays as it was and `error` names the place: file, line and column, or the
// object and field at fault.
ZRHOST_EXPORT bool openDrawing(const QString& path, QString* error = nullptr);
// The same from text; `origin` names the source in messages.
ZRHOST_EXPORT bool openDrawingText(const QByteArray& text, const QString& origin, QString* error = nullptr);
// The built-in sample drawing.
ZRHOST_EXPORT void openSampleDrawing();
// A new drawing with the defaults only.
ZRHOST_EXPORT void openEmptyDrawing();
ZRHOST_EXPORT bool saveDrawing(const QString& path, QString* error = nullptr);
ZRHOST_EXPORT QByteArray drawingText(ZrDbDatabase* database);
// A drawing of `count` lines spread over `layers` layers, for benchmarks.
ZRHOST_EXPORT void openGeneratedDrawing(int count, int layers);

// Sets the pick-first selection of the current document and tells the user interface.
ZRHOST_EXPORT void setSelection(const std::vector<ZrDbObjectId>& ids);
ZRHOST_EXPORT void clearSelection();
// Delivers the events waiting for the user interface now, instead of from the event loop.
ZRHOST_EXPORT void flushUiEvents();

// Entities of the space in use, in drawing order.
ZRHOST_EXPORT std::vector<ZrDbObjectId> entitiesOfCurrentSpace();
// The extents of an entity in drawing units; false for one with no extent.
ZRHOST_EXPORT bool entityExtents(const ZrDbEntity* entity, double& minX, double& minY, double& maxX, double& maxY);
// Paints an entity with its colour (resolved through its layer), line type and lineweight.
// `toDevice` maps drawing units to the device; `foreground` stands for colour 7.
ZRHOST_EXPORT void paintEntity(QPainter& painter, const ZrDbEntity* entity, const QTransform& toDevice,
                               const QColor& foreground, bool highlighted = false);
// What zrsiutCreateEntityImage was last asked to draw: the line type and line type scale of each
// entity, and a copy of the parameter object ("width", "height", "bfillbackground", "background").
struct EntityImageRequest
{
    struct Entity
    {
        ZrDbObjectId linetype;
        double linetypeScale = 1.0;
    };
    std::vector<Entity> entities;
    // Null until the first request, or when it came without one.
    ZrJsonPtr options;
};
ZRHOST_EXPORT EntityImageRequest lastEntityImageRequest();
// Whether a layer's entities are drawn: not off, not frozen.
ZRHOST_EXPORT bool isLayerVisible(ZrDbObjectId layer);

// A view that paints the drawing says so: until then the drawing surfaces answer that a redraw
// would have nothing to do.
ZRHOST_EXPORT void setDrawingSurfaceActive(bool active);
// Called whenever a drawing surface is asked to redraw, so that the view repaints.
ZRHOST_EXPORT void setRedrawListener(std::function<void()> listener);

ZRHOST_EXPORT bool undo();
ZRHOST_EXPORT bool redo();

} // namespace ZrHostControl
