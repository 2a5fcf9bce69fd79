#include "zrdrawingcontrol.h"

#include "../src/hoststate.h"
#include "../src/zrdbfile.h"
#include "zrdbinternal.h"
#include "zrdocument.h"
#include "zrsystem.h"

#include <QFile>
#include <QSaveFile>

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

} // namespace

namespace ZrHostControl {

bool openDrawing(const QString& path, QString* error)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        if (error)
            *error = QStringLiteral("%1: %2").arg(path, file.errorString());
        return false;
    }
    return openDrawingText(file.readAll(), path, error);
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
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(drawingText(database)) < 0 || !file.commit()) {
        if (error)
            *error = QStringLiteral("%1: %2").arg(path, file.errorString());
        return false;
    }
    return true;
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

EntityImageRequest lastEntityImageRequest() { return ZrHostState::get().entityImageRequest; }

void setDrawingSurfaceActive(bool active) { ZrHostState::get().drawingSurfaceActive = active; }
void setRedrawListener(std::function<void()> listener) { ZrHostState::get().redrawListener = std::move(listener); }

bool undo()
{
    ZrDbDatabase* database = curDatabase();
    return database && database->undo();
}

bool redo()
{
    ZrDbDatabase* database = curDatabase();
    return database && database->redo();
}

} // namespace ZrHostControl
