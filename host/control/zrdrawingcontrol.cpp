#include "zrdrawingcontrol.h"

#include "zrdbfile.h"
#include "zrdbpaint.h"
#include "zrdbundo.h"
#include "zrdxffile.h"
#include "zrdocument.h"
#include "zrhostdocuments.h"
#include "zrsavefile.h"
#include "zrsystem.h"
#include "zruievents.h"

#include <QFile>
#include <QFileInfo>

namespace {

// Hands a new drawing to the current document, which takes the one it had down.
void makeCurrent(ZrDbDatabase* database)
{
    CXuDocManager* documents = CXuSystem::instance()->docManager();
    CXuDocument* document = documents->curDocument();
    if (!document)
        document = documents->addDocument(ZrString(L"Drawing1.dwg"));
    document->setDatabase(database);
    zrrxRelease(database);
}

ZrDbDatabase* newDatabase(bool defaults) { return new ZrRxObjectImpl<ZrDbDatabase>(defaults); }

// A drawing file larger than this is no drawing the host could hold in memory.
constexpr qint64 kMaxDrawingFileSize = qint64(1) << 30;

} // namespace

namespace ZrHostControl {

bool openDrawing(const QString& path, QString* error, QString* notice)
{
    if (notice)
        notice->clear();
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        if (error)
            *error = QStringLiteral("%1: %2").arg(path, file.errorString());
        return false;
    }
    if (file.size() > kMaxDrawingFileSize) {
        if (error)
            *error = QStringLiteral("%1: the file is larger than %2 MB").arg(path).arg(kMaxDrawingFileSize >> 20);
        return false;
    }
    const QByteArray text = file.readAll();
    if (QFileInfo(path).suffix().compare(QLatin1String("dxf"), Qt::CaseInsensitive) == 0)
        return openDxfText(text, path, error, notice);
    return openDrawingText(text, path, error);
}

bool openDxfText(const QByteArray& text, const QString& origin, QString* error, QString* notice)
{
    ZrDbDatabase* database = newDatabase(true);
    QString fault;
    if (!zrdbReadDxf(database, text, &fault, notice)) {
        zrrxRelease(database);
        if (error)
            *error = QStringLiteral("%1: %2").arg(origin, fault);
        return false;
    }
    makeCurrent(database);
    return true;
}

bool openDrawingText(const QByteArray& text, const QString& origin, QString* error)
{
    ZrDbDatabase* database = newDatabase(false);
    QString fault;
    if (!zrdbReadDrawing(database, text, &fault)) {
        zrrxRelease(database);
        if (error)
            *error = QStringLiteral("%1: %2").arg(origin, fault);
        return false;
    }
    makeCurrent(database);
    return true;
}

void openSampleDrawing()
{
    ZrDbDatabase* database = newDatabase(true);
    zrdbBuildSampleDrawing(database);
    makeCurrent(database);
}

void openEmptyDrawing() { makeCurrent(newDatabase(true)); }

bool saveDrawing(const QString& path, QString* error)
{
    ZrDbDatabase* database = curDatabase();
    if (!database) {
        if (error)
            *error = QStringLiteral("%1: no drawing is open").arg(path);
        return false;
    }
    return zrHostSaveFile(path, drawingText(database), error);
}

QByteArray drawingText(ZrDbDatabase* database) { return database ? zrdbWriteDrawing(database) : QByteArray(); }

void openGeneratedDrawing(int count, int layers)
{
    ZrDbDatabase* database = newDatabase(true);
    zrdbBuildGeneratedDrawing(database, count, layers);
    makeCurrent(database);
}

void setSelection(const std::vector<ZrDbObjectId>& ids)
{
    if (CXuDocContext* context = CXuSystem::instance()->docContext())
        context->setPickFirst(ids);
}

void clearSelection() { setSelection({}); }

void flushUiEvents() { zrHostFlushUiEvents(); }

std::vector<ZrDbObjectId> entitiesOfCurrentSpace() { return zrdbEntitiesOfCurrentSpace(); }

bool entityExtents(const ZrDbEntity* entity, double& minX, double& minY, double& maxX, double& maxY)
{
    return zrdbEntityExtents(entity, minX, minY, maxX, maxY);
}

void paintEntity(QPainter& painter, const ZrDbEntity* entity, const QTransform& toDevice, const QColor& foreground,
                 bool highlighted)
{
    zrdbPaintEntity(painter, entity, toDevice, foreground, highlighted);
}

EntityImageRequest lastEntityImageRequest() { return zrHostLastEntityImageRequest(); }
bool isLayerVisible(ZrDbObjectId layer) { return zrdbIsLayerVisible(layer); }

void setDrawingSurfaceActive(bool active) { zrHostDocuments().drawingSurfaceActive = active; }
void setRedrawListener(std::function<void()> listener) { zrHostDocuments().redrawListener = std::move(listener); }

void beginUndoStep(const ZrString& name)
{
    if (ZrDbDatabase* database = curDatabase())
        zrdbBeginUndoStep(database, name);
}

void endUndoStep()
{
    if (ZrDbDatabase* database = curDatabase())
        zrdbEndUndoStep(database);
}

bool inUndoStep() { return curDatabase() && zrdbInUndoStep(curDatabase()); }
bool canUndo() { return curDatabase() && zrdbCanUndo(curDatabase()); }
bool canRedo() { return curDatabase() && zrdbCanRedo(curDatabase()); }
ZrString undoStepName() { return curDatabase() ? zrdbUndoStepName(curDatabase()) : ZrString(); }
ZrString redoStepName() { return curDatabase() ? zrdbRedoStepName(curDatabase()) : ZrString(); }
bool undo() { return curDatabase() && zrdbUndo(curDatabase()); }
bool redo() { return curDatabase() && zrdbRedo(curDatabase()); }

void postUiEvent(const CZrGlobalUIReactorHelp& event) { zrHostPostUiEvent(event); }

int addUiEventListener(std::function<void(const CZrGlobalUIReactorHelp&)> listener, std::function<void()> batchEnd)
{
    return zrHostAddUiEventListener(std::move(listener), std::move(batchEnd));
}

void removeUiEventListener(int key) { zrHostRemoveUiEventListener(key); }

} // namespace ZrHostControl
