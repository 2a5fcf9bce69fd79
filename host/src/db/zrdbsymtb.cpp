#include "zrdbsymtb.h"

#include "zrdbdatabasedata.h"
#include "zrdbdict.h"
#include "zrdbentity.h"
#include "zrdbinternal.h"

#include <cmath>
#include <unordered_map>
#include <unordered_set>

ZR_RX_DEFINE_MEMBERS(ZrDbSymbolTable, ZrDbObject)
ZR_RX_DEFINE_MEMBERS(ZrDbSymbolTableRecord, ZrDbObject)
ZR_RX_DEFINE_MEMBERS(ZrDbLayerTable, ZrDbSymbolTable)
ZR_RX_DEFINE_MEMBERS(ZrDbLayerTableRecord, ZrDbSymbolTableRecord)
ZR_RX_DEFINE_MEMBERS(ZrDbLinetypeTable, ZrDbSymbolTable)
ZR_RX_DEFINE_MEMBERS(ZrDbLinetypeTableRecord, ZrDbSymbolTableRecord)
ZR_RX_DEFINE_MEMBERS(ZrDbTextStyleTable, ZrDbSymbolTable)
ZR_RX_DEFINE_MEMBERS(ZrDbTextStyleTableRecord, ZrDbSymbolTableRecord)
ZR_RX_DEFINE_MEMBERS(ZrDbDimStyleTable, ZrDbSymbolTable)
ZR_RX_DEFINE_MEMBERS(ZrDbDimStyleTableRecord, ZrDbSymbolTableRecord)
ZR_RX_DEFINE_MEMBERS(ZrDbViewTable, ZrDbSymbolTable)
ZR_RX_DEFINE_MEMBERS(ZrDbViewTableRecord, ZrDbSymbolTableRecord)
ZR_RX_DEFINE_MEMBERS(ZrDbUCSTable, ZrDbSymbolTable)
ZR_RX_DEFINE_MEMBERS(ZrDbUCSTableRecord, ZrDbSymbolTableRecord)
ZR_RX_DEFINE_MEMBERS(ZrDbRegAppTable, ZrDbSymbolTable)
ZR_RX_DEFINE_MEMBERS(ZrDbRegAppTableRecord, ZrDbSymbolTableRecord)
ZR_RX_DEFINE_MEMBERS(ZrDbBlockTable, ZrDbSymbolTable)
ZR_RX_DEFINE_MEMBERS(ZrDbBlockTableRecord, ZrDbSymbolTableRecord)

namespace {

uint8_t withFlag(uint8_t flags, uint8_t flag, bool on)
{
    return static_cast<uint8_t>(on ? flags | flag : flags & ~flag);
}

// Ids a record may point to: null, or a live object of class T.
template <class T>
bool isNullOr(ZrDbObjectId id)
{
    return id.isNull() || zrdbPeek<T>(id);
}

// The record class each table holds.
const ZrRxClass* recordClassOf(const ZrRxClass* table)
{
    static const std::unordered_map<const ZrRxClass*, const ZrRxClass*> classes{
        {ZrDbLayerTable::desc(), ZrDbLayerTableRecord::desc()},
        {ZrDbLinetypeTable::desc(), ZrDbLinetypeTableRecord::desc()},
        {ZrDbTextStyleTable::desc(), ZrDbTextStyleTableRecord::desc()},
        {ZrDbDimStyleTable::desc(), ZrDbDimStyleTableRecord::desc()},
        {ZrDbViewTable::desc(), ZrDbViewTableRecord::desc()},
        {ZrDbUCSTable::desc(), ZrDbUCSTableRecord::desc()},
        {ZrDbRegAppTable::desc(), ZrDbRegAppTableRecord::desc()},
        {ZrDbBlockTable::desc(), ZrDbBlockTableRecord::desc()},
    };
    const auto found = classes.find(table);
    return found == classes.end() ? ZrDbSymbolTableRecord::desc() : found->second;
}

// Steps over erased handles from `index` in the direction given.
template <class Handles>
void skipErasedHandles(const Handles& handles, int& index, bool forward)
{
    while (index >= 0 && index < static_cast<int>(handles.size())
           && ZrDbObjectId(handles[static_cast<size_t>(index)]).isErased())
        index += forward ? 1 : -1;
}

} // namespace

struct ZrDbSymbolTable::NameIndex
{
    std::unordered_multimap<std::wstring, int64_t> records;
};

