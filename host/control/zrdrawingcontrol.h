#pragma once
// Drawings for apps and tests: files, the built-in sample, the selection, painting, undo.

#include "zrdbdatabase.h"
#include "zrdbobjectid.h"
#include "zrhostcontrol_export.h"
#include "zrhostentityimages.h"
#include "zrreactor.h"

#include <QColor>
#include <QString>
#include <QTransform>
#include <functional>
#include <vector>

class QPainter;
class ZrDbEntity;

namespace ZrHostControl {

// Reads a drawing file into a new database and makes it the current document's: JSON as the host
// writes it, or DXF by the file's ".dxf" ending. On error the open drawing stays as it was and
// `error` names the place: file, line and column, or the object and field at fault. `notice` counts
// the objects of a DXF drawing that the host left out or drew approximately; empty when none were.
ZRHOSTCONTROL_EXPORT bool openDrawing(const QString& path, QString* error = nullptr, QString* notice = nullptr);
// DXF text into a new current drawing, as above; `origin` names the source in messages.
ZRHOSTCONTROL_EXPORT bool openDxfText(const QByteArray& text, const QString& origin, QString* error = nullptr,
                                      QString* notice = nullptr);
// The same from text; `origin` names the source in messages.
ZRHOSTCONTROL_EXPORT bool openDrawingText(const QByteArray& text, const QString& origin, QString* error = nullptr);
// The built-in sample drawing.
ZRHOSTCONTROL_EXPORT void openSampleDrawing();
// A new drawing with the defaults only.
ZRHOSTCONTROL_EXPORT void openEmptyDrawing();
// Writes the current drawing whole or not at all; on failure the old file stays as it was and
// `error` names the file.
ZRHOSTCONTROL_EXPORT bool saveDrawing(const QString& path, QString* error = nullptr);
ZRHOSTCONTROL_EXPORT QByteArray drawingText(ZrDbDatabase* database);
// A drawing of `count` lines spread over `layers` layers, for benchmarks.
ZRHOSTCONTROL_EXPORT void openGeneratedDrawing(int count, int layers);

// Sets the pick-first selection of the current document and tells the user interface.
ZRHOSTCONTROL_EXPORT void setSelection(const std::vector<ZrDbObjectId>& ids);
ZRHOSTCONTROL_EXPORT void clearSelection();
// Delivers the events waiting for the user interface now, instead of from the event loop.
ZRHOSTCONTROL_EXPORT void flushUiEvents();

// Entities of the space in use, in drawing order.
ZRHOSTCONTROL_EXPORT std::vector<ZrDbObjectId> entitiesOfCurrentSpace();
// The extents of an entity in drawing units; false for one with no extent.
ZRHOSTCONTROL_EXPORT bool entityExtents(const ZrDbEntity* entity, double& minX, double& minY, double& maxX,
                                        double& maxY);
// Paints an entity with its colour (resolved through its layer), line type and lineweight.
// `toDevice` maps drawing units to the device; `foreground` stands for colour 7.
ZRHOSTCONTROL_EXPORT void paintEntity(QPainter& painter, const ZrDbEntity* entity, const QTransform& toDevice,
                               const QColor& foreground, bool highlighted = false);
// What zrsiutCreateEntityImage was last asked to draw.
using EntityImageRequest = ZrHostEntityImageRequest;
ZRHOSTCONTROL_EXPORT EntityImageRequest lastEntityImageRequest();
// Whether a layer's entities are drawn: not off, not frozen.
ZRHOSTCONTROL_EXPORT bool isLayerVisible(ZrDbObjectId layer);

// A view that paints the drawing says so: until then the drawing surfaces answer that a redraw
// would have nothing to do.
ZRHOSTCONTROL_EXPORT void setDrawingSurfaceActive(bool active);
// Called whenever a drawing surface is asked to redraw, so that the view repaints.
ZRHOSTCONTROL_EXPORT void setRedrawListener(std::function<void()> listener);

// The undo history of the current drawing: steps nest, the outermost one counts.
ZRHOSTCONTROL_EXPORT void beginUndoStep(const ZrString& name);
ZRHOSTCONTROL_EXPORT void endUndoStep();
ZRHOSTCONTROL_EXPORT bool inUndoStep();
ZRHOSTCONTROL_EXPORT bool canUndo();
ZRHOSTCONTROL_EXPORT bool canRedo();
ZRHOSTCONTROL_EXPORT ZrString undoStepName();
ZRHOSTCONTROL_EXPORT ZrString redoStepName();
ZRHOSTCONTROL_EXPORT bool undo();
ZRHOSTCONTROL_EXPORT bool redo();

// The host's events, as the user interface hears them: announced, delivered from the event loop.
ZRHOSTCONTROL_EXPORT void postUiEvent(const CZrGlobalUIReactorHelp& event);
// `listener` hears each event, `batchEnd` runs once the waiting events were heard. Answers a key.
ZRHOSTCONTROL_EXPORT int addUiEventListener(std::function<void(const CZrGlobalUIReactorHelp&)> listener,
                                     std::function<void()> batchEnd = {});
ZRHOSTCONTROL_EXPORT void removeUiEventListener(int key);

} // namespace ZrHostControl
