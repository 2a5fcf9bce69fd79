#include "zrdbdatabase.h"

#include "zrdbdatabasedata.h"
#include "zrdbdict.h"
#include "zrdbentity.h"
#include "zrdbinternal.h"
#include "zrdbsymtb.h"
#include "zrdocument.h"
#include "zrsystem.h"
#include "zruievents.h"

#include <QCoreApplication>
#include <unordered_map>

namespace {

// Plot style names of entities, shared by every drawing: entities keep an index, and a name may be
// given before the entity has a drawing. Index 0 is "ByLayer".
struct PlotStyleNames
{
    std::vector<ZrString> names{ZrString(L"ByLayer")};
    std::unordered_map<std::wstring, uint32_t> indexes{{L"ByLayer", 0}};
};

PlotStyleNames& plotStyleNames()
{
    static PlotStyleNames pool;
    return pool;
}

template <class Record>
int64_t addRecord(int64_t table, Record* record, const wchar_t* name)
{
    record->setName(ZrString(name));
    ZrDbObjectPointer<ZrDbSymbolTable> open(ZrDbObjectId(table), ZrDb::kForWrite);
    ZrDbObjectId id;
    if (!open || open->add(record, &id) != Zr::eOk) {
        delete record;
        return 0;
    }
    record->close();
    return id.handle();
}

int64_t addEntry(int64_t dictionary, const wchar_t* name, ZrDbObject* object)
{
    ZrDbObjectPointer<ZrDbDictionary> open(ZrDbObjectId(dictionary), ZrDb::kForWrite);
    ZrDbObjectId id;
    if (!open || open->setAt(ZrString(name), object, id) != Zr::eOk) {
        delete object;
        return 0;
    }
    object->close();
    return id.handle();
}

int64_t addNamed(int64_t dictionary, const wchar_t* name, ZrDbObject* object)
{
    if (auto* material = ZrDbMaterial::cast(object))
        material->setName(ZrString(name));
    else if (auto* tableStyle = ZrDbTableStyle::cast(object))
        tableStyle->setName(ZrString(name));
    else if (auto* leaderStyle = ZrDbMLeaderStyle::cast(object))
        leaderStyle->setName(ZrString(name));
    return addEntry(dictionary, name, object);
}

// The ids of the records a new drawing starts with, for its current values.
struct Defaults
{
    int64_t layer = 0;
    int64_t material = 0;
    int64_t textStyle = 0;
    int64_t dimStyle = 0;
    int64_t tableStyle = 0;
    int64_t leaderStyle = 0;
    int64_t modelLayout = 0;
};

Defaults addDefaults(ZrDbData& d)
{
    Defaults ids;
    d.byBlockLinetype = addRecord(d.linetypeTable, new ZrDbLinetypeTableRecord, L"ByBlock");
    d.byLayerLinetype = addRecord(d.linetypeTable, new ZrDbLinetypeTableRecord, L"ByLayer");
    auto* continuous = new ZrDbLinetypeTableRecord;
    continuous->setComments(ZrString(L"Solid line"));
    d.continuousLinetype = addRecord(d.linetypeTable, continuous, L"Continuous");

    ids.material = addNamed(d.materials, L"ByLayer", new ZrDbMaterial);
    d.byLayerMaterial = ids.material;
    addNamed(d.materials, L"ByBlock", new ZrDbMaterial);
    const int64_t global = addNamed(d.materials, L"Global", new ZrDbMaterial);
    addEntry(d.plotStyles, L"Normal", new ZrDbPlaceHolder);

    auto* layer = new ZrDbLayerTableRecord;
    ZrCmColor white;
    white.setColorMethod(ZrCmEntityColor::kByACI);
    white.setColorIndex(7);
    layer->setColor(white);
    layer->setLinetypeObjectId(ZrDbObjectId(d.continuousLinetype));
    layer->setMaterialId(ZrDbObjectId(global));
    layer->setPlotStyleName(ZrString(L"Normal"));
    ids.layer = addRecord(d.layerTable, layer, L"0");

    auto* standard = new ZrDbTextStyleTableRecord;
    standard->setFileName(ZrString(L"txt.shx"));
    standard->setBigFontFileName(ZrString(L"gbcbig.shx"));
    ids.textStyle = addRecord(d.textStyleTable, standard, L"Standard");
    auto* dimStyle = new ZrDbDimStyleTableRecord;
    dimStyle->setDimtxsty(ZrDbObjectId(ids.textStyle));
    ids.dimStyle = addRecord(d.dimStyleTable, dimStyle, L"Standard");
    ids.tableStyle = addNamed(d.tableStyles, L"Standard", new ZrDbTableStyle);
    auto* leaderStyle = new ZrDbMLeaderStyle;
    leaderStyle->setTextStyleId(ZrDbObjectId(ids.textStyle));
    ids.leaderStyle = addNamed(d.mleaderStyles, L"Standard", leaderStyle);
    addRecord(d.regAppTable, new ZrDbRegAppTableRecord, L"ZRAPP");

    d.modelSpace = addRecord(d.blockTable, new ZrDbBlockTableRecord, L"*Model_Space");
    d.paperSpace = addRecord(d.blockTable, new ZrDbBlockTableRecord, L"*Paper_Space");
    ids.modelLayout = d.addLayout(ZrString(L"Model"), 0, d.modelSpace);
    const int64_t paperLayout = d.addLayout(ZrString(L"布局1"), 1, d.paperSpace);

    auto* paper = new ZrDbViewport;
    paper->setNumber(1);
    paper->setGeometry(ZrGePoint3d(148.5, 105.0, 0.0), 297.0, 210.0);
    paper->setLayer(ZrDbObjectId(ids.layer));
    ZrDbObjectId viewport;
    {
        ZrDbObjectPointer<ZrDbBlockTableRecord> space(ZrDbObjectId(d.paperSpace), ZrDb::kForWrite);
        space->appendZrDbEntity(viewport, paper);
        paper->close();
    }
    ZrDbObjectPointer<ZrDbLayout> layout(ZrDbObjectId(paperLayout), ZrDb::kForWrite);
    layout->setPaperViewportId(viewport);
    return ids;
}

void setHandle(ZrDbData& d, int variable, int64_t handle)
{
    d.variables[static_cast<size_t>(variable)].integer = handle;
}

} // namespace