ZrDbSymbolTable::ZrDbSymbolTable() = default;
ZrDbSymbolTable::ZrDbSymbolTable(const ZrDbSymbolTable& other) : ZrDbObject(other), m_records(other.m_records) {}

ZrDbSymbolTable& ZrDbSymbolTable::operator=(const ZrDbSymbolTable& other)
{
    ZrDbObject::operator=(other);
    m_records = other.m_records;
    m_names.reset();
    return *this;
}

ZrDbSymbolTable::~ZrDbSymbolTable() = default;

void ZrDbSymbolTable::noteName(const ZrString& name, int64_t record) const
{
    // Until the first lookup builds it, the index does not exist and has nothing to miss.
    if (m_names)
        m_names->records.emplace(zrdbFoldCase(name), record);
}

int64_t ZrDbSymbolTable::findName(const ZrString& name, bool getErased) const
{
    if (!m_names) {
        m_names = std::make_unique<NameIndex>();
        for (int64_t handle : m_records) {
            if (const auto* record = ZrDbSymbolTableRecord::cast(ZrDbObjects::at(handle)))
                m_names->records.emplace(zrdbFoldCase(record->name()), handle);
        }
    }
    int64_t erased = 0;
    const auto range = m_names->records.equal_range(zrdbFoldCase(name));
    for (auto it = range.first; it != range.second; ++it) {
        const auto* record = ZrDbSymbolTableRecord::cast(ZrDbObjects::at(it->second));
        // Names the record no longer has, or a record that went to another table, stay behind.
        if (!record || record->ownerId() != objectId() || record->name().compareNoCase(name) != 0)
            continue;
        if (!record->isErased())
            return it->second;
        if (getErased && !erased)
            erased = it->second;
    }
    return erased;
}

int ZrDbSymbolTable::getIdAt(const ZrString& name, ZrDbObjectId& id, bool getErased) const
{
    const int64_t handle = findName(name, getErased);
    if (!handle)
        return Zr::eKeyNotFound;
    id = ZrDbObjectId(handle);
    return Zr::eOk;
}

bool ZrDbSymbolTable::has(const ZrString& name) const { return findName(name, false) != 0; }

bool ZrDbSymbolTable::has(ZrDbObjectId id) const
{
    const ZrDbObject* record = zrdbPeek<ZrDbSymbolTableRecord>(id);
    return record && record->ownerId() == objectId();
}

int ZrDbSymbolTable::add(ZrDbSymbolTableRecord* record, ZrDbObjectId* id)
{
    if (!record || record->database())
        return Zr::eInvalidInput;
    if (!database())
        return Zr::eNoDatabase;
    if (!isWriteEnabled())
        return Zr::eNotOpenForWrite;
    if (!record->isKindOf(recordClassOf(isA())))
        return Zr::eNotThatKindOfClass;
    const ZrString name = record->name();
    if (name.isEmpty())
        return Zr::eInvalidInput;
    if (findName(name, false))
        return Zr::eDuplicateKey;
    // The list only grows: a record made in a step that is undone is erased, and lookups pass it.
    const ZrDbObjectId added = database()->addObject(record, objectId());
    m_records.push_back(added.handle());
    noteName(name, added.handle());
    if (id)
        *id = added;
    return Zr::eOk;
}

int ZrDbSymbolTable::newIterator(ZrDbSymbolTableIterator*& iterator, bool atBeginning, bool skipDeleted) const
{
    iterator = new ZrDbSymbolTableIterator(m_records, atBeginning, skipDeleted);
    return Zr::eOk;
}

ZrDbSymbolTableIterator::ZrDbSymbolTableIterator(std::vector<int64_t> records, bool atBeginning, bool skipDeleted)
    : m_records(std::move(records)), m_skipDeleted(skipDeleted)
{
    start(atBeginning);
}

ZrDbSymbolTableIterator::~ZrDbSymbolTableIterator() = default;

void ZrDbSymbolTableIterator::start(bool atBeginning)
{
    m_forward = atBeginning;
    m_index = atBeginning ? 0 : static_cast<int>(m_records.size()) - 1;
    skipErased();
}

bool ZrDbSymbolTableIterator::done() const { return m_index < 0 || m_index >= static_cast<int>(m_records.size()); }

void ZrDbSymbolTableIterator::step(bool forward)
{
    m_forward = forward;
    m_index += forward ? 1 : -1;
    skipErased();
}

