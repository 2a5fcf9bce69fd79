// Service 3: the database operations of the host.

#include "zrreactor.h"

#include "zrdbdatabase.h"
#include "zrdbdatabasedata.h"
#include "zrdbinternal.h"
#include "zrdbsymtb.h"

ZR_RX_DEFINE_MEMBERS(ZrDbDatabaseService, ZrRxObject)

int ZrDbDatabaseService::startEdits(ZrDbDatabase* database)
{
    if (!database)
        return Zr::eNoDatabase;
    zrdbBeginUndoStep(database, ZrString(L"PROPERTIES"));
    zrdbSetUndoMark(database);
    return Zr::eOk;
}

int ZrDbDatabaseService::endEdits(ZrDbDatabase* database)
{
    if (!database)
        return Zr::eNoDatabase;
    zrdbDropMark(database);
    zrdbEndUndoStep(database);
    return Zr::eOk;
}

int ZrDbDatabaseService::cancelEdits(ZrDbDatabase* database)
{
    if (!database)
        return Zr::eNoDatabase;
    zrdbRollBackToMark(database);
    return endEdits(database);
}

int ZrDbDatabaseService::getSysVar(ZrDbDatabase* database, const wchar_t* name, ZrResBuf*& value)
{
    value = nullptr;
    if (!name)
        return RTERROR;
    ZrResBuf* result = zrutNewRb(RTNONE);
    if (zrdbGetVariable(database, ZrString(name), result) != RTNORM) {
        zrutRelRb(result);
        return RTERROR;
    }
    value = result;
    return RTNORM;
}

int ZrDbDatabaseService::setSysVar(ZrDbDatabase* database, const wchar_t* name, const ZrResBuf* value)
{
    if (!name || !value)
        return RTERROR;
    return zrdbSetVariable(database, ZrString(name), value);
}

ZrDbObjectId ZrDbDatabaseService::modelSpaceId(ZrDbDatabase* database)
{
    return database ? database->modelSpaceId() : ZrDbObjectId();
}

ZrDbObjectId ZrDbDatabaseService::paperSpaceId(ZrDbDatabase* database)
{
    return database ? database->paperSpaceId() : ZrDbObjectId();
}

// Every drawing has these dictionaries from the start, so there is nothing to create.
ZrDbObjectId ZrDbDatabaseService::plotStyleDictionary(ZrDbDatabase* database, bool)
{
    return database ? database->plotStyleNameDictionaryId() : ZrDbObjectId();
}

ZrDbObjectId ZrDbDatabaseService::materialDictionary(ZrDbDatabase* database, bool)
{
    return database ? database->materialDictionaryId() : ZrDbObjectId();
}

ZrDbObjectId ZrDbDatabaseService::tableStyleDictionary(ZrDbDatabase* database, bool)
{
    return database ? database->tableStyleDictionaryId() : ZrDbObjectId();
}

ZrDbObjectId ZrDbDatabaseService::mleaderStyleDictionary(ZrDbDatabase* database, bool)
{
    return database ? database->mleaderStyleDictionaryId() : ZrDbObjectId();
}

void ZrDbDatabaseService::beginBlockTableWalk(ZrDbDatabase*) {}
void ZrDbDatabaseService::endBlockTableWalk(ZrDbDatabase*) {}

ZrDbObjectId ZrDbDatabaseService::currentLayoutId(ZrDbDatabase* database)
{
    return database ? database->currentLayoutId() : ZrDbObjectId();
}

void ZrDbDatabaseService::textStyleFlags(const ZrDbTextStyleTableRecord* record, bool& first, bool& second)
{
    first = record && record->isBackwards();
    second = record && record->isUpsideDown();
}
