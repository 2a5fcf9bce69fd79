#pragma once
// What changes in the host reach the user interface by, and the services the controls talk to.

#include "zrdbobjectid.h"
#include "zrhost_export.h"
#include "zrjson.h"
#include "zrresbuf.h"
#include "zrrxobject.h"
#include "zrstring.h"

class ZrDbObject;
class ZrDbDatabase;
class ZrDbTextStyleTableRecord;
class CZrQtControlHelp;
class QWidget;

// Kinds of the host's events.
enum ZrGlobalUIEventKind : int64_t {
    kZrUiEventView = 1,
    kZrUiEventSysVar = 4,
    kZrUiEventSelection = 8,
    kZrUiEventObject = 16,
    kZrUiEventDocument = 32,
    kZrUiEventLayerPanel = 64,
    kZrUiEventNotification = 2048,
    kZrUiEventBlockVisibility = 0x100000,
};

// One event of the host, as the user interface's controls are told of it.
struct CZrGlobalUIReactorHelp
{
    int64_t kind = 0;
    int64_t detail = 0;
    ZrString name;
    ZrDbObject* object = nullptr;
    ZrDbDatabase* database = nullptr;
    bool selectionActive = false;
};

// Service 14: the controls bound to the drawing register here to be told of changes.
class ZRHOST_EXPORT ZrUiReactorService : public ZrRxObject
{
    ZR_RX_DECLARE_MEMBERS(ZrUiReactorService)
public:
    virtual int addReactorControl(CZrQtControlHelp* control) = 0;
    virtual int removeReactorControl(CZrQtControlHelp* control) = 0;
};

// Service 19: the host's choice of a line type, among the drawing's and those of the definitions
// the host ships (a line type chosen there is loaded into the drawing first).
class ZRHOST_EXPORT ZrEdLinetypeService : public ZrRxObject
{
    ZR_RX_DECLARE_MEMBERS(ZrEdLinetypeService)
public:
    // Shows the choice over `parent`, starting on the line type named "curSelName" of `param`. A
    // choice writes "ltypeName" and "ltypeId" (the record's handle) into `param` and answers 1;
    // cancelling answers 2 and writes nothing. `flags` and `reserved` are 0.
    virtual int chooseLinetype(ZrDbDatabase* database, ZrJsonPtr param, int flags, int reserved, QWidget* parent) = 0;
};

// A host class the ribbon hands to its controls; only carried.
class ZrQtCuiRibbonControlsSlotAgent
{
};

// Service 3 of zrrxGetService: database operations of the host.
class ZRHOST_EXPORT ZrDbDatabaseService : public ZrRxObject
{
    ZR_RX_DECLARE_MEMBERS(ZrDbDatabaseService)
public:
    // A group of object edits: one undo step, which cancel rolls back.
    virtual int startEdits(ZrDbDatabase* database);
    virtual int endEdits(ZrDbDatabase* database);
    virtual int cancelEdits(ZrDbDatabase* database);
    // A system variable of a database; the caller frees the buffer with zrutRelRb.
    virtual int getSysVar(ZrDbDatabase* database, const wchar_t* name, ZrResBuf*& value);
    virtual int setSysVar(ZrDbDatabase* database, const wchar_t* name, const ZrResBuf* value);
    virtual ZrDbObjectId modelSpaceId(ZrDbDatabase* database);
    virtual ZrDbObjectId paperSpaceId(ZrDbDatabase* database);
    virtual ZrDbObjectId plotStyleDictionary(ZrDbDatabase* database, bool create);
    virtual ZrDbObjectId materialDictionary(ZrDbDatabase* database, bool create);
    virtual ZrDbObjectId tableStyleDictionary(ZrDbDatabase* database, bool create);
    virtual ZrDbObjectId mleaderStyleDictionary(ZrDbDatabase* database, bool create);
    // Bracket a walk of the block table.
    virtual void beginBlockTableWalk(ZrDbDatabase* database);
    virtual void endBlockTableWalk(ZrDbDatabase* database);
    virtual ZrDbObjectId currentLayoutId(ZrDbDatabase* database);
    // Whether text of the style is written backwards (first) and upside down (second).
    virtual void textStyleFlags(const ZrDbTextStyleTableRecord* record, bool& first, bool& second);
};