void ZrDbSymbolTableIterator::skipErased()
{
    if (m_skipDeleted)
        skipErasedHandles(m_records, m_index, m_forward);
}

int ZrDbSymbolTableIterator::getRecordId(ZrDbObjectId& id) const
{
    if (done())
        return Zr::eInvalidInput;
    id = ZrDbObjectId(m_records[static_cast<size_t>(m_index)]);
    return Zr::eOk;
}

int ZrDbSymbolTableIterator::getRecord(ZrDbSymbolTableRecord*& record, ZrDb::OpenMode mode, bool openErased) const
{
    record = nullptr;
    ZrDbObjectId id;
    if (const int status = getRecordId(id))
        return status;
    return zrdbOpenObject(record, id, mode, openErased);
}

int ZrDbSymbolTableRecord::getName(ZrString& name) const
{
    name = m_name;
    return Zr::eOk;
}

int ZrDbSymbolTableRecord::setName(const ZrString& name)
{
    if (name.isEmpty())
        return Zr::eInvalidInput;
    const ZrDbSymbolTable* table = zrdbPeek<ZrDbSymbolTable>(ownerId());
    const int64_t holder = table ? table->findName(name, false) : 0;
    if (holder && holder != objectId().handle())
        return Zr::eDuplicateKey;
    if (const int status = writeField(m_name, name))
        return status;
    if (table)
        table->noteName(name, objectId().handle());
    return Zr::eOk;
}

bool ZrDbSymbolTableRecord::isDependent() const { return m_name.findOneOf(L"|") >= 0; }

int ZrDbLayerTableRecord::setColor(const ZrCmColor& color) { return writeField(m_color, color); }
int ZrDbLayerTableRecord::setIsFrozen(bool on) { return writeField(m_flags, withFlag(m_flags, kFrozen, on)); }
int ZrDbLayerTableRecord::setIsOff(bool on) { return writeField(m_flags, withFlag(m_flags, kOff, on)); }
int ZrDbLayerTableRecord::setIsLocked(bool on) { return writeField(m_flags, withFlag(m_flags, kLocked, on)); }
int ZrDbLayerTableRecord::setIsHidden(bool on) { return writeField(m_flags, withFlag(m_flags, kHidden, on)); }
int ZrDbLayerTableRecord::setIsPlottable(bool on) { return writeField(m_flags, withFlag(m_flags, kNoPlot, !on)); }

int ZrDbLayerTableRecord::setLinetypeObjectId(ZrDbObjectId id)
{
    if (!isNullOr<ZrDbLinetypeTableRecord>(id))
        return Zr::eInvalidInput;
    return writeField(m_linetype, id.handle());
}

int ZrDbLayerTableRecord::setLineWeight(ZrDb::LineWeight weight)
{
    // A layer's weight is its own: never by layer or by block.
    if (weight != ZrDb::kLnWtByLwDefault && !zrdbIsLineWeight(weight, false))
        return Zr::eInvalidInput;
    return writeField(m_lineWeight, weight);
}

int ZrDbLayerTableRecord::setMaterialId(ZrDbObjectId id)
{
    if (!isNullOr<ZrDbMaterial>(id))
        return Zr::eInvalidInput;
    return writeField(m_material, id.handle());
}

int ZrDbLayerTableRecord::setPlotStyleName(const ZrString& name) { return writeField(m_plotStyle, name); }
int ZrDbLayerTableRecord::setDescription(const ZrString& text) { return writeField(m_description, text); }

double ZrDbLinetypeTableRecord::patternLength() const
{
    double length = 0.0;
    for (double dash : m_dashes)
        length += std::fabs(dash);
    return length;
}

int ZrDbLinetypeTableRecord::setDashes(std::vector<double> dashes)
{
    for (double dash : dashes) {
        if (!std::isfinite(dash))
            return Zr::eInvalidInput;
    }
    return writeField(m_dashes, std::move(dashes));
}

int ZrDbLinetypeTableRecord::setComments(const ZrString& text) { return writeField(m_comments, text); }

int ZrDbTextStyleTableRecord::setTextSize(double size)
{
    return size >= 0.0 && std::isfinite(size) ? writeField(m_textSize, size) : int(Zr::eInvalidInput);
}

int ZrDbTextStyleTableRecord::setXScale(double scale)
{
    return scale > 0.0 && std::isfinite(scale) ? writeField(m_xScale, scale) : int(Zr::eInvalidInput);
}