ZR_RX_DEFINE_MEMBERS(ZrDbDatabase, ZrRxObject)

ZrDbDatabase::ZrDbDatabase(bool defaults) : d(new Data(this))
{
    ZrDbQuiet quiet(this);
    for (int i = 0; i < kVariableCount; ++i)
        d->variables.push_back(zrdbInitialValue(i));
    d->layerTable = d->addClosed(new ZrDbLayerTable, 0);
    d->linetypeTable = d->addClosed(new ZrDbLinetypeTable, 0);
    d->textStyleTable = d->addClosed(new ZrDbTextStyleTable, 0);
    d->dimStyleTable = d->addClosed(new ZrDbDimStyleTable, 0);
    d->viewTable = d->addClosed(new ZrDbViewTable, 0);
    d->ucsTable = d->addClosed(new ZrDbUCSTable, 0);
    d->blockTable = d->addClosed(new ZrDbBlockTable, 0);
    d->regAppTable = d->addClosed(new ZrDbRegAppTable, 0);
    d->namedObjects = d->addClosed(new ZrDbDictionary, 0);
    d->materials = addEntry(d->namedObjects, L"ZR_MATERIAL", new ZrDbDictionary);
    d->plotStyles = addEntry(d->namedObjects, L"ZR_PLOTSTYLENAME", new ZrDbDictionary);
    d->tableStyles = addEntry(d->namedObjects, L"ZR_TABLESTYLE", new ZrDbDictionary);
    d->mleaderStyles = addEntry(d->namedObjects, L"ZR_MLEADERSTYLE", new ZrDbDictionary);
    d->layouts = addEntry(d->namedObjects, L"ZR_LAYOUT", new ZrDbDictionary);
    if (!defaults)
        return;
    const Defaults ids = addDefaults(*d);
    setHandle(*d, kVarClayer, ids.layer);
    setHandle(*d, kVarCeltype, d->byLayerLinetype);
    setHandle(*d, kVarCmaterial, ids.material);
    setHandle(*d, kVarTextstyle, ids.textStyle);
    setHandle(*d, kVarDimstyle, ids.dimStyle);
    setHandle(*d, kVarDimtxsty, ids.textStyle);
    setHandle(*d, kVarCtablestyle, ids.tableStyle);
    setHandle(*d, kVarCmleaderstyle, ids.leaderStyle);
    setHandle(*d, kVarCtab, ids.modelLayout);
}

