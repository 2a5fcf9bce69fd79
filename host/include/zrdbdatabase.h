#pragma once
// A drawing: its tables, dictionaries, current values and system variables.

#include "zrcmcolor.h"
#include "zrdbobject.h"
#include "zrgeometry.h"
#include "zrresbuf.h"
#include "zrrxobject.h"
#include "zrstring.h"

class ZrDbSymbolTable;
class ZrDbLayerTable;
class ZrDbLinetypeTable;
class ZrDbTextStyleTable;
class ZrDbDimStyleTable;
class ZrDbViewTable;
class ZrDbUCSTable;
class ZrDbBlockTable;
class ZrDbRegAppTable;
class ZrDbDictionary;

class ZRHOST_EXPORT ZrDbDatabase : public ZrRxObject
{
    ZR_RX_DECLARE_MEMBERS(ZrDbDatabase)
public:
    // With `defaults` a new drawing: layer "0", line types "ByBlock", "ByLayer" and "Continuous",
    // styles "Standard", model and paper space with their layouts, the named object dictionaries.
    explicit ZrDbDatabase(bool defaults = true);
    ~ZrDbDatabase() override;
    ZrDbDatabase(const ZrDbDatabase&) = delete;
    ZrDbDatabase& operator=(const ZrDbDatabase&) = delete;

    // Takes ownership of a new object and answers its id.
    ZrDbObjectId addObject(ZrDbObject* object, ZrDbObjectId owner);
    int objectCount() const;

    ZrDbObjectId layerTableId() const;
    ZrDbObjectId linetypeTableId() const;
    ZrDbObjectId textStyleTableId() const;
    ZrDbObjectId dimStyleTableId() const;
    ZrDbObjectId viewTableId() const;
    ZrDbObjectId UCSTableId() const;
    ZrDbObjectId blockTableId() const;
    ZrDbObjectId regAppTableId() const;
    ZrDbObjectId namedObjectsDictionaryId() const;
    int getLayerTable(ZrDbLayerTable*& table, ZrDb::OpenMode mode) const;
    int getLinetypeTable(ZrDbLinetypeTable*& table, ZrDb::OpenMode mode) const;
    int getTextStyleTable(ZrDbTextStyleTable*& table, ZrDb::OpenMode mode) const;
    int getDimStyleTable(ZrDbDimStyleTable*& table, ZrDb::OpenMode mode) const;
    int getViewTable(ZrDbViewTable*& table, ZrDb::OpenMode mode) const;
    int getUCSTable(ZrDbUCSTable*& table, ZrDb::OpenMode mode) const;
    int getBlockTable(ZrDbBlockTable*& table, ZrDb::OpenMode mode) const;
    int getRegAppTable(ZrDbRegAppTable*& table, ZrDb::OpenMode mode) const;

    ZrDbObjectId materialDictionaryId() const;
    ZrDbObjectId plotStyleNameDictionaryId() const;
    ZrDbObjectId tableStyleDictionaryId() const;
    ZrDbObjectId mleaderStyleDictionaryId() const;
    ZrDbObjectId layoutDictionaryId() const;
    // Null until a layer state is saved.
    ZrDbObjectId layerStateDictionaryId(bool createIfNonExist = false);

    ZrDbObjectId modelSpaceId() const;
    ZrDbObjectId paperSpaceId() const;
    ZrDbObjectId byLayerLinetype() const;
    ZrDbObjectId byBlockLinetype() const;
    ZrDbObjectId continuousLinetype() const;

    // Current values; each is also a system variable of this drawing.
    ZrDbObjectId clayer() const;
    int setClayer(ZrDbObjectId id);
    ZrCmColor cecolor() const;
    int setCecolor(const ZrCmColor& color);
    ZrDb::LineWeight celweight() const;
    int setCelweight(ZrDb::LineWeight weight);
    ZrDbObjectId celtype() const;
    int setCeltype(ZrDbObjectId id);
    ZrDbObjectId cmaterial() const;
    int setCmaterial(ZrDbObjectId id);
    ZrDbObjectId textstyle() const;
    int setTextstyle(ZrDbObjectId id);
    ZrDbObjectId dimstyle() const;
    int setDimstyle(ZrDbObjectId id);
    int setDimstyleData(ZrDbObjectId id);
    bool tilemode() const;
    int setTilemode(bool model);
    double ltscale() const;
    int setLtscale(double scale);
    // True when plot styles go by colour.
    bool plotStyleMode() const;

    ZrDbObjectId ucsname() const;
    ZrGePoint3d ucsorg() const;
    ZrGeVector3d ucsxdir() const;
    ZrGeVector3d ucsydir() const;
    ZrDbObjectId pucsname() const;
    ZrGePoint3d pucsorg() const;
    ZrGeVector3d pucsxdir() const;
    ZrGeVector3d pucsydir() const;
    // Makes a named or unnamed UCS current in model (paper false) or paper space.
    int setUcs(bool paper, ZrDbObjectId name, const ZrGePoint3d& origin, const ZrGeVector3d& xAxis,
               const ZrGeVector3d& yAxis);

    // The layout of the space being worked in.
    ZrDbObjectId currentLayoutId() const;
    int setCurrentLayoutId(ZrDbObjectId layout);
    // The viewport in use: in paper space the paper viewport or a model viewport entered into.
    ZrDbObjectId currentViewportId() const;
    int setCurrentViewportId(ZrDbObjectId viewport);

    // System variables of the drawing, by name ignoring case; RTNORM on success.
    int getSysVar(const ZrString& name, ZrResBuf* value) const;
    int setSysVar(const ZrString& name, const ZrResBuf* value);

private:
    friend struct ZrDbDatabaseInternal;
    struct Data;
    Data* d;
};

using ZrDbDatabasePtr = ZrSmartPtr<ZrDbDatabase>;

class ZRHOST_EXPORT ZrDbHostApplicationServices
{
public:
    // The database being worked on: the current document's.
    ZrDbDatabase* workingDatabase() const;
    // The lineweight "Default" stands for.
    int lineWeightDefault() const;
};

ZRHOST_EXPORT ZrDbHostApplicationServices* zrdbHostApplicationServices();
// The current document's database; null without one.
ZRHOST_EXPORT ZrDbDatabase* curDatabase();
// Names the undo step that is open, or opens one that ends with the current turn of the event loop.
ZRHOST_EXPORT int xudbSetUndoRecord(ZrDbDatabase* database, const wchar_t* name);
