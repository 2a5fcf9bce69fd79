#pragma once
// Small drawings for the suites, built in the current drawing through the host's database
// interfaces, and what the suites read back from them.

#include "zrdbdatabase.h"
#include "zrdbentity.h"
#include "zrdbsymtb.h"

#include <QString>

namespace DrawingTest {

struct LayerFlags
{
    bool frozen = false;
    bool locked = false;
    bool hidden = false;
    bool off = false;
};

// Adds a record to a symbol table of the current drawing.
template <class Table, class Record>
ZrDbObjectId addRecord(int (ZrDbDatabase::*getTable)(Table*&, ZrDb::OpenMode) const, Record* record,
                       const QString& name)
{
    Table* table = nullptr;
    if ((curDatabase()->*getTable)(table, ZrDb::kForWrite) != Zr::eOk)
        return ZrDbObjectId();
    record->setName(ZrString(name));
    ZrDbObjectId id;
    table->add(record, &id);
    record->close();
    table->close();
    return id;
}

inline ZrDbObjectId addLayer(const QString& name, LayerFlags flags = {})
{
    auto* layer = new ZrDbLayerTableRecord;
    layer->setIsFrozen(flags.frozen);
    layer->setIsLocked(flags.locked);
    layer->setIsHidden(flags.hidden);
    layer->setIsOff(flags.off);
    return addRecord(&ZrDbDatabase::getLayerTable, layer, name);
}

// Adds an entity to the model space on `layer` (the current layer when null).
template <class Entity>
ZrDbObjectId addEntity(Entity* entity, ZrDbObjectId layer = ZrDbObjectId())
{
    entity->setLayer(layer.isValid() ? layer : curDatabase()->clayer());
    ZrDbBlockTableRecord* space = nullptr;
    ZrDbObjectId id;
    if (zrdbOpenObject(space, curDatabase()->modelSpaceId(), ZrDb::kForWrite) != Zr::eOk)
        return id;
    space->appendZrDbEntity(id, entity);
    entity->close();
    space->close();
    return id;
}

inline ZrDbObjectId layerOf(ZrDbObjectId entity)
{
    ZrDbObjectPointer<ZrDbEntity> opened(entity, ZrDb::kForRead);
    return opened ? opened->layerId() : ZrDbObjectId();
}

inline QString layerName(ZrDbObjectId layer)
{
    ZrDbObjectPointer<ZrDbLayerTableRecord> record(layer, ZrDb::kForRead);
    return record ? record->name().toQString() : QString();
}

} // namespace DrawingTest