ZrDbDatabase::~ZrDbDatabase()
{
    zrHostDropUiEventsOf(this);
    for (int64_t handle : d->owned) {
        ZrDbObject* object = ZrDbObjects::at(handle);
        ZrDbObjects::forget(handle);
        delete object;
    }
    delete d;
}

ZrDbObjectId ZrDbDatabase::addObject(ZrDbObject* object, ZrDbObjectId owner)
{
    if (!object || object->database())
        return ZrDbObjectId();
    const int64_t handle = ZrDbObjects::add(object);
    object->setOwnership(this, ZrDbObjectId(handle), owner);
    d->owned.push_back(handle);
    // A new object is open for write, as the caller made it, until the caller closes it.
    object->m_openCount = 1;
    object->m_flags |= ZrDbObject::kOpenForWrite | ZrDbObject::kModified;
    d->recordNew(object, owner.handle());
    d->indexReference(object);
    return ZrDbObjectId(handle);
}

int ZrDbDatabase::objectCount() const { return static_cast<int>(d->owned.size()); }

ZrDbObjectId ZrDbDatabase::layerTableId() const { return ZrDbObjectId(d->layerTable); }
ZrDbObjectId ZrDbDatabase::linetypeTableId() const { return ZrDbObjectId(d->linetypeTable); }
ZrDbObjectId ZrDbDatabase::textStyleTableId() const { return ZrDbObjectId(d->textStyleTable); }
ZrDbObjectId ZrDbDatabase::dimStyleTableId() const { return ZrDbObjectId(d->dimStyleTable); }
ZrDbObjectId ZrDbDatabase::viewTableId() const { return ZrDbObjectId(d->viewTable); }
ZrDbObjectId ZrDbDatabase::UCSTableId() const { return ZrDbObjectId(d->ucsTable); }
ZrDbObjectId ZrDbDatabase::blockTableId() const { return ZrDbObjectId(d->blockTable); }
ZrDbObjectId ZrDbDatabase::regAppTableId() const { return ZrDbObjectId(d->regAppTable); }
ZrDbObjectId ZrDbDatabase::namedObjectsDictionaryId() const { return ZrDbObjectId(d->namedObjects); }

int ZrDbDatabase::getLayerTable(ZrDbLayerTable*& table, ZrDb::OpenMode mode) const
{
    return zrdbOpenObject(table, layerTableId(), mode);
}
int ZrDbDatabase::getLinetypeTable(ZrDbLinetypeTable*& table, ZrDb::OpenMode mode) const
{
    return zrdbOpenObject(table, linetypeTableId(), mode);
}
int ZrDbDatabase::getTextStyleTable(ZrDbTextStyleTable*& table, ZrDb::OpenMode mode) const
{
    return zrdbOpenObject(table, textStyleTableId(), mode);
}
int ZrDbDatabase::getDimStyleTable(ZrDbDimStyleTable*& table, ZrDb::OpenMode mode) const
{
    return zrdbOpenObject(table, dimStyleTableId(), mode);
}
int ZrDbDatabase::getViewTable(ZrDbViewTable*& table, ZrDb::OpenMode mode) const
{
    return zrdbOpenObject(table, viewTableId(), mode);
}
int ZrDbDatabase::getUCSTable(ZrDbUCSTable*& table, ZrDb::OpenMode mode) const
{
    return zrdbOpenObject(table, UCSTableId(), mode);
}
int ZrDbDatabase::getBlockTable(ZrDbBlockTable*& table, ZrDb::OpenMode mode) const
{
    return zrdbOpenObject(table, blockTableId(), mode);
}
int ZrDbDatabase::getRegAppTable(ZrDbRegAppTable*& table, ZrDb::OpenMode mode) const
{
    return zrdbOpenObject(table, regAppTableId(), mode);
}

ZrDbObjectId ZrDbDatabase::materialDictionaryId() const { return ZrDbObjectId(d->materials); }
ZrDbObjectId ZrDbDatabase::plotStyleNameDictionaryId() const { return ZrDbObjectId(d->plotStyles); }
ZrDbObjectId ZrDbDatabase::tableStyleDictionaryId() const { return ZrDbObjectId(d->tableStyles); }
ZrDbObjectId ZrDbDatabase::mleaderStyleDictionaryId() const { return ZrDbObjectId(d->mleaderStyles); }
ZrDbObjectId ZrDbDatabase::layoutDictionaryId() const { return ZrDbObjectId(d->layouts); }