int ZrDbTextStyleTableRecord::setObliquingAngle(double angle)
{
    return std::isfinite(angle) ? writeField(m_obliquingAngle, angle) : int(Zr::eInvalidInput);
}

int ZrDbTextStyleTableRecord::setIsVertical(bool on) { return writeField(m_flags, withFlag(m_flags, kVertical, on)); }

int ZrDbTextStyleTableRecord::setTextGenerationFlags(bool backwards, bool upsideDown)
{
    return writeField(m_flags, withFlag(withFlag(m_flags, kBackwards, backwards), kUpsideDown, upsideDown));
}

int ZrDbTextStyleTableRecord::setFileName(const ZrString& name) { return writeField(m_fileName, name); }
int ZrDbTextStyleTableRecord::setBigFontFileName(const ZrString& name) { return writeField(m_bigFontFileName, name); }

int ZrDbDimStyleTableRecord::setDimtxsty(ZrDbObjectId id)
{
    if (!isNullOr<ZrDbTextStyleTableRecord>(id))
        return Zr::eInvalidInput;
    return writeField(m_textStyle, id.handle());
}

int ZrDbDimStyleTableRecord::setDimscale(double scale)
{
    return scale >= 0.0 && std::isfinite(scale) ? writeField(m_scale, scale) : int(Zr::eInvalidInput);
}

int ZrDbViewTableRecord::setIsPaperspaceView(bool on) { return writeField(m_paperSpace, on); }

int ZrDbViewTableRecord::setGeometry(const ZrGePoint3d& center, double width, double height)
{
    if (!(width > 0.0) || !(height > 0.0))
        return Zr::eInvalidInput;
    if (const int status = prepareWrite())
        return status;
    m_center = center;
    m_width = width;
    m_height = height;
    return Zr::eOk;
}

int ZrDbUCSTableRecord::setAxes(const ZrGePoint3d& origin, const ZrGeVector3d& xAxis, const ZrGeVector3d& yAxis)
{
    if (xAxis.length() == 0.0 || yAxis.length() == 0.0)
        return Zr::eInvalidInput;
    if (const int status = prepareWrite())
        return status;
    m_origin = origin;
    m_xAxis = xAxis;
    m_yAxis = yAxis;
    return Zr::eOk;
}

int ZrDbBlockTableRecord::setLayoutId(ZrDbObjectId id) { return writeField(m_layout, id.handle()); }

bool ZrDbBlockTableRecord::isAnonymous() const
{
    const ZrString name = this->name();
    if (name.length() < 2 || name[0] != L'*')
        return false;
    const wchar_t kind = static_cast<wchar_t>(QChar::toUpper(static_cast<uint>(name[1])));
    return kind == L'U' || kind == L'D' || kind == L'T' || kind == L'E' || kind == L'X';
}

int ZrDbBlockTableRecord::setIsFromExternalReference(bool on) { return writeField(m_externalReference, on); }

namespace {

// What a new entity takes from its drawing for what it was not given.
void takeDefaults(ZrDbEntity* entity, ZrDbDatabase* database)
{
    const ZrDbData& data = zrdbData(database);
    if (entity->layerId().isNull())
        entity->setLayer(database->clayer(), true, true);
    if (entity->linetypeId().isNull())
        entity->setLinetype(database->byLayerLinetype());
    if (entity->materialId().isNull() && data.byLayerMaterial)
        entity->setMaterial(ZrDbObjectId(data.byLayerMaterial));
    if (auto* text = ZrDbText::cast(entity); text && text->textStyle().isNull())
        text->setTextStyle(database->textstyle());
    if (auto* text = ZrDbMText::cast(entity); text && text->textStyle().isNull())
        text->setTextStyle(database->textstyle());
    if (auto* dimension = ZrDbDimension::cast(entity); dimension && dimension->dimensionStyle().isNull())
        dimension->setDimensionStyle(database->dimstyle());
    if (auto* table = ZrDbTable::cast(entity); table && table->tableStyle().isNull())
        table->setTableStyle(ZrDbObjectId(data.variable(kVarCtablestyle).integer));
    if (auto* leader = ZrDbMLeader::cast(entity)) {
        if (leader->MLeaderStyle().isNull())
            leader->setMLeaderStyle(ZrDbObjectId(data.variable(kVarCmleaderstyle).integer));
        const ZrDbMLeaderStyle* style = zrdbPeek<ZrDbMLeaderStyle>(leader->MLeaderStyle());
        if (leader->textStyleId().isNull() && style)
            leader->setTextStyleId(style->textStyleId());
    }
}

} // namespace