ZrDbObjectId ZrDbDatabase::layerStateDictionaryId(bool createIfNonExist)
{
    if (!d->layerStates && createIfNonExist)
        d->layerStates = addEntry(d->namedObjects, L"ZR_LAYERSTATES", new ZrDbDictionary);
    return ZrDbObjectId(d->layerStates);
}

ZrDbObjectId ZrDbDatabase::modelSpaceId() const { return ZrDbObjectId(d->modelSpace); }
ZrDbObjectId ZrDbDatabase::paperSpaceId() const { return ZrDbObjectId(d->paperSpace); }
ZrDbObjectId ZrDbDatabase::byLayerLinetype() const { return ZrDbObjectId(d->byLayerLinetype); }
ZrDbObjectId ZrDbDatabase::byBlockLinetype() const { return ZrDbObjectId(d->byBlockLinetype); }
ZrDbObjectId ZrDbDatabase::continuousLinetype() const { return ZrDbObjectId(d->continuousLinetype); }

namespace {

ZrDbObjectId handleOf(const ZrDbData& d, int variable) { return ZrDbObjectId(d.variable(variable).integer); }

int setRecord(ZrDbData& d, int variable, ZrDbObjectId id)
{
    if (!d.isRecordOf(id.handle(), zrdbVariableDefinition(variable).records))
        return Zr::eInvalidInput;
    ZrDbVariableValue value = d.variable(variable);
    value.integer = id.handle();
    return d.changeVariable(variable, value);
}

} // namespace

ZrDbObjectId ZrDbDatabase::clayer() const { return handleOf(*d, kVarClayer); }
int ZrDbDatabase::setClayer(ZrDbObjectId id) { return setRecord(*d, kVarClayer, id); }
ZrCmColor ZrDbDatabase::cecolor() const { return d->variable(kVarCecolor).color; }

int ZrDbDatabase::setCecolor(const ZrCmColor& color)
{
    ZrDbVariableValue value = d->variable(kVarCecolor);
    value.color = color;
    return d->changeVariable(kVarCecolor, value);
}

ZrDb::LineWeight ZrDbDatabase::celweight() const
{
    return static_cast<ZrDb::LineWeight>(d->variable(kVarCelweight).integer);
}

int ZrDbDatabase::setCelweight(ZrDb::LineWeight weight)
{
    if (!zrdbIsLineWeight(weight, true))
        return Zr::eInvalidInput;
    ZrDbVariableValue value = d->variable(kVarCelweight);
    value.integer = weight;
    return d->changeVariable(kVarCelweight, value);
}

ZrDbObjectId ZrDbDatabase::celtype() const { return handleOf(*d, kVarCeltype); }
int ZrDbDatabase::setCeltype(ZrDbObjectId id) { return setRecord(*d, kVarCeltype, id); }
ZrDbObjectId ZrDbDatabase::cmaterial() const { return handleOf(*d, kVarCmaterial); }
int ZrDbDatabase::setCmaterial(ZrDbObjectId id) { return setRecord(*d, kVarCmaterial, id); }
ZrDbObjectId ZrDbDatabase::textstyle() const { return handleOf(*d, kVarTextstyle); }
int ZrDbDatabase::setTextstyle(ZrDbObjectId id) { return setRecord(*d, kVarTextstyle, id); }
ZrDbObjectId ZrDbDatabase::dimstyle() const { return handleOf(*d, kVarDimstyle); }
int ZrDbDatabase::setDimstyle(ZrDbObjectId id) { return setRecord(*d, kVarDimstyle, id); }

int ZrDbDatabase::setDimstyleData(ZrDbObjectId id)
{
    const ZrDbDimStyleTableRecord* style = zrdbPeek<ZrDbDimStyleTableRecord>(id);
    if (!style || !d->isRecordOf(id.handle(), ZrDbRecordKind::kDimStyle))
        return Zr::eInvalidInput;
    const ZrDbVariableStep step(this, kVarDimstyle);
    ZrDbVariableValue scale = d->variable(kVarDimscale);
    scale.real = style->dimscale();
    d->storeVariable(kVarDimscale, scale);
    if (d->isRecordOf(style->dimtxsty().handle(), ZrDbRecordKind::kTextStyle)) {
        ZrDbVariableValue textStyle = d->variable(kVarDimtxsty);
        textStyle.integer = style->dimtxsty().handle();
        d->storeVariable(kVarDimtxsty, textStyle);
    }
    return Zr::eOk;
}

bool ZrDbDatabase::tilemode() const { return d->variable(kVarTilemode).integer != 0; }

int ZrDbDatabase::setTilemode(bool model)
{
    ZrDbVariableValue value = d->variable(kVarTilemode);
    value.integer = model ? 1 : 0;
    return d->changeVariable(kVarTilemode, value);
}

double ZrDbDatabase::ltscale() const { return d->variable(kVarLtscale).real; }

int ZrDbDatabase::setLtscale(double scale)
{
    if (!(scale > 0.0))
        return Zr::eInvalidInput;
    ZrDbVariableValue value = d->variable(kVarLtscale);
    value.real = scale;
    return d->changeVariable(kVarLtscale, value);
}

bool ZrDbDatabase::plotStyleMode() const { return d->variable(kVarPstylemode).integer != 0; }

ZrDbObjectId ZrDbDatabase::ucsname() const { return handleOf(*d, kVarUcsname); }
ZrGePoint3d ZrDbDatabase::ucsorg() const { return d->variable(kVarUcsorg).point; }

namespace {

ZrGeVector3d vectorOf(const ZrGePoint3d& p) { return ZrGeVector3d(p.x, p.y, p.z); }
ZrGePoint3d pointOf(const ZrGeVector3d& v) { return ZrGePoint3d(v.x, v.y, v.z); }

} // namespace

ZrGeVector3d ZrDbDatabase::ucsxdir() const { return vectorOf(d->variable(kVarUcsxdir).point); }
ZrGeVector3d ZrDbDatabase::ucsydir() const { return vectorOf(d->variable(kVarUcsydir).point); }
ZrDbObjectId ZrDbDatabase::pucsname() const { return handleOf(*d, kVarPucsname); }
ZrGePoint3d ZrDbDatabase::pucsorg() const { return d->variable(kVarPucsorg).point; }
ZrGeVector3d ZrDbDatabase::pucsxdir() const { return vectorOf(d->variable(kVarPucsxdir).point); }
ZrGeVector3d ZrDbDatabase::pucsydir() const { return vectorOf(d->variable(kVarPucsydir).point); }

int ZrDbDatabase::setUcs(bool paper, ZrDbObjectId name, const ZrGePoint3d& origin, const ZrGeVector3d& xAxis,
                         const ZrGeVector3d& yAxis)
{
    if (name.isValid() && !d->isRecordOf(name.handle(), ZrDbRecordKind::kUcs))
        return Zr::eInvalidInput;
    if (xAxis.length() == 0.0 || yAxis.length() == 0.0)
        return Zr::eInvalidInput;
    d->storeUcs(paper, ZrDbUcsState{name.handle(), origin, pointOf(xAxis), pointOf(yAxis)}, true);
    return Zr::eOk;
}

ZrDbObjectId ZrDbDatabase::currentLayoutId() const { return handleOf(*d, kVarCtab); }
int ZrDbDatabase::setCurrentLayoutId(ZrDbObjectId layout) { return setRecord(*d, kVarCtab, layout); }
ZrDbObjectId ZrDbDatabase::currentViewportId() const { return handleOf(*d, kVarCvport); }

int ZrDbDatabase::setCurrentViewportId(ZrDbObjectId viewport)
{
    // Only a viewport of the layout in use can be entered.
    const ZrDbViewport* entered = zrdbPeek<ZrDbViewport>(viewport);
    const ZrDbLayout* layout = zrdbPeek<ZrDbLayout>(currentLayoutId());
    if (!entered || entered->database() != this || !layout || tilemode()
        || entered->blockId() != layout->getBlockTableRecordId())
        return Zr::eInvalidInput;
    ZrDbVariableValue value = d->variable(kVarCvport);
    value.integer = viewport.handle();
    d->storeVariable(kVarCvport, value);
    return Zr::eOk;
}