int ZrDbBlockTableRecord::appendZrDbEntity(ZrDbObjectId& id, ZrDbEntity* entity)
{
    if (!entity || entity->database())
        return Zr::eInvalidInput;
    if (!database())
        return Zr::eNoDatabase;
    if (!isWriteEnabled())
        return Zr::eNotOpenForWrite;
    takeDefaults(entity, database());
    // As with tables, the list only grows and readers pass erased entities.
    id = database()->addObject(entity, objectId());
    m_entities.push_back(id.handle());
    return Zr::eOk;
}

int ZrDbBlockTableRecord::appendZrDbEntity(ZrDbEntity* entity)
{
    ZrDbObjectId id;
    return appendZrDbEntity(id, entity);
}

int ZrDbBlockTableRecord::newIterator(ZrDbBlockTableRecordIterator*& iterator, bool atBeginning, bool skipDeleted) const
{
    iterator = new ZrDbBlockTableRecordIterator(m_entities, atBeginning, skipDeleted);
    return Zr::eOk;
}

int ZrDbBlockTableRecord::getBlockReferenceIds(ZrArray<ZrDbObjectId>& ids, bool directOnly, bool) const
{
    ids.removeAll();
    if (!database())
        return Zr::eOk;
    const ZrDbData& data = zrdbData(database());
    std::unordered_set<int64_t> blocksSeen{objectId().handle()};
    std::unordered_set<int64_t> referencesSeen;
    std::vector<int64_t> pending{objectId().handle()};
    while (!pending.empty()) {
        const int64_t block = pending.back();
        pending.pop_back();
        const auto found = data.referencesOfBlock.find(block);
        if (found == data.referencesOfBlock.end())
            continue;
        for (int64_t handle : found->second) {
            const ZrDbBlockReference* reference = zrdbPeek<ZrDbBlockReference>(handle);
            // The index keeps references that point elsewhere by now or went out of their block.
            const ZrDbBlockTableRecord* owner = reference ? zrdbPeek<ZrDbBlockTableRecord>(reference->ownerId()) : nullptr;
            if (!owner || reference->blockTableRecord().handle() != block || !referencesSeen.insert(handle).second)
                continue;
            ids.append(ZrDbObjectId(handle));
            // Through a nested block: the references of the block that holds this one count too.
            if (!directOnly && !owner->isLayout() && blocksSeen.insert(owner->objectId().handle()).second)
                pending.push_back(owner->objectId().handle());
        }
    }
    return Zr::eOk;
}

ZrDbBlockTableRecordIterator::ZrDbBlockTableRecordIterator(std::vector<int64_t> entities, bool atBeginning,
                                                           bool skipDeleted)
    : m_entities(std::move(entities)), m_skipDeleted(skipDeleted)
{
    start(atBeginning);
}

ZrDbBlockTableRecordIterator::~ZrDbBlockTableRecordIterator() = default;

void ZrDbBlockTableRecordIterator::start(bool atBeginning)
{
    m_forward = atBeginning;
    m_index = atBeginning ? 0 : static_cast<int>(m_entities.size()) - 1;
    skipErased();
}

bool ZrDbBlockTableRecordIterator::done() const
{
    return m_index < 0 || m_index >= static_cast<int>(m_entities.size());
}

void ZrDbBlockTableRecordIterator::step(bool forward)
{
    m_forward = forward;
    m_index += forward ? 1 : -1;
    skipErased();
}

void ZrDbBlockTableRecordIterator::skipErased()
{
    if (m_skipDeleted)
        skipErasedHandles(m_entities, m_index, m_forward);
}

int ZrDbBlockTableRecordIterator::getEntityId(ZrDbObjectId& id) const
{
    if (done())
        return Zr::eInvalidInput;
    id = ZrDbObjectId(m_entities[static_cast<size_t>(m_index)]);
    return Zr::eOk;
}

int ZrDbBlockTableRecordIterator::getEntity(ZrDbEntity*& entity, ZrDb::OpenMode mode, bool openErased) const
{
    entity = nullptr;
    ZrDbObjectId id;
    if (const int status = getEntityId(id))
        return status;
    return zrdbOpenObject(entity, id, mode, openErased);
}