int ZrDbDatabase::getSysVar(const ZrString& name, ZrResBuf* value) const { return zrdbGetVariable(this, name, value); }
int ZrDbDatabase::setSysVar(const ZrString& name, const ZrResBuf* value) { return zrdbSetVariable(this, name, value); }

uint32_t zrdbPlotStyleIndex(const ZrString& name)
{
    PlotStyleNames& pool = plotStyleNames();
    const auto found = pool.indexes.find(name.std());
    if (found != pool.indexes.end())
        return found->second;
    pool.names.push_back(name);
    const auto index = static_cast<uint32_t>(pool.names.size() - 1);
    pool.indexes.emplace(name.std(), index);
    return index;
}

ZrString zrdbPlotStyleName(uint32_t index)
{
    const PlotStyleNames& pool = plotStyleNames();
    return index < pool.names.size() ? pool.names[index] : ZrString();
}

int64_t ZrDbData::addClosed(ZrDbObject* object, int64_t owner)
{
    const ZrDbObjectId id = self->addObject(object, ZrDbObjectId(owner));
    object->close();
    return id.handle();
}

int64_t ZrDbData::addLayout(const ZrString& name, int tab, int64_t block)
{
    auto* layout = new ZrDbLayout;
    layout->setLayoutName(name);
    layout->setTabOrder(tab);
    layout->setBlockTableRecordId(ZrDbObjectId(block));
    ZrDbObjectId id;
    {
        ZrDbObjectPointer<ZrDbDictionary> dictionary(ZrDbObjectId(layouts), ZrDb::kForWrite);
        if (!dictionary || dictionary->setAt(name, layout, id) != Zr::eOk) {
            delete layout;
            return 0;
        }
        layout->close();
    }
    ZrDbObjectPointer<ZrDbBlockTableRecord> record(ZrDbObjectId(block), ZrDb::kForWrite);
    if (record)
        record->setLayoutId(id);
    return id.handle();
}

void ZrDbData::indexReference(const ZrDbObject* object)
{
    const ZrDbBlockReference* reference = ZrDbBlockReference::cast(object);
    if (!reference || reference->blockTableRecord().isNull())
        return;
    std::vector<int64_t>& references = referencesOfBlock[reference->blockTableRecord().handle()];
    if (references.empty() || references.back() != reference->objectId().handle())
        references.push_back(reference->objectId().handle());
}

void ZrDbData::noteRestored(ZrDbObject* object)
{
    indexReference(object);
    if (const ZrDbSymbolTableRecord* record = ZrDbSymbolTableRecord::cast(object)) {
        if (const ZrDbSymbolTable* table = zrdbPeek<ZrDbSymbolTable>(record->ownerId()))
            table->noteName(record->name(), record->objectId().handle());
    }
}

void ZrDbData::storeVariable(int id, const ZrDbVariableValue& value)
{
    ZrDbVariableValue& stored = variables[static_cast<size_t>(id)];
    if (stored == value)
        return;
    recordVariable(id, stored);
    stored = value;
    postVariable(id);
}

int ZrDbData::changeVariable(int id, ZrDbVariableValue value)
{
    const ZrDbVariableStep step(self, id);
    const auto setHandleOf = [this](int which, int64_t handle) {
        ZrDbVariableValue changed = variable(which);
        changed.integer = handle;
        storeVariable(which, changed);
    };
    switch (id) {
    case kVarTilemode: {
        // The space in use follows: the model, or the first paper layout with its paper viewport.
        const int64_t layout = value.integer ? modelLayout() : firstPaperLayout();
        if (!layout)
            return Zr::eInvalidInput;
        storeVariable(kVarTilemode, value);
        setHandleOf(kVarCtab, layout);
        setHandleOf(kVarCvport, value.integer ? 0 : paperViewportOf(layout));
        return Zr::eOk;
    }
    case kVarCtab: {
        const ZrDbLayout* layout = zrdbPeek<ZrDbLayout>(value.integer);
        if (!layout)
            return Zr::eInvalidInput;
        const bool model = layout->modelType();
        storeVariable(kVarCtab, value);
        ZrDbVariableValue tile = variable(kVarTilemode);
        tile.integer = model ? 1 : 0;
        storeVariable(kVarTilemode, tile);
        setHandleOf(kVarCvport, model ? 0 : paperViewportOf(value.integer));
        return Zr::eOk;
    }
    case kVarUcsname:
    case kVarPucsname: {
        // A named system brings its origin and axes; a record without axes sets the name alone.
        const ZrDbUCSTableRecord* ucs = zrdbPeek<ZrDbUCSTableRecord>(value.integer);
        const bool paper = id == kVarPucsname;
        if (!ucs || self->setUcs(paper, ucs->objectId(), ucs->origin(), ucs->xAxis(), ucs->yAxis()) != Zr::eOk)
            storeVariable(id, value);
        return Zr::eOk;
    }
    default: storeVariable(id, value); return Zr::eOk;
    }
}

void ZrDbData::postVariable(int id) const
{
    if (quiet)
        return;
    CZrGlobalUIReactorHelp event;
    event.kind = kZrUiEventSysVar;
    event.name = ZrString(zrdbVariableDefinition(id).name);
    event.database = self;
    event.selectionActive = zrHostSelectionActive();
    zrHostPostUiEvent(event);
}

void ZrDbData::postObject(ZrDbObject* object) const
{
    if (quiet)
        return;
    CZrGlobalUIReactorHelp event;
    event.kind = kZrUiEventObject;
    event.object = object;
    event.database = self;
    event.selectionActive = zrHostSelectionActive();
    zrHostPostUiEvent(event);
}

namespace {

int64_t tableOf(const ZrDbData& d, ZrDbRecordKind kind)
{
    switch (kind) {
    case ZrDbRecordKind::kLayer: return d.layerTable;
    case ZrDbRecordKind::kLinetype: return d.linetypeTable;
    case ZrDbRecordKind::kTextStyle: return d.textStyleTable;
    case ZrDbRecordKind::kDimStyle: return d.dimStyleTable;
    case ZrDbRecordKind::kUcs: return d.ucsTable;
    default: return 0;
    }
}

int64_t dictionaryOf(const ZrDbData& d, ZrDbRecordKind kind)
{
    switch (kind) {
    case ZrDbRecordKind::kMaterial: return d.materials;
    case ZrDbRecordKind::kTableStyle: return d.tableStyles;
    case ZrDbRecordKind::kMLeaderStyle: return d.mleaderStyles;
    case ZrDbRecordKind::kLayout: return d.layouts;
    default: return 0;
    }
}

} // namespace

bool ZrDbData::isRecordOf(int64_t handle, ZrDbRecordKind kind) const
{
    const ZrDbObject* object = zrdbPeek<ZrDbObject>(handle);
    if (!object || object->database() != self)
        return false;
    const int64_t container = tableOf(*this, kind) ? tableOf(*this, kind) : dictionaryOf(*this, kind);
    return container && object->ownerId().handle() == container;
}

int64_t ZrDbData::recordNamed(ZrDbRecordKind kind, const ZrString& name) const
{
    if (const ZrDbSymbolTable* table = zrdbPeek<ZrDbSymbolTable>(tableOf(*this, kind)))
        return table->findName(name, false);
    const ZrDbDictionary* dictionary = zrdbPeek<ZrDbDictionary>(dictionaryOf(*this, kind));
    ZrDbObjectId id;
    return dictionary && dictionary->getAt(name, id) == Zr::eOk ? id.handle() : 0;
}

ZrString ZrDbData::recordName(ZrDbRecordKind kind, int64_t handle) const
{
    if (const ZrDbSymbolTableRecord* record = zrdbPeek<ZrDbSymbolTableRecord>(handle))
        return record->name();
    const ZrDbDictionary* dictionary = zrdbPeek<ZrDbDictionary>(dictionaryOf(*this, kind));
    ZrString name;
    if (dictionary)
        dictionary->nameAt(ZrDbObjectId(handle), name);
    return name;
}

int64_t ZrDbData::modelLayout() const
{
    const ZrDbDictionary* dictionary = zrdbPeek<ZrDbDictionary>(layouts);
    if (!dictionary)
        return 0;
    std::unique_ptr<ZrDbDictionaryIterator> it(dictionary->newIterator());
    for (; !it->done(); it->next()) {
        const ZrDbLayout* layout = zrdbPeek<ZrDbLayout>(it->objectId());
        if (layout && layout->modelType())
            return layout->objectId().handle();
    }
    return 0;
}

int64_t ZrDbData::firstPaperLayout() const
{
    const ZrDbDictionary* dictionary = zrdbPeek<ZrDbDictionary>(layouts);
    if (!dictionary)
        return 0;
    const ZrDbLayout* first = nullptr;
    std::unique_ptr<ZrDbDictionaryIterator> it(dictionary->newIterator());
    for (; !it->done(); it->next()) {
        const ZrDbLayout* layout = zrdbPeek<ZrDbLayout>(it->objectId());
        if (layout && !layout->modelType() && (!first || layout->getTabOrder() < first->getTabOrder()))
            first = layout;
    }
    return first ? first->objectId().handle() : 0;
}

int64_t ZrDbData::paperViewportOf(int64_t layout) const
{
    const ZrDbLayout* record = zrdbPeek<ZrDbLayout>(layout);
    return record && zrdbPeek<ZrDbViewport>(record->paperViewportId()) ? record->paperViewportId().handle() : 0;
}

ZrDbUcsState ZrDbData::ucs(bool paper) const
{
    const int first = paper ? kVarPucsname : kVarUcsname;
    return ZrDbUcsState{variable(first).integer, variable(first + 1).point, variable(first + 2).point,
                        variable(first + 3).point};
}

void ZrDbData::storeUcs(bool paper, const ZrDbUcsState& next, bool remember)
{
    const ZrDbUcsState former = ucs(paper);
    if (former == next)
        return;
    // Systems a drawing is built with are no change the user could go back on.
    if (remember && !quiet) {
        // As many as the UCS command goes back through.
        constexpr size_t kDepth = 10;
        std::vector<ZrDbUcsState>& history = ucsHistory[paper ? 1 : 0];
        if (history.size() == kDepth)
            history.erase(history.begin());
        history.push_back(former);
    }
    const int first = paper ? kVarPucsname : kVarUcsname;
    const ZrDbVariableStep step(self, first);
    const ZrGePoint3d points[3] = {next.origin, next.xAxis, next.yAxis};
    ZrDbVariableValue value = variable(first);
    value.integer = next.name;
    storeVariable(first, value);
    for (int i = 0; i < 3; ++i) {
        value = variable(first + 1 + i);
        value.point = points[i];
        storeVariable(first + 1 + i, value);
    }
}

int ZrDbData::restorePreviousUcs(bool paper)
{
    std::vector<ZrDbUcsState>& history = ucsHistory[paper ? 1 : 0];
    if (history.empty())
        return Zr::eKeyNotFound;
    ZrDbUcsState previous = history.back();
    history.pop_back();
    // A named system erased since comes back unnamed.
    if (previous.name && !isRecordOf(previous.name, ZrDbRecordKind::kUcs))
        previous.name = 0;
    storeUcs(paper, previous, false);
    return Zr::eOk;
}

ZrDbDatabase* ZrDbHostApplicationServices::workingDatabase() const { return curDatabase(); }
int ZrDbHostApplicationServices::lineWeightDefault() const { return zrdbApplicationInteger(kVarLwdefault); }

ZrDbHostApplicationServices* zrdbHostApplicationServices()
{
    static ZrDbHostApplicationServices services;
    return &services;
}

ZrDbDatabase* curDatabase()
{
    CXuDocument* document = CXuSystem::instance()->curDocument();
    return document ? document->database() : nullptr;
}

int xudbSetUndoRecord(ZrDbDatabase* database, const wchar_t* name)
{
    if (!database)
        return Zr::eNoDatabase;
    ZrDbData& data = zrdbData(database);
    if (data.stepDepth > 0) {
        data.openStep->name = ZrString(name);
        return Zr::eOk;
    }
    // Without an event loop nothing would end the step: the writes then make steps of their own.
    if (!QCoreApplication::instance())
        return Zr::eOk;
    zrdbBeginUndoStep(database, ZrString(name));
    data.autoStep = true;
    if (!data.autoStepEnd) {
        data.autoStepEnd = std::make_unique<QTimer>();
        data.autoStepEnd->setSingleShot(true);
        QObject::connect(data.autoStepEnd.get(), &QTimer::timeout, [database] {
            if (zrdbData(database).autoStep)
                zrdbEndUndoStep(database);
        });
    }
    data.autoStepEnd->start(0);
    return Zr::eOk;
}
